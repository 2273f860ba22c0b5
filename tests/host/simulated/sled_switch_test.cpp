// The switch of the sled: its configuration by the clock, its links, its maps of MAC addresses.

#include "parameter_blade.h"

namespace chassisd::simulated
{

namespace
{

using namespace std::chrono_literals;

enum progress : uint8_t { not_started = 0, applied = 1, pending = 2, verification_error = 6 };

const bytes file_name = {'s', 'w', 'i', 't', 'c', 'h', '-', 'a',
                         '-', 'v', '1', '2', '.', 'c', 'f', 'g'};

simulated_config older()
{
    simulated_config config;
    config.older_controller = true;
    return config;
}

class sled_blade : public parameter_blade
{
  public:
    using parameter_blade::parameter_blade;

    bytes configure(uint8_t length, uint8_t crc)
    {
        return write(0x0C, joined({length, crc, 0, 0, 0, 0, 0}, file_name));
    }

    // As chassis managers ask: a request as long as one that writes.
    bytes configuration(uint8_t count) { return read(0x0C, count, bytes(25)); }

    uint8_t status() { return configuration(24).at(8); }
    bytes links() { return fields(0x0D, {}, 4); }

    bytes map_request(uint8_t operation, const bytes &map, uint8_t parameter = 8, size_t offset = 0)
    {
        return manager(0xCB, joined(head(operation, parameter, map.size(), offset), map));
    }

    bytes set_map(const bytes &map) { return map_request(0, map); }
    bytes get_map(uint8_t id) { return map_request(1, {id}); }
};

bytes map_of(uint8_t id, size_t size)
{
    return joined({id, static_cast<uint8_t>(size)}, bytes(size, 0x02));
}

TEST(simulated_sled_switch, has_no_configuration_at_the_start)
{
    sled_blade blade;
    EXPECT_EQ(from(6, blade.configuration(24)), joined({25, 0, not_started, 0}, bytes(21)));
    EXPECT_EQ(blade.links(), (bytes{0, 0}));
}

TEST(simulated_sled_switch, works_on_a_configuration_for_a_second)
{
    sled_blade blade;
    EXPECT_EQ(blade.configure(40, 0x5A), (bytes{0x00}));
    EXPECT_EQ(blade.status(), pending);
    blade.let_pass(999ms);
    EXPECT_EQ(blade.status(), pending);
    blade.let_pass(1ms);
    EXPECT_EQ(blade.status(), applied);
}

TEST(simulated_sled_switch, tells_its_configuration_and_nothing_of_the_crc)
{
    sled_blade blade;
    blade.configure(40, 0x5A);
    const bytes answer = blade.configuration(24);
    EXPECT_EQ(part(6, 9, answer), (bytes{25, 0, pending, 40, 0, 0, 0, 0, 0}));
    EXPECT_EQ(from(15, answer), file_name);
}

TEST(simulated_sled_switch, tells_the_status_alone_to_who_asks_for_less)
{
    sled_blade blade;
    blade.configure(40, 0x5A);
    EXPECT_EQ(from(6, blade.configuration(4)), (bytes{4, 0, pending, 0}));
    EXPECT_EQ(from(6, blade.configuration(23)), (bytes{4, 0, pending, 0}));
}

TEST(simulated_sled_switch, finds_a_configuration_without_crc_wrong)
{
    sled_blade blade;
    blade.configure(40, 0);
    EXPECT_EQ(blade.status(), pending);
    blade.let_pass(1s);
    EXPECT_EQ(blade.status(), verification_error);
    EXPECT_EQ(blade.links(), (bytes{0, 0}));
}

TEST(simulated_sled_switch, begins_anew_with_another_configuration)
{
    sled_blade blade;
    blade.configure(40, 0);
    blade.let_pass(1h);
    blade.configure(41, 1);
    EXPECT_EQ(blade.status(), pending);
    blade.let_pass(1s);
    EXPECT_EQ(blade.status(), applied);
    EXPECT_EQ(blade.configuration(24).at(9), 41);
}

TEST(simulated_sled_switch, has_its_links_up_once_it_is_configured)
{
    sled_blade blade;
    blade.configure(40, 0x5A);
    EXPECT_EQ(blade.links(), (bytes{0, 0}));
    blade.let_pass(1s);
    EXPECT_EQ(blade.links(), (bytes{1, 1}));
    blade.configure(40, 0x5B);
    EXPECT_EQ(blade.links(), (bytes{0, 0}));
}

TEST(simulated_sled_switch, refuses_a_configuration_of_no_length_and_keeps_the_one_it_has)
{
    sled_blade blade;
    blade.configure(40, 0x5A);
    EXPECT_EQ(blade.configure(0, 0x5A), (bytes{0xCC}));
    EXPECT_EQ(blade.write(0x0C, bytes(22, 1)), (bytes{0xC7}));
    EXPECT_EQ(blade.write(0x0C, bytes(24, 1)), (bytes{0xC7}));
    EXPECT_EQ(blade.configuration(24).at(9), 40);
}

TEST(simulated_sled_switch, of_an_older_controller_tells_its_status_alone)
{
    sled_blade blade(older());
    EXPECT_EQ(blade.configure(40, 0x5A), (bytes{0x00}));
    EXPECT_EQ(blade.configuration(24), (bytes{0xC6}));
    EXPECT_EQ(from(6, blade.configuration(4)), (bytes{4, 0, pending, 0}));
    blade.let_pass(1s);
    EXPECT_EQ(from(6, blade.configuration(4)), (bytes{4, 0, applied, 0}));
}

TEST(simulated_mac_map, is_kept_by_its_id)
{
    sled_blade blade;
    for (const size_t size : {0, 6, 128})
        EXPECT_EQ(blade.set_map(map_of(static_cast<uint8_t>(size), size)), (bytes{0x00}));
    EXPECT_EQ(blade.get_map(6), joined({0x00}, map_of(6, 6)));
    EXPECT_EQ(blade.get_map(128), joined({0x00}, map_of(128, 128)));
    EXPECT_EQ(blade.get_map(0), joined({0x00}, map_of(0, 0)));
    EXPECT_EQ(blade.get_map(1), (bytes{0xCB}));
}

TEST(simulated_mac_map, is_replaced_by_another_of_its_id)
{
    sled_blade blade;
    blade.set_map(map_of(3, 12));
    blade.set_map(map_of(3, 6));
    EXPECT_EQ(blade.get_map(3), joined({0x00}, map_of(3, 6)));
}

TEST(simulated_mac_map, of_a_wrong_length_is_refused)
{
    sled_blade blade;
    EXPECT_EQ(blade.set_map(map_of(3, 129)), (bytes{0xC9}));
    EXPECT_EQ(blade.set_map({3, 7, 1, 2, 3, 4, 5, 6}), (bytes{0xC7}));
    EXPECT_EQ(blade.set_map({3, 5, 1, 2, 3, 4, 5, 6}), (bytes{0xC7}));
    EXPECT_EQ(blade.set_map({3}), (bytes{0xC7}));
    EXPECT_EQ(blade.manager(0xCB, {0, 8, 9, 0, 0, 0, 3, 6, 1, 2, 3, 4, 5, 6}), (bytes{0xC7}));
    EXPECT_EQ(blade.get_map(3), (bytes{0xCB}));
}

TEST(simulated_mac_map, comes_whole)
{
    sled_blade blade;
    EXPECT_EQ(blade.map_request(0, map_of(3, 6), 8, 1), (bytes{0xCC}));
    EXPECT_EQ(blade.map_request(1, {3, 6}), (bytes{0xC7}));
    EXPECT_EQ(blade.get_map(3), (bytes{0xCB}));
}

} // namespace

} // namespace chassisd::simulated
