// The miscellaneous IMC event record, which mirrors the blade's last event.

#include "parameter_blade.h"

namespace chassisd::simulated
{

namespace
{

class imc_blade : public parameter_blade
{
  public:
    bytes imc_event() { return from(6, read(0x1B, 42)); }
    void power(uint8_t action) { ask(0x00, 0x02, {action}); }
};

bytes padded(bytes record)
{
    record.resize(42);
    return record;
}

TEST(simulated_imc_event, is_forty_two_bytes_and_empty_at_the_start)
{
    EXPECT_EQ(imc_blade().imc_event(), padded({42, 0}));
}

TEST(simulated_imc_event, tells_the_last_event_with_its_number_and_record)
{
    imc_blade blade;
    blade.power(0x00);
    const alert told = blade.alerts().back();
    ASSERT_EQ(told.event, blade_event::powered_off);
    EXPECT_EQ(blade.imc_event(), padded(joined({42, 0, 0x02, 0x00, 0, 10}, told.record)));
    blade.power(0x01);
    EXPECT_EQ(blade.imc_event().at(5), 9) << "power on";
}

TEST(simulated_imc_event, has_a_feature_bit_for_the_subject_of_the_event)
{
    imc_blade blade;
    blade.ask(0x04, 0x30, {0x10, 0x01, 40});
    EXPECT_EQ(blade.events(), (std::vector{blade_event::non_critical_crossed}));
    EXPECT_EQ(word_at(2, blade.imc_event()), 0x0008);
    EXPECT_EQ(blade.imc_event().at(4), 0) << "FRU";
}

} // namespace

} // namespace chassisd::simulated
