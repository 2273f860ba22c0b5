// What the SEL and the SDR repository have in common: records that are found by their ID, walked
// from one to the next and read in parts, and a reservation that guards them.
#ifndef RUK_HOST_CHASSISD_SIMULATED_REPOSITORY_H
#define RUK_HOST_CHASSISD_SIMULATED_REPOSITORY_H

#include "chassisd/simulated/record.h"

namespace chassisd::simulated
{

// Instead of an ID; the last one also says that no record follows.
constexpr uint16_t first_record = 0x0000;
constexpr uint16_t last_record = 0xFFFF;

// Instead of a count: all that follows the offset.
constexpr uint8_t whole_record = 0xFF;

constexpr uint32_t unspecified_time = 0xFFFFFFFF;

// Each begins with its ID.
using record_list = std::vector<bytes>;

inline uint16_t id_of(const bytes &record)
{
    return ruk::load_le16(record.data());
}

// Where the record is that a request names.
inline size_t position_of(uint16_t id, const record_list &records)
{
    refuse_if(records.empty(), not_present);
    if (id == first_record)
        return 0;
    if (id == last_record)
        return records.size() - 1;
    const auto found = std::find_if(records.begin(), records.end(),
                                    [=](const bytes &record) { return id_of(record) == id; });
    refuse_if(found == records.end(), not_present);
    return static_cast<size_t>(found - records.begin());
}

// The request of Get SEL Entry and Get SDR.
struct record_request {
    uint16_t reservation_id;
    uint16_t record_id;
    size_t offset;
    size_t count;

    static constexpr size_t size = 6;

    explicit record_request(const bytes &data)
        : reservation_id(ruk::load_le16(&data[0])),
          record_id(ruk::load_le16(&data[2])),
          offset(data[4]),
          count(data[5])
    {
    }
};

// The answer to it: the ID of the record that follows, and the part that was asked for.
inline bytes part_of_record(const record_list &records, size_t position,
                            const record_request &wanted)
{
    const bytes &record = records[position];
    const bool is_last = position + 1 == records.size();
    const uint16_t next_id = is_last ? last_record : id_of(records[position + 1]);
    const size_t left = record.size() - std::min(wanted.offset, record.size());
    return success(le16(next_id), stretch(record, wanted.offset,
                                          wanted.count == whole_record ? left : wanted.count));
}

// Only the last reservation issued counts, and only until it is cancelled: nobody shall erase, or
// read on in, what somebody else has changed meanwhile.
class reservation
{
  public:
    uint16_t issue()
    {
        last_ = last_ == 0xFFFF ? 1 : static_cast<uint16_t>(last_ + 1); // 0 says "none"
        held_ = true;
        return last_;
    }

    void cancel() { held_ = false; }

    void demand(uint16_t id) const { refuse_if(!held_ || id != last_, reservation_lost); }

  private:
    uint16_t last_ = 0;
    bool held_ = false;
};

} // namespace chassisd::simulated

#endif
