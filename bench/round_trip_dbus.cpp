// Method calls through a bus daemon, with as many bytes as an exchange's records: `COUNT`. Prints
// nanoseconds per call.

#include <atomic>

#include "bus.h"
#include "sockets.h"

using namespace bench;

namespace
{

const char bytes[question_size + reply_size] = {};

int answer(sd_bus_message *asked, void *, sd_bus_error *)
{
    const void *question = nullptr;
    size_t size = 0;
    check(sd_bus_message_read_array(asked, 'y', &question, &size) > 0 && size == question_size,
          "the question");
    sd_bus_message *reply = nullptr;
    check(sd_bus_message_new_method_return(asked, &reply) >= 0 &&
              sd_bus_message_append_array(reply, 'y', bytes, reply_size) >= 0 &&
              sd_bus_send(nullptr, reply, nullptr) >= 0,
          "sd_bus_send");
    sd_bus_message_unref(reply);
    return 1;
}

const sd_bus_vtable methods[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD("Ask", "ay", "ay", answer, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_VTABLE_END,
};

void ask(sd_bus *bus)
{
    sd_bus_message *question = nullptr;
    sd_bus_message *reply = nullptr;
    const void *answered = nullptr;
    size_t size = 0;
    check(sd_bus_message_new_method_call(bus, &question, bus_name, bus_path, bus_name, "Ask") >=
                  0 &&
              sd_bus_message_append_array(question, 'y', bytes, question_size) >= 0 &&
              sd_bus_call(bus, question, 0, nullptr, &reply) >= 0 &&
              sd_bus_message_read_array(reply, 'y', &answered, &size) > 0 && size == reply_size,
          "sd_bus_call");
    sd_bus_message_unref(question);
    sd_bus_message_unref(reply);
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 2)
        return 2;
    auto &ready = shared_with_children<std::atomic<bool>>();
    const pid_t server = start([&] {
        sd_bus *const bus = open_bus();
        check(sd_bus_add_object_vtable(bus, nullptr, bus_path, bus_name, methods, nullptr) >= 0 &&
                  sd_bus_request_name(bus, bus_name, 0) >= 0,
              "sd_bus_request_name");
        ready = true;
        serve(bus);
    });
    while (!ready)
        pause_us(1000);
    sd_bus *const bus = open_bus();
    printf("%.1f\n", ns_each(number(argv[1]), [&] { ask(bus); }));
    stop({server});
}
