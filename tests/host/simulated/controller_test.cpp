// What the controller refuses before any device is asked, and what it says of itself.

#include "blade_under_test.h"

namespace chassisd::simulated
{

namespace
{

TEST(simulated_controller, refuses_a_command_it_does_not_know)
{
    EXPECT_EQ(blade_under_test().ask(0x06, 0x7F), (bytes{0xC1}));
}

TEST(simulated_controller, refuses_a_network_function_it_does_not_know)
{
    EXPECT_EQ(blade_under_test().ask(0x3E, 0x01), (bytes{0xC1}));
}

TEST(simulated_controller, refuses_the_network_function_of_a_response)
{
    EXPECT_EQ(blade_under_test().ask(0x07, 0x01), (bytes{0xC1}));
}

TEST(simulated_controller, refuses_a_known_command_on_another_lun)
{
    EXPECT_EQ(blade_under_test().ask(0x06, 0x01, {}, 2), (bytes{0xC2}));
}

TEST(simulated_controller, refuses_a_request_that_is_longer_or_shorter_than_its_command)
{
    struct shape {
        uint8_t netfn;
        uint8_t command;
        size_t least;
        size_t most;
    };
    constexpr shape shapes[] = {
        {0x00, 0x01, 0, 0},     {0x00, 0x02, 1, 1},   {0x00, 0x0A, 1, 1},   {0x04, 0x30, 3, 10},
        {0x04, 0x27, 1, 1},     {0x04, 0x2D, 1, 1},   {0x06, 0x01, 0, 0},   {0x06, 0x04, 0, 0},
        {0x06, 0x08, 0, 0},     {0x0A, 0x10, 1, 1},   {0x0A, 0x11, 4, 4},   {0x0A, 0x12, 3, 258},
        {0x0A, 0x20, 0, 0},     {0x0A, 0x21, 0, 0},   {0x0A, 0x22, 0, 0},   {0x0A, 0x23, 6, 6},
        {0x0A, 0x28, 0, 0},     {0x0A, 0x40, 0, 0},   {0x0A, 0x41, 0, 0},   {0x0A, 0x42, 0, 0},
        {0x0A, 0x43, 6, 6},     {0x0A, 0x44, 16, 16}, {0x0A, 0x46, 4, 4},   {0x0A, 0x47, 6, 6},
        {0x0A, 0x48, 0, 0},     {0x0A, 0x49, 4, 4},   {0x0A, 0x5C, 0, 0},   {0x0A, 0x5D, 2, 2},
        {0x30, 0xBC, 10, 10},   {0x30, 0xD4, 4, 4},   {0x00, 0x04, 0, 2},   {0x00, 0x09, 3, 3},
        {0x06, 0x43, 3, 4},     {0x06, 0x44, 2, 2},   {0x06, 0x45, 17, 17}, {0x06, 0x46, 1, 1},
        {0x0C, 0x02, 4, 4},     {0x2E, 0x01, 3, 3},   {0x2E, 0x02, 9, 9},   {0x2E, 0x03, 10, 137},
        {0x2E, 0x18, 0, 0},     {0x30, 0x21, 1, 1},   {0x30, 0x32, 0, 0},   {0x30, 0x33, 0, 0},
        {0x30, 0x51, 0, 0},     {0x30, 0x87, 5, 6},   {0x30, 0x8B, 3, 3},   {0x30, 0x8C, 0, 0},
        {0x30, 0x8D, 0, 0},     {0x30, 0x8E, 0, 0},   {0x30, 0x8F, 0, 0},   {0x30, 0x90, 0, 0},
        {0x30, 0x92, 129, 129}, {0x30, 0x93, 1, 1},   {0x30, 0x94, 2, 2},   {0x30, 0x95, 3, 3},
        {0x30, 0x96, 36, 36},   {0x30, 0x97, 9, 9},   {0x30, 0x99, 0, 0},   {0x30, 0x9A, 3, 3},
        {0x30, 0x9B, 0, 0},     {0x30, 0x9C, 2, 2},   {0x30, 0x9D, 3, 3},   {0x30, 0xA3, 1, 1},
        {0x30, 0xA9, 4, 4},     {0x30, 0xBD, 0, 0},   {0x30, 0xC0, 16, 16}, {0x30, 0xC3, 8, 8},
        {0x30, 0xC9, 32, 32},
    };
    blade_under_test blade;
    for (const shape &shape : shapes) {
        SCOPED_TRACE(testing::Message() << std::hex << +shape.netfn << " " << +shape.command);
        EXPECT_EQ(blade.ask(shape.netfn, shape.command, bytes(shape.most + 1)), (bytes{0xC7}));
        if (shape.least > 0) {
            EXPECT_EQ(blade.ask(shape.netfn, shape.command, bytes(shape.least - 1)), (bytes{0xC7}));
        }
        EXPECT_NE(blade.ask(shape.netfn, shape.command, bytes(shape.least))[0], 0xC7);
        EXPECT_NE(blade.ask(shape.netfn, shape.command, bytes(shape.most))[0], 0xC7);
    }
}

// The blade's state goes on from request to request, so that late ones find what early ones left.
TEST(simulated_controller, has_an_answer_to_whatever_is_asked)
{
    blade_under_test blade;
    uint32_t noise = 1;
    for (const uint8_t netfn : bytes{0x00, 0x04, 0x06, 0x0A, 0x0C, 0x2E, 0x30}) {
        for (unsigned command = 0; command < 0x100; ++command) {
            for (const size_t size : {0, 1, 2, 3, 4, 5, 6, 9, 10, 16, 17, 22, 32, 36, 129, 488}) {
                bytes data(size);
                for (uint8_t &byte : data)
                    byte = static_cast<uint8_t>((noise = noise * 1664525 + 1013904223) >> 24) % 16;
                if (netfn == 0x2E && size >= 3)
                    std::copy_n(bytes{0xA2, 0x02, 0x00}.begin(), 3, data.begin());
                blade.ask(netfn, static_cast<uint8_t>(command), data);
                blade.let_pass(std::chrono::milliseconds(noise >> 20));
            }
        }
    }
}

TEST(simulated_controller, is_an_ipmi_2_0_device_with_sel_sdr_fru_and_sensors)
{
    const bytes answer = blade_under_test().ask(0x06, 0x01);
    ASSERT_EQ(answer.size(), 16u);
    EXPECT_EQ(answer[0], 0x00);
    EXPECT_EQ(answer[5], 0x02) << "IPMI version";
    EXPECT_EQ(answer[6], 0x0F) << "device support";
    EXPECT_EQ(long_at(7, answer) & 0xFFFFFF, 32473u) << "manufacturer";
}

TEST(simulated_controller, passes_its_self_test)
{
    EXPECT_EQ(blade_under_test().ask(0x06, 0x04), (bytes{0x00, 0x55, 0x00}));
}

TEST(simulated_controller, has_a_time_based_guid_that_tells_its_place)
{
    const bytes answer = blade_under_test({}, 7, 2).ask(0x06, 0x08);
    ASSERT_EQ(answer.size(), 17u);
    EXPECT_EQ(answer[1], 2) << "sub-slot";
    EXPECT_EQ(answer[2], 7) << "slot";
    EXPECT_EQ(answer[8] & 0xC0, 0x80) << "variant";
    EXPECT_EQ(answer[10] >> 4, 1) << "version";
    EXPECT_NE(answer, blade_under_test({}, 8, 2).ask(0x06, 0x08));
}

TEST(simulated_controller, runs_on_the_hosts_time_when_no_clock_is_given)
{
    const auto blade = make_simulated_blade({}, 1, 0, nullptr);
    const uint32_t before = seconds_since_1970(std::chrono::system_clock::now());
    const uint32_t told = long_at(1, blade->execute({0x0A, 0, 0x48, {}}).data);
    EXPECT_GE(told, before - 1);
    EXPECT_LE(told, before + 5);
}

} // namespace

} // namespace chassisd::simulated
