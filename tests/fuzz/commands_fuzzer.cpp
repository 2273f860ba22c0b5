// Every command function, with arguments of any kind, against blades that
// answer whatever they like: any status, completion code, length and bytes.

#include "fuzz/drawn_platform.h"

using namespace ruk_ipmi_testing;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const std::vector<command_function> &all = command_functions();
    arguments input(data, size);
    drawn_platform platform(input);
    while (input.left() != 0) {
        all[input.byte() % all.size()].call(input);
        drawn_platform::check_nothing_is_attached();
    }
    return 0;
}
