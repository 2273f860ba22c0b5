#include "chassisd/simulated/sdr.h"

#include "chassisd/simulated/repository.h"
#include "chassisd/simulated/sdr_records.h"

namespace chassisd::simulated
{

namespace
{

// Room for records, in allocation units.
constexpr size_t unit_size = 16;
constexpr size_t units = 256;
constexpr uint8_t largest_record_units = 4;

// When the records were put in: with the firmware, so that a reader's cache of them stays good.
constexpr uint32_t added_at = 1683621000; // 2023-05-09 08:30 UTC

// Operations it supports: reservation and allocation information; nobody adds or deletes.
constexpr uint8_t operation_support = 0x03;

class sdr_repository
{
  public:
    explicit sdr_repository(const environment &env)
        : now_(env.now),
          records_(sensor_data_records(env))
    {
    }

    bytes get_info() const
    {
        return success(0x51, le16(records_.size()), le16(free_units() * unit_size), le32{added_at},
                       le32{unspecified_time}, operation_support);
    }

    bytes get_allocation_info() const
    {
        return success(le16(units), le16(unit_size), le16(free_units()), le16(free_units()),
                       largest_record_units);
    }

    bytes reserve() { return success(le16(reservation_.issue())); }

    // Only a reader that goes on inside a record needs a reservation.
    bytes get_record(const bytes &request) const
    {
        const record_request wanted(request);
        const size_t position = position_of(wanted.record_id, records_);
        if (wanted.offset != 0)
            reservation_.demand(wanted.reservation_id);
        return part_of_record(records_, position, wanted);
    }

    bytes get_time() const { return success(le32{seconds_since_1970(now_())}); }

  private:
    size_t free_units() const
    {
        size_t used = 0;
        for (const bytes &record : records_)
            used += (record.size() + unit_size - 1) / unit_size;
        return units - used;
    }

    const time_source now_;
    const record_list records_;
    reservation reservation_;
};

} // namespace

command_table sdr_commands(const environment &env)
{
    const auto records = std::make_shared<sdr_repository>(env);
    return {
        {netfn_storage, 0x20, 0, on(records, &sdr_repository::get_info)},
        {netfn_storage, 0x21, 0, on(records, &sdr_repository::get_allocation_info)},
        {netfn_storage, 0x22, 0, on(records, &sdr_repository::reserve)},
        {netfn_storage, 0x23, record_request::size, on(records, &sdr_repository::get_record)},
        {netfn_storage, 0x28, 0, on(records, &sdr_repository::get_time)},
    };
}

} // namespace chassisd::simulated
