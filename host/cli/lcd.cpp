// The messages on a blade's LCD.

#include "cli/command_tree.h"

namespace cli
{

namespace
{

const request_name hide_messages = {0x30D0, "Hide LCD Messages"};
const request_name show_messages = {0x30D0, "Show LCD Messages"};
const request_name get_status = {0x30D0, "Get LCD Hide Status"};

report hide(const blade &at)
{
    call(hide_messages, at, ipmi_location_hide_lcd_messages);
    return tell({{"lcd_messages", "hidden"}});
}

report show(const blade &at)
{
    call(show_messages, at, ipmi_location_unhide_lcd_messages);
    return tell({{"lcd_messages", "shown"}});
}

report show_status(const blade &at)
{
    const byte_pair status =
        ask_pair(get_status, at, ipmi_location_get_lcd_hide_status, {0x01, 0x02, 5, 0, 0, 0});
    return tell({{"status_a", hex(status.a)}, {"status_b", hex(status.b)}});
}

} // namespace

void add_lcd(const noun &root)
{
    const noun lcd = root.noun_below("lcd", "The messages on the blade's LCD");
    lcd.verb("hide", "Hide the messages", hide);
    lcd.verb("show", "Show the messages on the LCD again", show);
    lcd.verb("status", "Show whether the messages are hidden, in two bytes", show_status);
}

} // namespace cli
