// The POST code of a blade.

#include <cstring>

#include "cli/command_tree.h"
#include "cli/readers.h"

namespace cli
{

namespace
{

const request_name get_post_code = {0x30D4, "Get POST Code"};

constexpr size_t code_size = 4;

struct post_code_choice {
    bytes request = bytes(4);
};

report post_code(const blade &at, const post_code_choice &chosen)
{
    uint8_t post[17] = {}; // completion code, code, further bytes
    call(get_post_code, at, ipmi_bexal_post_code, chosen.request.data(), post);
    uint32_t code = 0;
    memcpy(&code, post + 1, sizeof code);
    bytes further(post + 1 + code_size, std::end(post));
    if (may_be_cut_short(further)) { // then those that are there
        const bytes answer = exchange(get_post_code, at, chosen.request, code_size);
        further.resize(std::min(further.size(), answer.size() - code_size));
    }
    return tell({{"post_code", hex(code)}, {"further_bytes", hex(further)}});
}

} // namespace

void add_post_code(const noun &root)
{
    root.verb("post-code", "Show the blade's POST code", post_code)
        .option("--request", "HEX", &post_code_choice::request, hex_of<4>,
                "The request's 4 bytes; zeros when not given");
}

} // namespace cli
