#include "cli/fru_image.h"

#include <freeipmi/freeipmi.h>
#include <numeric>

#include "cli/output.h"
#include "cli/parser.h"
#include "cli/times.h"

namespace cli
{

namespace
{

// Offsets and lengths of the format count in these.
constexpr size_t block = 8;

// Format version and length.
constexpr size_t area_header_size = 2;

constexpr size_t most_custom_fields = 16;

using fields = std::vector<ipmi_fru_field_t>;

// A thread's own: a context has room for one parse at a time.
ipmi_fru_ctx_t context()
{
    static thread_local const auto made = kept(ipmi_fru_ctx_create(nullptr), ipmi_fru_ctx_destroy);
    return made.get();
}

bool sums_up(const bytes &data)
{
    return std::accumulate(data.begin(), data.end(), 0) % 256 == 0;
}

// Digits, two to a byte; the parser refuses every field of this encoding.
std::string bcd_plus(const uint8_t *data, size_t length)
{
    static constexpr char digits[] = "0123456789 -.???";
    std::string text;
    for (size_t at = 0; at < length; ++at) {
        text += digits[data[at] >> 4];
        text += digits[data[at] & 0x0F];
    }
    return text;
}

json text(const ipmi_fru_field_t &field, uint8_t language)
{
    if (field.type_length_field_length == 0)
        return nullptr;
    constexpr uint8_t bcd_plus_type = 1;
    if (field.type_length_field[0] >> 6 == bcd_plus_type)
        return printable(bcd_plus(field.type_length_field + 1, field.type_length_field_length - 1));
    // Text in a language that the parser cannot tell is shown as English, the format's first.
    for (const uint8_t attempt : {language, uint8_t{IPMI_FRU_LANGUAGE_CODE_ENGLISH}}) {
        char text[IPMI_FRU_AREA_STRING_MAX + 1] = "";
        unsigned length = IPMI_FRU_AREA_STRING_MAX;
        if (ipmi_fru_type_length_field_to_string(context(), field.type_length_field,
                                                 field.type_length_field_length, attempt, text,
                                                 &length) == 0)
            return printable(text);
    }
    return hex(field.type_length_field, field.type_length_field_length);
}

// The fields' texts under their names, then those that only their maker knows.
void add_texts(json &told, const std::vector<const char *> &names, const fields &found,
               uint8_t language)
{
    for (size_t at = 0; at < names.size(); ++at)
        told[names[at]] = text(found[at], language);
    json custom = json::array();
    for (size_t at = names.size(); at < found.size(); ++at)
        if (found[at].type_length_field_length != 0)
            custom.push_back(text(found[at], language));
    told["custom"] = custom;
}

// The parsers take what stands between an area's header and its end.

json chassis_area(const uint8_t *data, unsigned length)
{
    uint8_t type = 0;
    fields found(2 + most_custom_fields);
    if (ipmi_fru_chassis_info_area(context(), data, length, &type, &found[0], &found[1], &found[2],
                                   most_custom_fields) < 0)
        return nullptr;
    json told;
    told["type"] =
        IPMI_FRU_CHASSIS_TYPE_VALID(type) ? ipmi_fru_chassis_types[type] : "type " + hex(type);
    add_texts(told, {"part_number", "serial_number"}, found, IPMI_FRU_LANGUAGE_CODE_ENGLISH);
    return told;
}

json board_area(const uint8_t *data, unsigned length)
{
    uint8_t language = 0;
    uint32_t made = 0;
    fields found(5 + most_custom_fields);
    if (ipmi_fru_board_info_area(context(), data, length, &language, &made, &found[0], &found[1],
                                 &found[2], &found[3], &found[4], &found[5],
                                 most_custom_fields) < 0)
        return nullptr;
    // The format counts minutes from 1996 on and keeps the first of them for "not known".
    constexpr uint32_t start_of_1996 = 820454400;
    json told;
    told["made"] = made == start_of_1996 ? "unspecified" : format_time(made, true);
    add_texts(told, {"manufacturer", "product_name", "serial_number", "part_number", "fru_file_id"},
              found, language);
    return told;
}

json product_area(const uint8_t *data, unsigned length)
{
    uint8_t language = 0;
    fields found(7 + most_custom_fields);
    if (ipmi_fru_product_info_area(context(), data, length, &language, &found[0], &found[1],
                                   &found[2], &found[3], &found[4], &found[5], &found[6], &found[7],
                                   most_custom_fields) < 0)
        return nullptr;
    json told = json::object();
    add_texts(told,
              {"manufacturer", "product_name", "part_number", "version", "serial_number",
               "asset_tag", "fru_file_id"},
              found, language);
    return told;
}

struct area_kind {
    const char *name;
    size_t pointer; // byte of the common header that tells where the area is
    json (*parse)(const uint8_t *data, unsigned length);
};

constexpr area_kind areas[] = {
    {"chassis", 2, chassis_area}, {"board", 3, board_area}, {"product", 4, product_area}};

constexpr size_t multirecord_pointer = 5;

json area_fields(const area_kind &kind, size_t offset, size_t size, const fru_reader &read)
{
    if (offset + area_header_size > size)
        return {{"error", "begins behind the end of the device"}};
    const size_t length = read(offset, area_header_size)[1] * block;
    if (length <= area_header_size || offset + length > size)
        return {{"error", "is longer than the device"}};
    const bytes area = read(offset, length);
    json told = kind.parse(area.data() + area_header_size,
                           static_cast<unsigned>(area.size() - area_header_size));
    if (told.is_null())
        told = {{"error", std::string("cannot be read: ") + ipmi_fru_ctx_errormsg(context())}};
    told["checksum"] = sums_up(area) ? "right" : "wrong";
    return told;
}

} // namespace

std::string fru_header_mistake(const bytes &image)
{
    if (image.size() < fru_header_size)
        return "no common header: " + std::to_string(image.size()) + " bytes";
    if ((image[0] & 0x0F) != 1)
        return "no common header: format version " + hex(image[0]);
    if (!sums_up(bytes(image.begin(), image.begin() + fru_header_size)))
        return "the common header's checksum is wrong";
    return "";
}

json fru_fields(size_t size, const fru_reader &read)
{
    const bytes header = read(0, std::min(size, fru_header_size));
    const std::string mistake = fru_header_mistake(header);
    // Where a header cannot be trusted nothing can be found.
    if (!mistake.empty())
        throw failure(exit_refused, "not readable as FRU data: " + mistake);
    json told = json::object();
    for (const area_kind &kind : areas)
        if (header[kind.pointer] != 0)
            told[kind.name] = area_fields(kind, header[kind.pointer] * block, size, read);
    if (header[multirecord_pointer] != 0)
        told["multirecord"] = "at byte " +
                              hex(static_cast<uint16_t>(header[multirecord_pointer] * block)) +
                              ", not decoded";
    return told;
}

} // namespace cli
