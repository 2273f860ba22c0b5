#include "cli/fru_image.h"

#include <algorithm>
#include <numeric>
#include <optional>

#include "cli/output.h"
#include "cli/request.h"
#include "cli/times.h"

namespace cli
{

namespace
{

// Offsets and lengths of the format count in these.
constexpr size_t block = 8;

// Format version and length.
constexpr size_t area_header_size = 2;

bool sums_up(const bytes &data)
{
    return std::accumulate(data.begin(), data.end(), 0) % 256 == 0;
}

// The four encodings of a field.

std::string binary(const uint8_t *data, size_t length)
{
    std::string text;
    for (size_t at = 0; at < length; ++at)
        text += (at == 0 ? "" : " ") + hex(data[at]).substr(2) + "h";
    return text;
}

// Digits, two to a byte.
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

// Four characters in three bytes, lowest bits first, counted from the blank on.
std::string six_bit(const uint8_t *data, size_t length)
{
    std::string text;
    unsigned bits = 0;
    unsigned count = 0;
    for (size_t at = 0; at < length; ++at) {
        bits |= static_cast<unsigned>(data[at]) << count;
        for (count += 8; count >= 6; count -= 6, bits >>= 6)
            text += static_cast<char>(' ' + (bits & 0x3F));
    }
    return text;
}

// Text that is not English may have two bytes to a character; it is shown byte by byte all the
// same.
std::string eight_bit(const uint8_t *data, size_t length)
{
    return std::string(data, std::find(data, data + length, 0));
}

using decoder = std::string (*)(const uint8_t *data, size_t length);
constexpr decoder decoders[] = {binary, bcd_plus, six_bit, eight_bit};

// An area's fields from one of its bytes on, up to the mark behind them, as texts. Nothing, where
// they run past the area's end, or it comes before there are `least` of them and no mark.
std::optional<std::vector<json>> fields_from(size_t first, const bytes &area, size_t least)
{
    constexpr uint8_t end_mark = 0xC1;
    std::vector<json> found;
    size_t at = first;
    while (at < area.size() && area[at] != end_mark) {
        const decoder decode = decoders[area[at] >> 6];
        const size_t length = area[at] & 0x3F;
        ++at;
        if (at + length > area.size())
            return std::nullopt;
        found.emplace_back(printable(decode(area.data() + at, length)));
        at += length;
    }
    if (at == area.size() && found.size() < least)
        return std::nullopt;
    return found;
}

// From 1 on.
constexpr const char *chassis_types[] = {
    "Other",
    "Unknown",
    "Desktop",
    "Low Profile Desktop",
    "Pizza Box",
    "Mini Tower",
    "Tower",
    "Portable",
    "LapTop",
    "Notebook",
    "Hand Held",
    "Docking Station",
    "All in One",
    "Sub Notebook",
    "Space-saving",
    "Lunch Box",
    "Main Server Chassis",
    "Expansion Chassis",
    "SubChassis",
    "Bus Expansion Chassis",
    "Peripheral Chassis",
    "RAID Chassis",
    "Rack Mount Chassis",
    "Sealed-case PC",
    "Multi-system chassis",
    "Compact PCI",
    "Advanced TCA",
    "Blade",
    "Blade Enclosure",
};

json chassis_type(const bytes &area)
{
    const uint8_t type = area[2];
    const bool known = type >= 1 && type <= std::size(chassis_types);
    return {{"type", known ? chassis_types[type - 1] : "type " + hex(type)}};
}

json board_date(const bytes &area)
{
    // The format counts minutes from 1996 on and keeps the first of them for "not known".
    constexpr uint32_t start_of_1996 = 820454400;
    const uint32_t minutes = load_le16(&area[3]) | static_cast<uint32_t>(area[5]) << 16;
    return {
        {"made", minutes == 0 ? "unspecified" : format_time(start_of_1996 + minutes * 60, true)}};
}

json nothing_more(const bytes &)
{
    return json::object();
}

struct area_kind {
    const char *name;
    size_t pointer; // byte of the common header that tells where the area is
    json (*begin)(const bytes &area);
    size_t first_field;
    std::vector<const char *> fields; // behind them come those that only their maker knows
};

const area_kind areas[] = {
    {"chassis", 2, chassis_type, 3, {"part_number", "serial_number"}},
    {"board",
     3,
     board_date,
     6,
     {"manufacturer", "product_name", "serial_number", "part_number", "fru_file_id"}},
    {"product",
     4,
     nothing_more,
     3,
     {"manufacturer", "product_name", "part_number", "version", "serial_number", "asset_tag",
      "fru_file_id"}},
};

json read_area(const area_kind &kind, const bytes &area)
{
    const size_t named = kind.fields.size();
    const auto found = fields_from(kind.first_field, area, named);
    if (!found)
        return {{"error", "cannot be read: its fields do not end within it"}};
    json told = kind.begin(area);
    for (size_t at = 0; at < named; ++at)
        told[kind.fields[at]] = at < found->size() ? (*found)[at] : json();
    told["custom"] = json::array();
    for (size_t at = named; at < found->size(); ++at)
        told["custom"].push_back((*found)[at]);
    return told;
}

constexpr size_t multirecord_pointer = 5;

json area_fields(const area_kind &kind, size_t offset, size_t size, const fru_reader &read)
{
    if (offset + area_header_size > size)
        return {{"error", "begins behind the end of the device"}};
    const size_t length = read(offset, area_header_size)[1] * block;
    if (length <= area_header_size || offset + length > size)
        return {{"error", "is longer than the device"}};
    const bytes area = read(offset, length);
    json told = read_area(kind, area);
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
