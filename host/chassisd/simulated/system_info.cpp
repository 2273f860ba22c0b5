#include "chassisd/simulated/system_info.h"

#include "chassisd/simulated/app.h"
#include "chassisd/simulated/info_text.h"
#include "chassisd/simulated/standard_parameter.h"

namespace chassisd::simulated
{

namespace
{

// How a parameter is written and read.
enum class form {
    unknown,
    progress,      // "set in progress"
    text,          // in blocks that the set selector numbers
    text_read_raw, // written as a text; its characters are read at once
    counted_text,  // like a text, with the number of the block in a byte of its own
    sized,         // bytes behind their number
    raw,           // bytes
    parts,         // the numbers of the FRU devices
    interfaces     // a list, an item for each set
};

struct form_range {
    uint8_t first;
    uint8_t last;
    form as;
};

constexpr form_range forms[] = {
    {0x00, 0x00, form::progress},      {0x01, 0x04, form::text},
    {0xC0, 0xC7, form::sized},         {0xD0, 0xD0, form::counted_text},
    {0xD1, 0xD1, form::text},          {0xD4, 0xD5, form::interfaces},
    {0xDA, 0xDA, form::parts},         {0xDC, 0xE0, form::text},
    {0xE2, 0xE2, form::raw},           {0xE5, 0xE5, form::raw},
    {0xF2, 0xF3, form::text_read_raw}, {0xFA, 0xFA, form::raw},
};

form form_of(uint8_t selector)
{
    const auto found =
        std::find_if(std::begin(forms), std::end(forms), [=](const form_range &each) {
            return each.first <= selector && selector <= each.last;
        });
    return found == std::end(forms) ? form::unknown : found->as;
}

// Room in the first block of a text whose blocks are counted: a byte goes to the count.
constexpr size_t counted_first_block = usual_first_block - 1;

// A byte has to count the text that it is part of.
std::string short_name(const environment &env)
{
    return env.name.substr(0, 64);
}

std::map<uint8_t, info_text> initial_texts(const environment &env)
{
    return {
        {1, ascii_text("2.14.0")},                             // firmware
        {2, utf_8_text(short_name(env) + " in Malm\xC3\xB6")}, // system
        {3, utf_16_text("GNU/Linux")},                         // its operating system
        {4, ascii_text("GNU/Linux, in service")},              // the same as it runs
    };
}

class system_info
{
  public:
    explicit system_info(const environment &env) : env_(env), texts_(initial_texts(env)) {}

    bytes set(const bytes &request)
    {
        const uint8_t selector = request[0];
        const bytes value(request.begin() + 1, request.end());
        const auto behind = [&](size_t head) {
            refuse_if(value.size() < head, wrong_request_length);
            return bytes(value.begin() + static_cast<std::ptrdiff_t>(head), value.end());
        };
        switch (form_of(selector)) {
        case form::progress:
            progress_.set(0, value);
            break;
        case form::text:
        case form::text_read_raw:
            write_block(texts_[selector], value[0], behind(1), usual_first_block);
            break;
        case form::counted_text: {
            const bytes block = behind(2);
            refuse_if(value[0] != 0, invalid_field);
            write_block(texts_[selector], value[1], block, counted_first_block);
            break;
        }
        case form::sized:
            refuse_if(value[0] != value.size() - 1, wrong_request_length);
            raw_[selector] = value;
            break;
        case form::raw:
            raw_[selector] = value;
            break;
        case form::parts:
        case form::interfaces:
            throw refusal{parameter_read_only};
        case form::unknown:
            throw refusal{parameter_unsupported};
        }
        return success();
    }

    // The revision bit, a selector, a set and a block; of the list of parts, also how many bytes
    // are wanted, and one that says nothing more.
    bytes get(const bytes &request) const
    {
        constexpr size_t head = 4;
        const uint8_t selector = request[1];
        const uint8_t set = request[2];
        const form as = form_of(selector);
        refuse_if(request[0] & ~revision_only, invalid_field);
        refuse_if(request.size() != head && as != form::parts, wrong_request_length);
        if (request[0] & revision_only)
            return success(parameter_revision);
        switch (as) {
        case form::progress:
            return success(parameter_revision, progress_.get(0));
        case form::text:
            return success(parameter_revision, set,
                           read_block(text(selector), set, usual_first_block));
        case form::counted_text:
            return success(parameter_revision, set, set == 0 ? bytes(1) : bytes{},
                           read_block(text(selector), set, counted_first_block));
        case form::text_read_raw:
            return success(parameter_revision, text(selector).characters);
        case form::sized:
            return success(parameter_revision, raw(selector, {0}));
        case form::raw:
            return success(parameter_revision, raw(selector, {}));
        case form::parts:
            return success(parameter_revision, parts(request.size() == head ? 0 : request[head]));
        case form::interfaces:
            return success(parameter_revision, interface(selector, set));
        default:
            throw refusal{parameter_unsupported};
        }
    }

  private:
    // Empty until it is written.
    info_text text(uint8_t selector) const
    {
        const auto found = texts_.find(selector);
        return found == texts_.end() ? info_text{} : found->second;
    }

    bytes raw(uint8_t selector, const bytes &unless_set) const
    {
        const auto found = raw_.find(selector);
        return found == raw_.end() ? unless_set : found->second;
    }

    // Their number comes first, and alone when nothing is wanted.
    static bytes parts(size_t wanted)
    {
        const bytes devices = {0, 1, 2};
        return stretch_up_to(record_of(static_cast<int>(devices.size()), devices), 0,
                             std::max<size_t>(wanted, 1));
    }

    // Two network interfaces of the system, and two of its mezzanine card: how many there
    // are, which one this is, and its MAC address.
    bytes interface(uint8_t selector, uint8_t set) const
    {
        constexpr uint8_t count = 2;
        refuse_if(set == 0 || set > count, out_of_range);
        const auto number = static_cast<uint8_t>(selector == 0xD4 ? set : count + set);
        return record_of(count, set, mac_address(env_, number));
    }

    const environment env_;
    standard_parameters progress_{{}};
    std::map<uint8_t, info_text> texts_;
    std::map<uint8_t, bytes> raw_;
};

} // namespace

command_table system_info_commands(const environment &env)
{
    const auto info = std::make_shared<system_info>(env);
    constexpr size_t most_written = 255;
    return {
        {netfn_app, 0x58, {2, 2 + most_written}, on(info, &system_info::set)},
        {netfn_app, 0x59, {4, 6}, on(info, &system_info::get)},
    };
}

} // namespace chassisd::simulated
