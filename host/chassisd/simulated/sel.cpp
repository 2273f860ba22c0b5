#include "chassisd/simulated/sel.h"

#include <optional>

#include "chassisd/simulated/history.h"
#include "chassisd/simulated/repository.h"
#include "chassisd/simulated/system_event.h"

namespace chassisd::simulated
{

namespace
{

constexpr uint16_t unspecified_utc_offset = 0x07FF;

// Operations it supports: reservation, deletion, allocation information.
constexpr uint8_t operation_support = 0x0B;
constexpr uint8_t overflow = 0x80;

// What is said of the progress of an erasure.
enum erase_progress : uint8_t { erasing_now = 0x00, erased = 0x01 };

// System events and the OEM records that carry a time stamp.
bool is_stamped(uint8_t record_type)
{
    return record_type == 0x02 || (record_type >= 0xC0 && record_type <= 0xDF);
}

bool is_plain_oem(uint8_t record_type)
{
    return record_type >= 0xE0;
}

// What the log tells of its own filling, from the lowest mark on.
struct filling_mark {
    size_t entries;
    blade_event event;
    int data_1; // of the event; 0x3_: the third byte is a percentage
    int data_3;
};

constexpr filling_mark filling_marks[] = {
    {sel_nearly_full, blade_event::log_nearly_full, 0x35, sel_nearly_full * 100 / sel_capacity},
    {sel_capacity, blade_event::log_full, 0x04, 0xFF},
};

} // namespace

class event_log
{
  public:
    explicit event_log(const environment &env) : now_(env.now), alert_(env.alert)
    {
        for (const past_event &event : past_events(std::min<size_t>(env.sel_entries, sel_capacity)))
            store(event.record, time() - event.age_s);
        while (is_at_next_mark()) // long known
            ++marks_passed_;
    }

    bytes get_info() const
    {
        refuse_during_erasure();
        return success(0x51, le16(records_.size()), le16(free_records() * sel_record_size),
                       le32{added_at_}, le32{erased_at_},
                       operation_support | (overflowed_ ? overflow : 0));
    }

    bytes get_allocation_info() const
    {
        constexpr uint8_t largest_record = 1; // in units, which are records
        return success(le16(sel_capacity), le16(sel_record_size), le16(free_records()),
                       le16(free_records()), largest_record);
    }

    bytes reserve()
    {
        refuse_during_erasure();
        return success(le16(reservation_.issue()));
    }

    bytes get_entry(const bytes &request) const
    {
        refuse_during_erasure();
        const record_request wanted(request);
        if (wanted.offset != 0)
            reservation_.demand(wanted.reservation_id);
        return part_of_record(records_, position_of(wanted.record_id, records_), wanted);
    }

    bytes add_entry(const bytes &record)
    {
        refuse_during_erasure();
        const uint8_t type = record[2];
        refuse_if(!is_stamped(type) && !is_plain_oem(type), record_type_not_supported);
        overflowed_ = overflowed_ || free_records() == 0;
        refuse_if(free_records() == 0, out_of_space);
        const uint16_t id = store(record, time());
        tell_filling();
        return success(le16(id));
    }

    void report(blade_event event, bytes record)
    {
        overflowed_ = overflowed_ || free_records() == 0;
        if (free_records() != 0)
            ruk::store_le16(&record[0], store(record, time()));
        alert(event, std::move(record));
        tell_filling();
    }

    bytes delete_entry(const bytes &request)
    {
        refuse_during_erasure();
        reservation_.demand(ruk::load_le16(&request[0]));
        const size_t at = position_of(ruk::load_le16(&request[2]), records_);
        const uint16_t id = id_of(records_[at]);
        records_.erase(records_.begin() + static_cast<std::ptrdiff_t>(at));
        note_erasure();
        reservation_.cancel();
        return success(le16(id));
    }

    // The reservation that started an erasure outlives it, so that its holder can ask how far the
    // erasure is.
    bytes clear(const bytes &request)
    {
        enum action : uint8_t { get_status = 0x00, initiate = 0xAA };
        reservation_.demand(ruk::load_le16(&request[0]));
        refuse_if(request[2] != 'C' || request[3] != 'L' || request[4] != 'R', invalid_field);
        refuse_if(request[5] != initiate && request[5] != get_status, invalid_field);
        if (request[5] == initiate && !is_erasing())
            start_erasure();
        return success(is_erasing() ? erasing_now : erased);
    }

    bytes get_time() const { return success(le32{time()}); }

    bytes set_time(const bytes &request)
    {
        ahead_s_ = ruk::load_le32(request.data()) - seconds_since_1970(now_());
        return success();
    }

    bytes get_utc_offset() const { return success(le16(utc_offset_)); }

    bytes set_utc_offset(const bytes &request)
    {
        constexpr int day_minutes = 24 * 60;
        const uint16_t offset = ruk::load_le16(request.data());
        const int minutes = static_cast<int16_t>(offset);
        refuse_if(offset != unspecified_utc_offset &&
                      (minutes < -day_minutes || minutes > day_minutes),
                  out_of_range);
        utc_offset_ = offset;
        return success();
    }

  private:
    uint32_t time() const { return seconds_since_1970(now_()) + ahead_s_; }

    size_t free_records() const { return sel_capacity - records_.size(); }

    bool is_erasing() const { return erased_when_ && now_() < *erased_when_; }

    void refuse_during_erasure() const { refuse_if(is_erasing(), erase_in_progress); }

    void start_erasure()
    {
        records_.clear();
        overflowed_ = false;
        note_erasure();
        erased_when_ = now_() + erase_duration;
    }

    // A log that is empty begins to fill anew.
    void note_erasure()
    {
        erased_at_ = time();
        if (records_.empty())
            marks_passed_ = 0;
    }

    bool is_at_next_mark() const
    {
        return marks_passed_ < std::size(filling_marks) &&
               records_.size() >= filling_marks[marks_passed_].entries;
    }

    // Each mark once in a filling, also when single entries are deleted and added around it.
    void tell_filling()
    {
        for (; is_at_next_mark(); ++marks_passed_) {
            const filling_mark &mark = filling_marks[marks_passed_];
            alert(mark.event,
                  system_event(0x10, event_log_status, state, mark.data_1, 0xFF, mark.data_3));
        }
    }

    void alert(blade_event event, bytes record) const
    {
        ruk::store_le32(&record[3], time());
        alert_(event, record);
    }

    // Appends a record under an ID of its own, stamped if its type is.
    uint16_t store(bytes record, uint32_t stamp)
    {
        const uint16_t id = unused_id();
        ruk::store_le16(&record[0], id);
        if (is_stamped(record[2]))
            ruk::store_le32(&record[3], stamp);
        records_.push_back(std::move(record));
        added_at_ = stamp;
        reservation_.cancel();
        return id;
    }

    // IDs go on from the last one given and come round, past those still in use.
    uint16_t unused_id()
    {
        const auto is_used = [this](const bytes &record) { return id_of(record) == last_id_; };
        do
            last_id_ = last_id_ == last_record - 1 ? 1 : static_cast<uint16_t>(last_id_ + 1);
        while (std::any_of(records_.begin(), records_.end(), is_used));
        return last_id_;
    }

    const time_source now_;
    const event_sink alert_;
    uint32_t ahead_s_ = 0; // by how much the log's clock was set ahead; wraps like the clock
    uint16_t utc_offset_ = unspecified_utc_offset;

    record_list records_; // oldest first
    uint16_t last_id_ = 0;
    reservation reservation_;
    bool overflowed_ = false;
    size_t marks_passed_ = 0; // of filling_marks
    uint32_t added_at_ = unspecified_time;
    uint32_t erased_at_ = unspecified_time;
    std::optional<time_point> erased_when_; // end of the last erasure
};

std::shared_ptr<event_log> make_event_log(const environment &env)
{
    return std::make_shared<event_log>(env);
}

void report(event_log &log, blade_event event, bytes record)
{
    log.report(event, std::move(record));
}

command_table sel_commands(const std::shared_ptr<event_log> &log)
{
    return {
        {netfn_storage, 0x40, 0, on(log, &event_log::get_info)},
        {netfn_storage, 0x41, 0, on(log, &event_log::get_allocation_info)},
        {netfn_storage, 0x42, 0, on(log, &event_log::reserve)},
        {netfn_storage, 0x43, record_request::size, on(log, &event_log::get_entry)},
        {netfn_storage, 0x44, sel_record_size, on(log, &event_log::add_entry)},
        {netfn_storage, 0x46, 4, on(log, &event_log::delete_entry)},
        {netfn_storage, 0x47, 6, on(log, &event_log::clear)},
        {netfn_storage, 0x48, 0, on(log, &event_log::get_time)},
        {netfn_storage, 0x49, 4, on(log, &event_log::set_time)},
        {netfn_storage, 0x5C, 0, on(log, &event_log::get_utc_offset)},
        {netfn_storage, 0x5D, 2, on(log, &event_log::set_utc_offset)},
    };
}

} // namespace chassisd::simulated
