#include "chassisd/simulated/alerts.h"

#include <deque>

#include "chassisd/simulated/app.h"
#include "chassisd/simulated/hardware.h"
#include "chassisd/simulated/record.h"

namespace chassisd::simulated
{

namespace
{

// A test is logged as a record of the manufacturer's own: the event's number, the four bytes that
// came with it, and a byte that means nothing. What follows these in the request means nothing
// either.
bytes test_alert(event_log &log, const bytes &request)
{
    constexpr uint8_t stamped_oem_record = 0xC0;
    constexpr uint8_t events = 64;
    refuse_if(request[0] == 0 || request[0] > events, out_of_range);
    const bytes told(request.begin(), request.begin() + 5);
    report(log, blade_event{request[0]},
           record_of(le16(0), stamped_oem_record, le32{0}, le24{manufacturer_id}, told, 0x00));
    return success();
}

} // namespace

class alert_history
{
  public:
    void keep(blade_event event, bytes record)
    {
        ++count_;
        last_ = event;
        record.resize(sel_record_size);
        records_.push_back(std::move(record));
        if (records_.size() > most_records)
            records_.pop_front();
    }

    // How many alerts there were, the last one's event (0: none yet), and how the system is:
    // whether it is on and its POST code.
    bytes status(time_point now, const power_state &power) const
    {
        return success(le16(count_), static_cast<int>(last_), power.on, post_code(now, power));
    }

    // The only queue, 0, has the records of the last alerts, oldest first. A block is 16 of them,
    // zeros behind those that there are.
    bytes block(const bytes &request) const
    {
        constexpr size_t records_per_block = 16;
        refuse_if(request[0] != 0, invalid_field);
        const size_t first = request[1] * records_per_block;
        refuse_if(first >= std::max<size_t>(records_.size(), 1), out_of_range);
        bytes records;
        for (size_t i = first; i < std::min(records_.size(), first + records_per_block); ++i)
            append(records, records_[i]);
        records.resize(records_per_block * sel_record_size);
        return success(records);
    }

  private:
    static constexpr size_t most_records = 64;

    uint16_t count_ = 0;
    blade_event last_{};
    std::deque<bytes> records_;
};

std::shared_ptr<alert_history> make_alert_history()
{
    return std::make_shared<alert_history>();
}

event_sink kept_by(std::shared_ptr<alert_history> history, event_sink alert)
{
    return [history = std::move(history), alert = std::move(alert)](blade_event number,
                                                                    const bytes &record) {
        history->keep(number, record);
        alert(number, record);
    };
}

command_table alert_commands(const environment &env, std::shared_ptr<const alert_history> history,
                             std::shared_ptr<event_log> log,
                             std::shared_ptr<const power_state> power)
{
    return {
        {netfn_manager, 0x51, 0,
         [now = env.now, history, power](const bytes &) { return history->status(now(), *power); }},
        {netfn_manager, 0x94, 2, on(history, &alert_history::block)},
        {netfn_manager, 0x97, 9, [log](const bytes &request) { return test_alert(*log, request); }},
    };
}

} // namespace chassisd::simulated
