// Notices to a blade: what became of its firmware update and of its logs.

#include "cli/command_tree.h"

namespace cli
{

namespace
{

const request_name notify_update = {0x30D0, "Set Firmware Update Status"};
const request_name notify_time_out = {0x30D0, "Set Time-out Error"};
const request_name notify_logs = {0x30D0, "Set Log Bundle Status"};

struct notice_choice {
    uint8_t status = 0;
};

report firmware_status(const blade &at, const notice_choice &chosen)
{
    call(notify_update, at, ipmi_location_set_fwupdate_status, chosen.status);
    return tell({{"notice", "firmware update"}, {"status", chosen.status}});
}

report timed_out(const blade &at)
{
    call(notify_time_out, at, ipmi_location_set_timeout_error);
    return tell({{"notice", "time-out"}});
}

report logs_status(const blade &at, const notice_choice &chosen)
{
    call(notify_logs, at, ipmi_location_set_dumplogs_status, chosen.status);
    return tell({{"notice", "log bundle"}, {"status", chosen.status}});
}

} // namespace

void add_notify(const noun &root)
{
    const noun notify = root.noun_below("notify", "Notices to the blade");
    notify.verb("fw-status", "Tell the outcome of a firmware update", firmware_status)
        .argument("N", &notice_choice::status, number<uint8_t>, "Status, 0 to 255");
    notify.verb("timeout", "Tell that a firmware update took too long", timed_out);
    notify.verb("dump-logs", "Tell whether the blade's log bundle is ready", logs_status)
        .argument("N", &notice_choice::status, number<uint8_t>, "Status, 0 to 255");
}

} // namespace cli
