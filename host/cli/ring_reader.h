// Reading the interrupt ring from now on, each interrupt once and in order.
#ifndef RUK_HOST_CLI_RING_READER_H
#define RUK_HOST_CLI_RING_READER_H

#include <functional>

#include "ruk_ipmi/ring.h"

namespace cli
{

class ring_reader
{
  public:
    // Begins behind what the ring holds already.
    ring_reader();

    // Reads all that is new. `missed` is told of the numbers, from `first` to `last`, that are not
    // in the ring any more, or not to be found because its numbers make no sense.
    void read_on(const std::function<void(const ipmi_interrupt &interrupt)> &found,
                 const std::function<void(uint32_t first, uint32_t last)> &missed);

    // The number of the interrupt that was read last.
    uint32_t position() const { return position_; }

  private:
    uint32_t position_;
};

} // namespace cli

#endif
