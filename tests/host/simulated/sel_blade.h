// A blade whose System Event Log is under test.
#ifndef RUK_TESTS_HOST_SIMULATED_SEL_BLADE_H
#define RUK_TESTS_HOST_SIMULATED_SEL_BLADE_H

#include "blade_under_test.h"

namespace chassisd::simulated
{

enum clear_action : uint8_t { get_status = 0x00, initiate = 0xAA };

class sel_blade : public blade_under_test
{
  public:
    explicit sel_blade(uint32_t entries = 12) : blade_under_test(with_entries(entries)) {}

    bytes info() { return storage(0x40); }
    uint16_t reserve() { return word_at(1, storage(0x42)); }

    bytes entry(uint16_t id, uint8_t offset = 0, uint8_t count = 0xFF, uint16_t reservation = 0)
    {
        return storage(0x43,
                       joined(joined(le16_bytes(reservation), le16_bytes(id)), {offset, count}));
    }

    bytes add(const bytes &record) { return storage(0x44, record); }

    bytes remove(uint16_t id, uint16_t reservation)
    {
        return storage(0x46, joined(le16_bytes(reservation), le16_bytes(id)));
    }

    bytes clear(uint16_t reservation, uint8_t action)
    {
        return storage(0x47, joined(le16_bytes(reservation), {'C', 'L', 'R', action}));
    }

    uint16_t count() { return word_at(2, info()); }

    // The record with that ID.
    bytes record(uint16_t id) { return from(3, entry(id)); }

    std::vector<bytes> walk()
    {
        return all_records([this](uint16_t id) { return entry(id); });
    }
};

// A record to add: ID and time are the log's to fill in.
inline bytes record_of_type(uint8_t type)
{
    return {0xAA, 0xBB, type, 0x11, 0x22, 0x33, 0x44, 0x20, 0x00, 0x04, 0x01, 0x10, 1, 2, 3, 4};
}

} // namespace chassisd::simulated

#endif
