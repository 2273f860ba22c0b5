#include "manual/texts.h"

namespace manual
{

namespace
{

const described_item runtime_directory = {
    "RUK_RUNTIME_DIR", "The runtime directory, which is one chassis. Otherwise it is /run/ruk for "
                       "root, and for others "
                       "$XDG_RUNTIME_DIR/ruk, or /tmp/ruk-UID where that is not set either."};

const described_item socket = {"/run/ruk/ipmi.sock",
                               "In the runtime directory: the socket of the message service."};

const described_item shared_memory = {
    "/run/ruk/ipmi.shm",
    "In the runtime directory: the ring of interrupts and the time-out counters, which outlive the "
    "daemon."};

} // namespace

program_texts texts_of_tool()
{
    return {
        {"Sends IPMI requests to the blades of a chassis, through the message service that "
         "ruk-chassisd(8) offers on ordinary Linux, and shows what they answer.",
         "A command is a noun and, for most, a verb, with its arguments and options behind them; "
         "the options of every command may stand anywhere. The blades that a command is for are "
         "named by slot, or by slot and sub-slot, in lists and ranges: -b 1-8,10,3.2. Numbers are "
         "decimal, or hexadecimal with 0x before them; bytes are pairs of hexadecimal digits.",
         "With -o json there is one array, with an object for each blade, also where one fails; a "
         "command that goes on until it is interrupted writes an object a line. With -o binary "
         "there are the bytes themselves, where a command has them."},
        {runtime_directory,
         {"RUK_LOG",
          "How much the library logs, whatever -v says: none, error, notice, debug or verbose; "
          "with syslog: before it, to the system's log instead of standard error."},
         {"TZ", "The time zone of times, which --utc overrides."},
         {"NO_COLOR", "Set to anything, pictures on a terminal have no colours."},
         {"LC_ALL, LC_CTYPE, LANG",
          "Pictures are drawn with lines and blocks where the character set is UTF-8, else with "
          "ASCII."}},
        {socket, shared_memory},
        {{"The chassis at a glance:", "ruk-ipmi chassis show"},
         {"The logs of eight blades, and those of one as JSON:",
          "ruk-ipmi -b 1-8 sel list\nruk-ipmi -b 3 -o json sel list"},
         {"The first sensor record of three blades, their sensors' scales and thresholds with it:",
          "ruk-ipmi -b 1-3 sdr get 0x0000"},
         {"Any request, here Get Device ID:", "ruk-ipmi -b 2 raw 0x06 0x01"}}};
}

std::map<std::string, examples> examples_of_nouns()
{
    return {
        {"blade",
         {{"The states of all blades, in their own bytes:", "ruk-ipmi -b 1-4 blade status"}}},
        {"chassis",
         {{"Turn a blade on, and see it:",
           "ruk-ipmi -b 3 chassis power on\nruk-ipmi -b 3 chassis status"},
          {"Boot from the network once:", "ruk-ipmi -b 3 chassis boot-device set pxe --efi"},
          {"Find a blade in its rack:", "ruk-ipmi -b 3 chassis identify 60"}}},
        {"controller", {{"Versions of all controllers:", "ruk-ipmi -b 1-4 controller info"}}},
        {"events",
         {{"Let a blade seem to raise two events, and look at the ring:",
           "ruk-ipmi -b 3 events post --events 3,40\nruk-ipmi events ring"}}},
        {"ext",
         {{"Keep a value and read it back:",
           "ruk-ipmi -b 1 ext set 7 --hex 01ff\nruk-ipmi -b 1 ext get 7"}}},
        {"fru",
         {{"What the blades are:", "ruk-ipmi -b 1-4 fru print"},
          {"Save a FRU device and write it back:",
           "ruk-ipmi -b 2 fru read fru.bin\nruk-ipmi -b 2 fru write fru.bin"}}},
        {"lan",
         {{"An address of its own:",
           "ruk-ipmi -b 4 lan set ipaddr 192.0.2.44\nruk-ipmi -b 4 lan print"}}},
        {"led",
         {{"Let a LED blink, and stop it:",
           "ruk-ipmi -b 1 led blink drive\nruk-ipmi -b 1 led off drive"}}},
        {"power", {{"What the blades draw:", "ruk-ipmi -b 1-4 power draw"}}},
        {"raw",
         {{"Get SEL Info, and only its bytes:",
           "ruk-ipmi -b 2 -o binary raw 0x0A 0x40 | od -t x1"}}},
        {"sdr",
         {{"All sensors of a blade, and one record with all it holds:",
           "ruk-ipmi -b 1 sdr list\nruk-ipmi -b 1 sdr get 0x0000"}}},
        {"sel",
         {{"All entries of all blades, in UTC:", "ruk-ipmi -b 1-4 --utc sel list"},
          {"Set a blade's clock by this machine's, and empty its log:",
           "ruk-ipmi -b 3 sel time set now\nruk-ipmi -b 3 sel clear"}}},
        {"sysinfo",
         {{"Name a system:",
           "ruk-ipmi -b 1 sysinfo set system-name --text web-1\nruk-ipmi -b 1 sysinfo list"}}},
        {"timeouts", {{"Which blades were slow:", "ruk-ipmi -b 1-4 timeouts show"}}},
        {"user",
         {{"A user that may look but not touch:",
           "ruk-ipmi -b 1 user set-name 3 watcher\n"
           "ruk-ipmi -b 1 user set-password 3 --password-file watcher.password\n"
           "ruk-ipmi -b 1 user set-access 3 --privilege user\n"
           "ruk-ipmi -b 1 user enable 3"}}},
    };
}

program_texts texts_of_daemon()
{
    return {
        {"Takes the requests of all IPMI clients of this machine, ruk-ipmi(1) among them, to the "
         "blades of one chassis, and their answers back. A blade is simulated, with a log, "
         "sensors, users and all else in memory; or it is a real controller, to which the daemon "
         "keeps one RMCP+ session. A blade that is slow, or gone, keeps no other waiting.",
         "It stays in the foreground. A service manager is told when it is ready, when it reads "
         "its file again and when it stops."},
        {runtime_directory,
         {"RUK_LOG",
          "How much is logged to standard error: none, error, notice (also when not set), debug or "
          "verbose; with syslog: before it, to the system's log instead."}},
        {{"/etc/ruk/chassis.toml", "The chassis that the service ruk-chassisd serves."},
         socket,
         shared_memory},
        {{"Four blades to try things on:", "ruk-chassisd --simulate 4"},
         {"Look for mistakes in a file, then serve what it says:",
          "ruk-chassisd --config chassis.toml --check\nruk-chassisd --config chassis.toml"}}};
}

daemon_details details_of_daemon()
{
    return {
        {{"SIGHUP",
          "Read the file again: blades come, go and change as it says now, the others go on "
          "undisturbed. A file with mistakes changes nothing."},
         {"SIGTERM, SIGINT", "Stop."}},
        {{"0", "It was stopped, or the file has no mistakes."},
         {"1", "It could not serve."},
         {"2", "The command line or the file is wrong."}},
        "A TOML file. The table [chassis], which may be missing, is about the chassis, and each "
        "[[blade]] about one blade: at least one, each in a place of its own. A number or text "
        "that "
        "is not given is the one in parentheses.",
        {{"[chassis] name", "A text of up to 64 bytes (chassis)."},
         {"[chassis] slots", "How many slots there are, 1 to 255 (16)."},
         {"[chassis] platform_type", "What clients are told that the platform is, a number (1)."},
         {"[chassis] physical_location", "What they are told of its location, a number (0)."},
         {"[[blade]] slot", "1 to as many slots as there are; must be given."},
         {"[[blade]] sub_slot", "0 to 255 (0)."},
         {"[[blade]] kind", "\"simulated\" or \"bridge\" (simulated)."},
         {"[[blade]] name", "Simulated: the product's name, up to 32 bytes."},
         {"[[blade]] sel_entries", "Simulated: entries in its log at the start, 0 to 512 (12)."},
         {"[[blade]] older_controller",
          "Simulated: true for one that cannot tell all of its sled switch configuration (false)."},
         {"[[blade]] host", "Bridge: name or address of the controller; must be given."},
         {"[[blade]] port", "Bridge: its UDP port, 1 to 65535 (623)."},
         {"[[blade]] username", "Bridge: up to 16 bytes (none)."},
         {"[[blade]] password_file",
          "Bridge: a file whose first line is the password, up to 20 bytes (none). Its name is "
          "taken from where the chassis' file is, and nobody but its owner may read it."},
         {"[[blade]] password_env", "Bridge: the variable that holds the password, instead."},
         {"[[blade]] privilege", "Bridge: \"user\", \"operator\" or \"admin\" (admin)."},
         {"[[blade]] cipher_suite", "Bridge: 0 to 17 (3)."},
         {"[[blade]] workarounds", "Bridge: a list of FreeIPMI's names for them (none)."},
         {"[[blade]] timeout_ms", "Bridge: longest wait for the controller, 100 to 60000 (3000)."},
         {"[[blade]] retransmit_ms",
          "Bridge: when a packet is sent again, 50 to 60000 and not beyond timeout_ms (500)."},
         {"[[blade]] keepalive_s",
          "Bridge: how often an idle session is kept alive, 0 to 3600; 0 closes it (20)."},
         {"[[blade]] faults",
          "A table of what the blade does wrong on purpose, none of it when not given:"},
         {"faults.delay_ms", "Answers come that much later, 0 to 3600000."},
         {"faults.drop_every", "Every Nth request has no answer, 0 to 1000000; 0: all have."},
         {"faults.completion_code", "Every request is refused with it, 1 to 255."},
         {"faults.truncate_to", "Answers are cut to that many bytes, 0 to 1000."},
         {"faults.oversize_to", "Answers are filled to that many bytes, 0 to 1000."}},
        R"([chassis]
name = "lab"
slots = 8

[[blade]]
slot = 1
sel_entries = 100

[[blade]]
slot = 1
sub_slot = 1
faults = { delay_ms = 50, drop_every = 10 }

[[blade]]
slot = 2
kind = "bridge"
host = "192.0.2.17"
username = "admin"
password_file = "blade2.password"
)"};
}

} // namespace manual
