// How a blade is: its states, in bytes that only it can explain, and small actions on it.

#include <cstring>

#include "cli/content.h"
#include "cli/secret.h"

namespace cli
{

namespace
{

const request_name host_events = {0x3051, "Host Event Status"};
const request_name controller_status = {0x3090, "Get Controller Status"};
const request_name kvm_status = {0x308D, "Get Virtual KVM Status"};
const request_name media_status = {0x308E, "Get Virtual Media Status"};
const request_name identify_led_status = {0x3032, "Identify LED Status"};
const request_name last_post_codes = {0x3099, "Get Last POST Codes"};
const request_name read_staging = {0x3093, "Read Staging"};
const request_name read_queue = {0x3094, "Read Queue"};
const request_name login_access = {0x3096, "Login Access"};
const request_name test_alert = {0x3097, "Test Alert"};
const request_name edid_information = {0x3092, "EDID Information"};
const request_name enter_update = {0xB818, "Enter Firmware Update"};

report status(const blade &at)
{
    bytes events = ask_bytes<6>(host_events, at, {}, ipmi_location_host_event_status);
    if (events.size() >= 2) { // the library turns the two; they are shown as they travel
        uint16_t first = 0;
        memcpy(&first, events.data(), sizeof first);
        events[0] = static_cast<uint8_t>(first);
        events[1] = static_cast<uint8_t>(first >> 8);
    }
    return tell({{"host_events", hex(events)},
                 {"controller",
                  hex(ask_bytes<7>(controller_status, at, {}, ipmi_location_get_imc_status))}});
}

report kvm(const blade &at)
{
    return tell({{"kvm", hex(ask_bytes<7>(kvm_status, at, {}, ipmi_location_get_vkvm_status))}});
}

report media(const blade &at)
{
    return tell(
        {{"media", hex(ask_bytes<5>(media_status, at, {}, ipmi_location_get_vmedia_status))}});
}

report identify_led(const blade &at)
{
    return tell({{"identify_led", hex(ask_bytes<2>(identify_led_status, at, {},
                                                   ipmi_location_identify_led_status))}});
}

report block(const bytes &data)
{
    return tell({{"data", hex(data)}}, data);
}

report post_codes(const blade &at)
{
    return block(ask_bytes<131>(last_post_codes, at, {}, ipmi_location_get_last_post_code));
}

struct staging_choice {
    uint8_t which = 0;
};

report staging(const blade &at, const staging_choice &chosen)
{
    return block(
        ask_bytes<257>(read_staging, at, {chosen.which}, ipmi_location_read_staging, chosen.which));
}

struct queue_choice {
    uint8_t first = 0;
    uint8_t second = 0;
};

report queue(const blade &at, const queue_choice &chosen)
{
    return block(ask_bytes<257>(read_queue, at, {chosen.first, chosen.second},
                                ipmi_location_read_queue, chosen.first, chosen.second));
}

// Not asked a second time where the answer ends in a zero: it may be a login that counts.
report login_test(const blade &at, const secret_choice &chosen)
{
    uint8_t answer[6] = {}; // completion code, a number, a byte
    call(login_access, at, ipmi_location_login_access, "", chosen.secret("text", false).c_str(),
         answer);
    uint32_t number = 0;
    memcpy(&number, answer + 1, sizeof number);
    return tell({{"access", hex(number)}, {"further_byte", hex(answer[5])}});
}

struct alert_choice {
    uint8_t which = 0;
    bytes data = bytes(4);
};

report alert_test(const blade &at, const alert_choice &chosen)
{
    ask<uint8_t>(test_alert, at, ipmi_location_test_alert, chosen.which, chosen.data.data());
    return tell({{"alert", chosen.which}});
}

struct edid_choice : content_choice {
    uint8_t which = 0;
};

report edid(const blade &at, const edid_choice &chosen)
{
    const bytes data = chosen.content("EDID");
    ask<uint8_t>(edid_information, at, location_edid_information, chosen.which, data.data(),
                 static_cast<uint32_t>(data.size()));
    return tell({{"which", chosen.which}, {"bytes", data.size()}});
}

struct consent {
    bool given = false;
};

report firmware_update(const blade &at, const consent &)
{
    ask<uint8_t>(enter_update, at, ipmi_location_enter_firmware_update);
    return tell({{"firmware_update", "entered"}});
}

void add_states(const noun &blade)
{
    blade.verb("status", "Show the state of host events and of the controller", status);
    blade.verb("kvm", "Show the state of the virtual KVM", kvm);
    blade.verb("media", "Show the state of the virtual media", media);
    blade.verb("identify-led", "Show the state of the identify LED", identify_led);
    blade.verb("post-code", "Show the last POST codes, 130 bytes", post_codes).binary();
    blade.verb("staging", "Show a staging block, 256 bytes", staging)
        .argument("N", &staging_choice::which, number<uint8_t>, "Which block, 0 to 255")
        .binary();
    blade.verb("queue", "Show a queue block, 256 bytes", queue)
        .argument("A", &queue_choice::first, number<uint8_t>, "Which, 0 to 255")
        .argument("B", &queue_choice::second, number<uint8_t>, "And which of it, 0 to 255")
        .binary();
}

void add_actions(const noun &blade)
{
    blade.verb("login-test", "Ask whether a login works", login_test)
        .optional_argument("FILE", &secret_choice::from_file, secret_in_file,
                           "Its first line is the login's text, up to 20 characters; - is standard "
                           "input; asked for without echo when not given");
    blade.verb("alert-test", "Let the blade send a test alert", alert_test)
        .argument("N", &alert_choice::which, number<uint8_t>, "Which alert, 0 to 255")
        .option("--data", "HEX", &alert_choice::data, hex_of<4>,
                "4 bytes sent along; zeros when not given");
    with_content<128>(blade.verb("edid", "Give the blade a monitor's EDID", edid),
                      "The EDID, up to 128 bytes; - is standard input")
        .option("--which", "N", &edid_choice::which, number<uint8_t>,
                "Which monitor, 0 when not given");
    blade.verb("firmware-update", "Let the controller enter its firmware update", firmware_update)
        .flag("--yes", &consent::given, "It is meant")
        .required();
}

} // namespace

void add_blade(const noun &root)
{
    const noun blade = root.noun_below("blade", "How the blade is, and small actions on it");
    add_states(blade);
    add_actions(blade);
    add_pass_through(blade);
}

} // namespace cli
