#include "blade_under_test.h"

#include <algorithm>
#include <stdexcept>

namespace chassisd::simulated
{

blade_under_test::blade_under_test(const simulated_config &config, uint8_t slot, uint8_t sub_slot)
    : blade_(make_simulated_blade(
          config, slot, sub_slot,
          [this](blade_event event, const bytes &data) {
              alerts_.push_back({event, data});
          },
          [this] { return now_; }))
{
}

std::vector<blade_event> blade_under_test::events()
{
    std::vector<blade_event> numbers;
    for (const alert &each : alerts())
        numbers.push_back(each.event);
    return numbers;
}

bytes blade_under_test::last_entry()
{
    return from(3, storage(0x43, {0x00, 0x00, 0xFF, 0xFF, 0x00, 0xFF}));
}

bytes blade_under_test::ask(uint8_t netfn, uint8_t command, const bytes &data, uint8_t lun)
{
    const answer answer = blade_->execute({netfn, lun, command, data});
    EXPECT_EQ(answer.status, 0u);
    EXPECT_FALSE(answer.data.empty());
    EXPECT_LE(answer.data.size(), 484u);
    return answer.data;
}

simulated_config with_entries(uint32_t sel_entries)
{
    simulated_config config;
    config.sel_entries = sel_entries;
    return config;
}

simulated_config named(const std::string &name)
{
    simulated_config config;
    config.name = name;
    return config;
}

bytes le16_bytes(size_t number)
{
    bytes written(2);
    ruk::store_le16(written.data(), static_cast<uint16_t>(number));
    return written;
}

bytes joined(const bytes &head, const bytes &tail)
{
    bytes both = head;
    both.insert(both.end(), tail.begin(), tail.end());
    return both;
}

bytes from(size_t from, const bytes &answer)
{
    return part(from, answer.size() - std::min(from, answer.size()), answer);
}

bytes part(size_t place, size_t length, const bytes &answer)
{
    if (answer.size() < place + length)
        throw std::out_of_range("the answer is too short");
    const auto first = answer.begin() + static_cast<std::ptrdiff_t>(place);
    return {first, first + static_cast<std::ptrdiff_t>(length)};
}

uint16_t word_at(size_t place, const bytes &answer)
{
    return ruk::load_le16(part(place, 2, answer).data());
}

uint32_t long_at(size_t place, const bytes &answer)
{
    return ruk::load_le32(part(place, 4, answer).data());
}

std::vector<bytes> all_records(const std::function<bytes(uint16_t)> &get)
{
    constexpr size_t too_many = 1000; // who goes round in circles must stop
    std::vector<bytes> records;
    for (uint16_t id = 0x0000; id != 0xFFFF && records.size() < too_many;) {
        const bytes answer = get(id);
        records.push_back(from(3, answer));
        id = word_at(1, answer);
    }
    return records;
}

} // namespace chassisd::simulated
