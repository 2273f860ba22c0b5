// A controller on a socket of this machine that answers as the bytes of a fuzzer's input say.
#ifndef RUK_TESTS_FUZZ_DRAWN_CONTROLLER_H
#define RUK_TESTS_FUZZ_DRAWN_CONTROLLER_H

#include <string>

#include "support/rmcpplus_controller.h"
#include "support/udp_service.h"

namespace ruk_ipmi_testing
{

// Bytes to draw from. Where they end there are zeros, or they begin again.
class script
{
  public:
    script() = default;
    script(const uint8_t *data, size_t size, bool repeats)
        : all_(data, data + size),
          repeats_(repeats)
    {
    }

    uint8_t byte();

  private:
    bytes all_;
    size_t at_ = 0;
    bool repeats_ = false;
};

// What is taken out of a layer of an answer, and what is put there instead.
struct change {
    bool is_any = false;
    layer where{};
    bool is_from_the_end = false;
    size_t at = 0;
    size_t removed = 0;
    bytes inserted;
};

// Serves in a thread for as long as it lives. For each datagram the script says which spoilt
// answers come first, and whether the right one follows; with zeros it alone does.
class drawn_controller
{
  public:
    // With the script to begin after so many datagrams.
    drawn_controller(const std::string &password, script script, unsigned honest);

    uint16_t port() const { return service_.port(); }

  private:
    std::vector<bytes> answers_to(const bytes &asked);

    script script_;
    unsigned honest_;
    change change_;
    rmcpplus_controller controller_;
    bytes repeated_;      // until something is asked
    udp_service service_; // the last: its thread uses the others
};

} // namespace ruk_ipmi_testing

#endif
