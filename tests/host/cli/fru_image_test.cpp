// What is found in a FRU device, with FreeIPMI as the judge of areas and of texts.

#include "cli/fru_image.h"

#include <freeipmi/freeipmi.h>
#include <gtest/gtest.h>
#include <random>

#include "cli/output.h"

using namespace cli;

namespace
{

// A device of one area, which holds this behind its header; the checksums do not count.
bytes image_of(size_t pointer, bytes contents)
{
    bytes image = {1, 0, 0, 0, 0, 0, 0, 0};
    image[pointer] = 1;
    image[7] = static_cast<uint8_t>(-2);
    contents.resize((contents.size() + 2 + 7) / 8 * 8 - 2);
    image.push_back(1);
    image.push_back(static_cast<uint8_t>((contents.size() + 2) / 8));
    image.insert(image.end(), contents.begin(), contents.end());
    return image;
}

json area_of(const bytes &image, const char *name)
{
    return fru_fields(image.size(), [&](size_t offset, size_t length) {
        return bytes(image.begin() + static_cast<ptrdiff_t>(offset),
                     image.begin() + static_cast<ptrdiff_t>(offset + length));
    })[name];
}

using freeipmi_fields = std::vector<ipmi_fru_field_t>;

class judge
{
  public:
    judge() = default;
    ~judge() { ipmi_fru_ctx_destroy(context_); }
    judge(const judge &) = delete;
    judge &operator=(const judge &) = delete;

    // A board area's fields, those that are not there being empty; nothing when it cannot be read.
    std::optional<freeipmi_fields> board(const bytes &image) const
    {
        constexpr size_t behind_headers = 10;
        bytes area(image.begin() + behind_headers, image.end());
        area.push_back(0); // where no mark ends the fields, FreeIPMI looks behind them
        freeipmi_fields found(most_fields);
        uint8_t language = 0;
        uint32_t made = 0;
        if (ipmi_fru_board_info_area(context_, area.data(), static_cast<unsigned>(area.size() - 1),
                                     &language, &made, &found[0], &found[1], &found[2], &found[3],
                                     &found[4], &found[5], most_fields - 5) < 0)
            return std::nullopt;
        return found;
    }

    json text(const ipmi_fru_field_t &field) const
    {
        if (field.type_length_field_length == 0)
            return nullptr;
        char text[IPMI_FRU_AREA_STRING_MAX + 1] = "";
        unsigned length = IPMI_FRU_AREA_STRING_MAX;
        EXPECT_EQ(ipmi_fru_type_length_field_to_string(
                      context_, field.type_length_field, field.type_length_field_length,
                      IPMI_FRU_LANGUAGE_CODE_ENGLISH, text, &length),
                  0);
        return printable(text);
    }

  private:
    static constexpr size_t most_fields = 21;

    ipmi_fru_ctx_t context_ = ipmi_fru_ctx_create(nullptr);
};

// Fields of all encodings but that of digits, which FreeIPMI refuses. Some areas have no end mark,
// or a length that leads out of them.
bytes drawn_fields(std::mt19937 &random)
{
    const auto below = [&](unsigned limit) {
        return static_cast<uint8_t>(std::uniform_int_distribution<unsigned>(0, limit - 1)(random));
    };
    static constexpr uint8_t encodings[] = {0x00, 0x80, 0xC0};
    bytes fields;
    for (unsigned left = below(12); left > 0; --left) {
        const uint8_t length = below(30) == 0 ? 63 : below(9);
        const uint8_t head = encodings[below(3)] | length;
        if (head == 0xC1)
            continue;
        fields.push_back(head);
        for (unsigned data = std::min<unsigned>(length, 8); data > 0; --data)
            fields.push_back(below(256));
    }
    if (below(8) != 0)
        fields.push_back(0xC1);
    return fields;
}

// All that the board area's fields are said to be.
std::vector<json> texts_of_board(const json &board)
{
    std::vector<json> texts;
    for (const char *name :
         {"manufacturer", "product_name", "serial_number", "part_number", "fru_file_id"})
        texts.push_back(board.at(name));
    for (const json &custom : board.at("custom"))
        texts.push_back(custom);
    return texts;
}

constexpr size_t chassis_pointer = 2;
constexpr size_t board_pointer = 3;

} // namespace

TEST(fru_image, is_read_like_freeipmi_reads_it)
{
    const judge freeipmi;
    std::mt19937 random(1);
    unsigned readable = 0;
    for (unsigned round = 0; round < 3000; ++round) {
        bytes contents = {25, 1, 2, 3};
        const bytes fields = drawn_fields(random);
        contents.insert(contents.end(), fields.begin(), fields.end());
        const bytes image = image_of(board_pointer, contents);
        const json board = area_of(image, "board");
        const auto found = freeipmi.board(image);
        ASSERT_EQ(board.contains("error"), !found) << hex(image) << board;
        if (!found)
            continue;
        ++readable;
        std::vector<json> texts = texts_of_board(board);
        texts.resize(found->size());
        for (size_t at = 0; at < found->size(); ++at)
            EXPECT_EQ(texts[at], freeipmi.text((*found)[at])) << hex(image);
    }
    EXPECT_GT(readable, 1000u);
    EXPECT_LT(readable, 3000u);
}

TEST(fru_image, names_every_type_of_chassis_like_freeipmi_does)
{
    for (unsigned number = 0; number <= 0xFF; ++number) {
        const auto type = static_cast<uint8_t>(number);
        const json chassis = area_of(image_of(chassis_pointer, {type, 0xC1}), "chassis");
        const std::string name =
            IPMI_FRU_CHASSIS_TYPE_VALID(type) ? ipmi_fru_chassis_types[type] : "type " + hex(type);
        EXPECT_EQ(chassis.at("type"), name);
    }
}

TEST(fru_image, shows_digits_two_to_a_byte)
{
    const bytes contents = {0, 0, 0, 0, 0x43, 0x12, 0xA3, 0xBC, 0xC1};
    EXPECT_EQ(area_of(image_of(board_pointer, contents), "board").at("manufacturer"), "12 3-.");
}

TEST(fru_image, dates_a_board_in_minutes_from_1996_on)
{
    const auto made = [](uint8_t a, uint8_t b, uint8_t c) {
        return area_of(image_of(board_pointer, {0, a, b, c, 0xC1}), "board").at("made");
    };
    EXPECT_EQ(made(0, 0, 0), "unspecified");
    EXPECT_EQ(made(1, 0, 0), "1996-01-01T00:01:00Z");
    EXPECT_EQ(made(0xFF, 0xFF, 0xFF), "2027-11-24T20:15:00Z");
}
