// One asker's talk with one blade. Every request asks for something that its own answer alone can
// hold, so that an answer which reports success wrongly is known to be wrong.
#ifndef RUK_TESTS_FAULTS_CONVERSATION_H
#define RUK_TESTS_FAULTS_CONVERSATION_H

#include <cstdint>
#include <memory>
#include <string>

#include "ruk_ipmi/types.h"

namespace tests
{

// Who asks, which must be told from everybody else who asks the same blade.
struct asker {
    uint8_t client; // 0 to 3: a client process that was killed is followed by one of its number
    uint8_t lane;   // 0 or 1: one of the conversations that the process has with the blade
    uint32_t life;  // of the process, among those of its number
};

// Used by one thread at a time; requests and what became of them alternate.
class conversation
{
  public:
    virtual ~conversation() = default;

    // The next request, but for its mark.
    virtual ipmi_request next() = 0;

    // An answer that reports success has come: what is wrong with it, nothing when it is right.
    virtual std::string judge(const ipmi_response &answer) = 0;

    // No answer has come: the request may have been carried out, or not.
    virtual void unanswered() {}

    // How often the blade had forgotten what it was told, as one does whose daemon was restarted.
    virtual uint64_t forgotten() const { return 0; }
};

// With a simulated blade: bytes are written to its FRU inventory and read back.
std::unique_ptr<conversation> talk_about_stamps(uint8_t slot, const asker &who, uint32_t seed);

// With a controller whose SDR repository holds the records of a file, all of one size, from ID 1
// on: stretches of them are read.
std::unique_ptr<conversation> talk_about_records(uint8_t slot, const std::string &path,
                                                 uint32_t seed);

// What of an answer's head is not its request's; nothing when all of it is.
std::string strange_head(const ipmi_request &request, const ipmi_response &answer);

} // namespace tests

#endif
