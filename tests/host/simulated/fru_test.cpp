// The FRU inventory devices: how they are read and written, and what FreeIPMI finds in them.

#include <freeipmi/freeipmi.h>
#include <numeric>

#include "blade_under_test.h"

namespace chassisd::simulated
{

namespace
{

class fru_blade : public blade_under_test
{
  public:
    using blade_under_test::blade_under_test;

    size_t size_of(uint8_t device) { return word_at(1, storage(0x10, {device})); }

    bytes read(uint8_t device, size_t offset, uint8_t count)
    {
        return storage(0x11, joined(joined({device}, le16_bytes(offset)), {count}));
    }

    bytes write(uint8_t device, size_t offset, const bytes &data)
    {
        return storage(0x12, joined(joined({device}, le16_bytes(offset)), data));
    }

    // All that a device holds.
    bytes image(uint8_t device)
    {
        bytes image;
        const size_t size = size_of(device);
        while (image.size() < size) {
            const size_t count = std::min<size_t>(size - image.size(), 128);
            image = joined(image, from(2, read(device, image.size(), static_cast<uint8_t>(count))));
        }
        return image;
    }
};

// What FreeIPMI finds in a device's image; checksums are checked on the way.
struct inventory_found {
    std::vector<unsigned> areas;
    std::vector<std::string> chassis; // part number, serial number
    std::vector<std::string> board;   // manufacturer, product, serial and part number, file
    std::vector<std::string> product; // manufacturer, name, part, version, serial, asset tag, file
    uint8_t chassis_type = 0;
    uint32_t board_made = 0;
};

// BCD plus is decoded here: FreeIPMI 1.6 refuses every field of that type, plain digits included.
std::string decimal_text(const ipmi_fru_field_t &field)
{
    std::string text;
    for (unsigned i = 1; i < field.type_length_field_length; i++)
        for (const int nibble : {field.type_length_field[i] >> 4, field.type_length_field[i] & 0xF})
            text += "0123456789 -.???"[nibble];
    return text;
}

std::string readable(ipmi_fru_ctx_t fru, const ipmi_fru_field_t &field)
{
    if (field.type_length_field[0] >> 6 == 1)
        return decimal_text(field);
    char text[IPMI_FRU_AREA_STRING_MAX + 1] = "";
    unsigned length = IPMI_FRU_AREA_STRING_MAX;
    EXPECT_EQ(ipmi_fru_type_length_field_to_string(fru, field.type_length_field,
                                                   field.type_length_field_length,
                                                   IPMI_FRU_LANGUAGE_CODE_ENGLISH, text, &length),
              0)
        << ipmi_fru_ctx_errormsg(fru);
    return text;
}

std::vector<std::string> readable(ipmi_fru_ctx_t fru, const std::vector<ipmi_fru_field_t> &fields)
{
    std::vector<std::string> texts;
    for (const ipmi_fru_field_t &field : fields)
        texts.push_back(readable(fru, field));
    return texts;
}

void read_area(ipmi_fru_ctx_t fru, unsigned type, const bytes &area, inventory_found &found)
{
    const auto size = static_cast<unsigned>(area.size());
    uint8_t language = 0;
    int result = -1;
    std::vector<ipmi_fru_field_t> f(7);
    if (type == IPMI_FRU_AREA_TYPE_CHASSIS_INFO_AREA) {
        f.resize(2);
        result = ipmi_fru_chassis_info_area(fru, area.data(), size, &found.chassis_type, &f[0],
                                            &f[1], nullptr, 0);
        found.chassis = readable(fru, f);
    } else if (type == IPMI_FRU_AREA_TYPE_BOARD_INFO_AREA) {
        f.resize(5);
        result = ipmi_fru_board_info_area(fru, area.data(), size, &language, &found.board_made,
                                          &f[0], &f[1], &f[2], &f[3], &f[4], nullptr, 0);
        found.board = readable(fru, f);
    } else if (type == IPMI_FRU_AREA_TYPE_PRODUCT_INFO_AREA) {
        result = ipmi_fru_product_info_area(fru, area.data(), size, &language, &f[0], &f[1], &f[2],
                                            &f[3], &f[4], &f[5], &f[6], nullptr, 0);
        found.product = readable(fru, f);
    }
    EXPECT_EQ(result, 0) << ipmi_fru_ctx_errormsg(fru);
}

inventory_found find_in(const bytes &image)
{
    inventory_found found;
    ipmi_fru_ctx_t fru = ipmi_fru_ctx_create(nullptr);
    EXPECT_EQ(
        ipmi_fru_open_device_id_with_buffer(fru, image.data(), static_cast<unsigned>(image.size())),
        0)
        << ipmi_fru_ctx_errormsg(fru);
    int more = 1;
    while (more == 1) {
        unsigned type = 0;
        unsigned length = 0;
        bytes area(IPMI_FRU_AREA_SIZE_MAX);
        EXPECT_EQ(ipmi_fru_read_data_area(fru, &type, &length, area.data(), IPMI_FRU_AREA_SIZE_MAX),
                  0)
            << ipmi_fru_ctx_errormsg(fru);
        area.resize(length);
        if (length != 0) {
            found.areas.push_back(type);
            read_area(fru, type, area, found);
        }
        more = ipmi_fru_next(fru);
    }
    EXPECT_EQ(more, 0) << ipmi_fru_ctx_errormsg(fru);
    ipmi_fru_ctx_destroy(fru);
    return found;
}

TEST(simulated_fru, tells_the_size_of_each_device_and_that_it_is_accessed_by_bytes)
{
    fru_blade blade;
    EXPECT_EQ(blade.storage(0x10, {0}), (bytes{0x00, 0x00, 0x02, 0x00}));
    EXPECT_EQ(blade.storage(0x10, {1}), (bytes{0x00, 0x00, 0x01, 0x00}));
    EXPECT_EQ(blade.storage(0x10, {2}), (bytes{0x00, 0x00, 0x01, 0x00}));
}

TEST(simulated_fru, refuses_a_device_that_is_not_there)
{
    fru_blade blade;
    for (const uint8_t device : bytes{3, 0xFF}) {
        EXPECT_EQ(blade.storage(0x10, {device}), (bytes{0xCB}));
        EXPECT_EQ(blade.read(device, 0, 8), (bytes{0xCB}));
        EXPECT_EQ(blade.write(device, 0, {0x01}), (bytes{0xCB}));
    }
}

TEST(simulated_fru, begins_with_a_common_header)
{
    fru_blade blade;
    for (const uint8_t device : bytes{0, 1, 2}) {
        const bytes header = from(2, blade.read(device, 0, 8));
        EXPECT_EQ(header[0], 0x01);
        EXPECT_EQ(std::accumulate(header.begin(), header.end(), 0) & 0xFF, 0);
    }
}

TEST(simulated_fru, describes_the_blade_by_chassis_board_and_product)
{
    fru_blade blade(named("Payroll Node"), 7, 2);
    const inventory_found found = find_in(blade.image(0));
    EXPECT_EQ(found.areas, (std::vector<unsigned>{0, 1, 2}));
    EXPECT_EQ(found.chassis_type, 0x1C);
    EXPECT_EQ(found.chassis, (std::vector<std::string>{"RKC-4016-A", "7314-00702.1"}));
    EXPECT_EQ(found.board, (std::vector<std::string>{"Ruk Systems", "Blade Main Board", "RKB00702A",
                                                     "RKB-2210-C", "blade.fru 1.2"}));
    EXPECT_EQ(found.product,
              (std::vector<std::string>{"Ruk Systems", "Payroll Node", "RKP-2200", "C2",
                                        "RKP00702X", "SLOT-00702", "blade.fru 1.2"}));
}

// The encoding of an area's field, by the field's number.
int encoding_of_field(const bytes &image, size_t first_field, int number)
{
    size_t at = first_field;
    while (number-- > 0)
        at += 1u + (image[at] & 0x3F);
    return image[at] >> 6;
}

TEST(simulated_fru, holds_texts_of_all_three_encodings)
{
    const bytes memory = fru_blade().image(2);
    const size_t first_field = memory[4] * 8u + 3;
    EXPECT_EQ(encoding_of_field(memory, first_field, 1), 3) << "product name: 8-bit ASCII";
    EXPECT_EQ(encoding_of_field(memory, first_field, 2), 2) << "part number: 6-bit ASCII";
    EXPECT_EQ(encoding_of_field(memory, first_field, 4), 1) << "serial number: BCD plus";
}

TEST(simulated_fru, dates_the_board)
{
    constexpr uint32_t first_day = 1683621000; // 2023-05-09 08:30 UTC
    EXPECT_EQ(find_in(fru_blade({}, 1).image(0)).board_made, first_day + 24 * 3600);
}

TEST(simulated_fru, describes_the_mezzanine_by_board_and_product)
{
    const inventory_found found = find_in(fru_blade({}, 7).image(1));
    EXPECT_EQ(found.areas, (std::vector<unsigned>{1, 2}));
    EXPECT_EQ(found.board, (std::vector<std::string>{"Ruk Systems", "Mezzanine Board", "RKM00700B",
                                                     "RKM-1025-B", ""}));
    EXPECT_EQ(found.product[1], "Dual Port Mezzanine");
}

TEST(simulated_fru, describes_the_memory_module_by_product_alone_and_has_room_left)
{
    fru_blade blade({}, 7);
    const bytes image = blade.image(2);
    const inventory_found found = find_in(image);
    EXPECT_EQ(found.areas, (std::vector<unsigned>{2}));
    EXPECT_EQ(found.product,
              (std::vector<std::string>{"Ruk Systems", "Memory Module 32 GB", "RKD-3200-32R", "01",
                                        "5520-00700", "", ""}));
    EXPECT_EQ(from(128, image), bytes(128, 0xFF));
}

TEST(simulated_fru, differs_from_blade_to_blade)
{
    for (const uint8_t device : bytes{0, 1, 2}) {
        EXPECT_NE(fru_blade({}, 1).image(device), fru_blade({}, 2).image(device));
        EXPECT_NE(fru_blade({}, 1, 1).image(device), fru_blade({}, 1, 2).image(device));
    }
}

TEST(simulated_fru, holds_any_name_that_is_configured)
{
    struct pair {
        std::string configured;
        std::string held;
    };
    const pair names[] = {
        {"", "Blade 255"},
        {"A", "A "}, // one character alone would read as the end of the area
        {std::string(500, 'x'), std::string(63, 'x')},
        {"Knoten\n\xC3\xA9", "Knoten???"},
    };
    for (const pair &name : names) {
        fru_blade blade(named(name.configured), 255);
        EXPECT_EQ(find_in(blade.image(0)).product[1], name.held);
    }
}

TEST(simulated_fru, reads_nothing_when_nothing_is_asked_for)
{
    EXPECT_EQ(fru_blade().read(0, 0, 0), (bytes{0x00, 0x00}));
}

TEST(simulated_fru, reads_up_to_255_bytes_at_once)
{
    const bytes answer = fru_blade().read(0, 1, 255);
    EXPECT_EQ(answer.size(), 2u + 255u);
    EXPECT_EQ(answer[1], 255);
}

TEST(simulated_fru, reads_up_to_the_last_byte_and_no_further)
{
    fru_blade blade;
    EXPECT_EQ(blade.read(0, 511, 1).size(), 3u);
    EXPECT_EQ(blade.read(0, 511, 2), (bytes{0xCA}));
    EXPECT_EQ(blade.read(0, 512, 1), (bytes{0xC9}));
    EXPECT_EQ(blade.read(0, 0xFFFF, 1), (bytes{0xC9}));
}

TEST(simulated_fru, keeps_what_is_written)
{
    fru_blade blade;
    const bytes before = blade.image(2);
    EXPECT_EQ(blade.write(2, 0xF0, {0xDE, 0xAD, 0x42}), (bytes{0x00, 0x03}));
    const bytes after = blade.image(2);
    EXPECT_EQ(part(0, 0xF0, after), part(0, 0xF0, before));
    EXPECT_EQ(from(0xF0, after), joined({0xDE, 0xAD, 0x42}, from(0xF3, before)));
}

TEST(simulated_fru, writes_one_device_and_no_other)
{
    fru_blade blade;
    const bytes others = joined(blade.image(0), blade.image(2));
    blade.write(1, 0, bytes(255, 0x55));
    EXPECT_EQ(joined(blade.image(0), blade.image(2)), others);
}

TEST(simulated_fru, writes_up_to_the_last_byte)
{
    fru_blade blade;
    EXPECT_EQ(blade.write(1, 254, {1, 2}), (bytes{0x00, 0x02}));
    EXPECT_EQ(blade.read(1, 254, 2), (bytes{0x00, 0x02, 1, 2}));
}

TEST(simulated_fru, writes_nothing_of_what_would_run_past_the_end)
{
    fru_blade blade;
    const bytes before = blade.image(1);
    EXPECT_EQ(blade.write(1, 254, {1, 2, 3}), (bytes{0xC9}));
    EXPECT_EQ(blade.write(1, 256, {1}), (bytes{0xC9}));
    EXPECT_EQ(blade.write(1, 0xFFFF, {1}), (bytes{0xC9}));
    EXPECT_EQ(blade.image(1), before);
}

TEST(simulated_fru, writes_as_much_as_the_answer_can_count)
{
    fru_blade blade;
    EXPECT_EQ(blade.write(1, 0, bytes(255, 0x55)), (bytes{0x00, 0xFF}));
    const bytes before = blade.image(0);
    EXPECT_EQ(blade.write(0, 0, bytes(256, 0x55)), (bytes{0xC7}));
    EXPECT_EQ(blade.image(0), before);
}

TEST(simulated_fru, writes_nothing_when_nothing_is_given)
{
    EXPECT_EQ(fru_blade().write(0, 0, {}), (bytes{0x00, 0x00}));
}

} // namespace

} // namespace chassisd::simulated
