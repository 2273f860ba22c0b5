#include "chassisd/options.h"

#include "help/formatter.h"
#include "ruk_ipmi/version.h"

namespace chassisd
{

namespace
{

constexpr const char *footer =
    R"(The runtime directory is $RUK_RUNTIME_DIR, else /run/ruk for root, else
$XDG_RUNTIME_DIR/ruk, else /tmp/ruk-UID. SIGHUP makes it read its file again:
blades come, go and change as the file says now; the others go on. SIGTERM and
SIGINT stop it. The log goes to standard error as $RUK_LOG says: none, error,
notice (the default), debug or verbose, with "syslog:" before it for the
system's log.)";

} // namespace

options::options()
    : app("Serves the blades of a chassis to the IPMI clients of this machine.", "ruk-chassisd")
{
    app.formatter(std::make_shared<help::formatter>());
    app.footer(footer);
    app.set_help_flag("-h,--help", "Show this help");
    app.set_version_flag("--version", "ruk-chassisd " RUK_IPMI_VERSION, "Show the version");
    auto *config_option =
        app.add_option("--config", config_path, "Chassis description, TOML")->option_text("FILE");
    app.add_option("--simulate", simulated, "Serve N simulated blades in slots 1 to N")
        ->option_text("N")
        ->check(CLI::Range(1, 255))
        ->excludes(config_option);
    app.add_flag("--check", check, "Only check the file, then exit")->needs(config_option);
    app.add_option("--ready-fd", ready_fd, "Write \"ready\" to this descriptor once serving")
        ->option_text("FD")
        ->check(CLI::NonNegativeNumber);
}

} // namespace chassisd
