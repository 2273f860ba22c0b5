// A controller on a socket of this machine that answers as the bytes of a fuzzer's input say.
#ifndef RUK_TESTS_FUZZ_DRAWN_CONTROLLER_H
#define RUK_TESTS_FUZZ_DRAWN_CONTROLLER_H

#include <netinet/in.h>
#include <string>
#include <thread>

#include "rmcpplus_controller.h"

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
    ~drawn_controller();
    drawn_controller(const drawn_controller &) = delete;
    drawn_controller &operator=(const drawn_controller &) = delete;

    uint16_t port() const { return ntohs(address_.sin_port); }

  private:
    void serve();
    void answer_next();
    void send(const bytes &datagram) const;

    script script_;
    unsigned honest_;
    change change_;
    rmcpplus_controller controller_;
    bytes repeated_; // until something is asked
    const int socket_;
    const int end_;
    sockaddr_in address_{};
    sockaddr_in console_{};
    std::thread thread_;
};

} // namespace ruk_ipmi_testing

#endif
