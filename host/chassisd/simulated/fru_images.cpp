#include "chassisd/simulated/fru_images.h"

#include <stdexcept>

#include "chassisd/simulated/record.h"

namespace chassisd::simulated
{

namespace
{

constexpr uint8_t format_version = 0x01;
constexpr uint8_t english = 25;
constexpr uint8_t blade_chassis = 0x1C;
constexpr uint8_t end_of_fields = 0xC1;
constexpr uint8_t blank = 0xFF; // of memory never written

const text maker{"Ruk Systems"};
const text none{""};

// Capital letters, digits and signs in six bits each, the first in the lowest bits. Readers see
// spaces behind a text that does not fill its bytes.
bytes packed_text(const std::string &characters)
{
    const size_t length = (characters.size() * 6 + 7) / 8;
    bytes packed(length + 1, 0);
    packed[0] = static_cast<uint8_t>(0x80 | length);
    for (size_t i = 0; i < characters.size(); i++)
        for (size_t bit = 0; bit < 6; bit++)
            if ((characters[i] - ' ') & 1 << bit)
                packed[1 + (i * 6 + bit) / 8] |= static_cast<uint8_t>(1u << (i * 6 + bit) % 8);
    return packed;
}

// Digits, spaces, dashes and periods, two in a byte, the first in the upper half.
bytes bcd_plus(std::string characters)
{
    const std::string alphabet = "0123456789 -.";
    if (characters.size() % 2 != 0)
        characters += ' ';
    bytes packed = {static_cast<uint8_t>(0x40 | characters.size() / 2)};
    for (size_t i = 0; i < characters.size(); i += 2)
        append(packed, static_cast<int>(alphabet.find(characters[i]) << 4 |
                                        alphabet.find(characters[i + 1])));
    return packed;
}

// An area: its format and length (in multiples of 8 bytes), what is in it, padding, checksum.
bytes area_of(const bytes &contents)
{
    const size_t multiples = (2 + contents.size() + 1 + 1 + 7) / 8;
    bytes area = record_of(format_version, static_cast<int>(multiples), contents, end_of_fields);
    area.resize(multiples * 8 - 1, 0);
    append(area, zero_checksum(area));
    return area;
}

// A whole device of `size` bytes; an empty area is one that it does not have.
bytes image_of(size_t size, const bytes &chassis, const bytes &board, const bytes &product)
{
    size_t end = 8;
    const auto place = [&end](const bytes &area) {
        const size_t start = area.empty() ? 0 : end;
        end += area.size();
        return static_cast<int>(start / 8);
    };
    bytes image = record_of(format_version, 0x00); // no internal use area
    append(image, place(chassis));
    append(image, place(board));
    append(image, place(product));
    append(image, record_of(0x00, 0x00)); // no records
    append(image, zero_checksum(image));
    image = record_of(image, chassis, board, product);
    if (image.size() > size)
        throw std::logic_error("the areas of a simulated FRU device exceed it");
    image.resize(size, blank);
    return image;
}

std::string digits(unsigned number, size_t width)
{
    std::string written = std::to_string(number);
    return std::string(width - std::min(width, written.size()), '0') + written;
}

// Tells blades apart: in slot 7, sub-slot 2, "00702".
std::string place_digits(const environment &env)
{
    return digits(env.slot, 3) + digits(env.sub_slot, 2);
}

// Minutes since 1996; the blades of a chassis were made on consecutive days.
le24 manufacture_date(const environment &env)
{
    constexpr uint32_t first_blade = 14386110; // 2023-05-09 08:30
    constexpr uint32_t day = 24 * 60;
    return {first_blade + env.slot * day};
}

bytes blade_image(const environment &env)
{
    const std::string place = place_digits(env);
    return image_of(
        512,
        area_of(record_of(blade_chassis, packed_text("RKC-4016-A"), text{"7314-" + place + ".1"})),
        area_of(record_of(english, manufacture_date(env), maker, text{"Blade Main Board"},
                          text{"RKB" + place + "A"}, packed_text("RKB-2210-C"),
                          text{"blade.fru 1.2"})),
        area_of(record_of(english, maker, text{env.name}, packed_text("RKP-2200"), text{"C2"},
                          text{"RKP" + place + "X"}, text{"SLOT-" + place},
                          text{"blade.fru 1.2"})));
}

bytes mezzanine_image(const environment &env)
{
    const std::string place = place_digits(env);
    return image_of(
        256, {},
        area_of(record_of(english, manufacture_date(env), maker, text{"Mezzanine Board"},
                          text{"RKM" + place + "B"}, packed_text("RKM-1025-B"), none)),
        area_of(record_of(english, maker, text{"Dual Port Mezzanine"}, packed_text("RKM-1025"),
                          text{"B1"}, text{"RKN" + place}, none, none)));
}

bytes memory_image(const environment &env)
{
    return image_of(
        256, {}, {},
        area_of(record_of(english, maker, text{"Memory Module 32 GB"}, packed_text("RKD-3200-32R"),
                          text{"01"}, bcd_plus("5520-" + place_digits(env)), none, none)));
}

} // namespace

std::vector<bytes> fru_images(const environment &env)
{
    return {blade_image(env), mezzanine_image(env), memory_image(env)};
}

} // namespace chassisd::simulated
