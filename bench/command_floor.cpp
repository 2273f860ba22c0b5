// What no command of two records can do without: it clears both and copies the answer out of one.
// `COUNT`.

#include <cstring>

#include "repeat.h"
#include "ruk_ipmi/sel.h"

namespace
{

// Not inlined, as a library's function is not.
__attribute__((noinline)) void clear_and_copy(sel_entry *out)
{
    ipmi_request request{};
    ipmi_response response{};
    bench::touch(&request);
    bench::touch(&response);
    memcpy(out, response.data, sizeof *out);
    bench::touch(out);
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 2)
        return 2;
    sel_entry entry{};
    return bench::repeat(argv[1], [&] {
        clear_and_copy(&entry);
        return entry.completion_code == 0;
    });
}
