// What stands behind a location of the chassis: something that answers IPMI requests.
#ifndef RUK_HOST_CHASSISD_BLADE_H
#define RUK_HOST_CHASSISD_BLADE_H

#include <chrono>
#include <cstdint>
#include <vector>

namespace chassisd
{

using bytes = std::vector<uint8_t>;

struct request {
    uint8_t netfn = 0; // 6 bits, even
    uint8_t lun = 0;
    uint8_t command = 0;
    bytes data;
};

struct answer {
    uint32_t status = 0; // of the message service: why there is no answer; 0 when there is one
    bytes data;          // completion code, then the answer's bytes

    uint8_t completion_code() const { return data.empty() ? 0xFF : data[0]; }
};

// Called by one thread at a time: its worker sees to that.
class blade
{
  public:
    virtual ~blade() = default;

    // Answers a request. May block: only this blade waits.
    virtual answer execute(const request &request) = 0;

    // Whether it never blocks, nor takes its time.
    virtual bool answers_at_once() const { return false; }

    // Called when nothing was asked for as long as idle_period() says, e.g. to keep a session.
    virtual void idle() {}

    // 0: never.
    virtual std::chrono::milliseconds idle_period() const { return {}; }
};

} // namespace chassisd

#endif
