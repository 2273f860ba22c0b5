// ruk-chassisd: component 4 of the message service on ordinary Linux.

#include <csignal>
#include <cstdio>
#include <sys/resource.h>
#include <sys/signalfd.h>
#include <systemd/sd-daemon.h>
#include <unistd.h>

#include "chassisd/broker.h"
#include "chassisd/chassis.h"
#include "chassisd/config.h"
#include "chassisd/interrupts.h"
#include "chassisd/options.h"
#include "platform/directory.h"
#include "platform/log.h"
#include "platform/platform_info.h"
#include "platform/region.h"

namespace
{

using namespace chassisd;

constexpr int exit_usage = 2;
constexpr int exit_failed = 1;

// Every outstanding message of every client is a descriptor.
void raise_descriptor_limit()
{
    rlimit limit;
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0)
        return;
    limit.rlim_cur = limit.rlim_max;
    setrlimit(RLIMIT_NOFILE, &limit);
}

// A descriptor from which the daemon reads what it is to do: stop, or read its file again. Made
// before any thread, so that every thread leaves the signals to it.
int control_signals()
{
    sigset_t signals;
    sigemptyset(&signals);
    for (const int each : {SIGTERM, SIGINT, SIGHUP})
        sigaddset(&signals, each);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    return signalfd(-1, &signals, SFD_CLOEXEC);
}

// What it held, interrupts among it, stays.
ruk::host::shared_region &make_region(const std::string &directory)
{
    if (!ruk::host::make_runtime_directory(directory))
        throw std::system_error(errno, std::generic_category(),
                                "cannot use the runtime directory " + directory);
    ruk::host::shared_region *region = ruk::host::map_region(directory, true);
    if (!region)
        throw std::system_error(errno, std::generic_category(), "cannot make the shared region");
    return *region;
}

void publish_platform_info(ruk::host::shared_region &region, const chassis_config &config)
{
    region.platform_info[PLAT_INFO_TYPE] = config.platform_type;
    region.platform_info[PLAT_INFO_LOCATION] = config.physical_location;
    region.platform_info[PLAT_INFO_SLOTS] = config.slots;
}

void say_ready(int ready_fd)
{
    sd_notify(0, "READY=1");
    if (ready_fd < 0)
        return;
    if (write(ready_fd, "ready\n", 6) != 6)
        slog_elog("nobody reads the ready descriptor\n");
    close(ready_fd);
}

// Makes the chassis what its file says now. A file with mistakes changes nothing.
void read_again(const std::string &path, chassis &served, ruk::host::shared_region &region)
{
    if (path.empty()) {
        slog_nlog("there is no file to read again: --simulate says what the blades are\n");
        return;
    }
    sd_notify(0, "RELOADING=1");
    try {
        const chassis_config config = load_config(path);
        served.apply(config);
        publish_platform_info(region, config);
        slog_nlog("read %s again: serving %zu blades\n", path.c_str(), config.blades.size());
    } catch (const std::exception &error) {
        slog_elog("%s; the chassis stays as it is\n", error.what());
    }
    sd_notify(0, "READY=1");
}

void serve(const chassis_config &config, const std::string &path, int ready_fd)
{
    raise_descriptor_limit();
    signal(SIGPIPE, SIG_IGN); // who waits for readiness may be gone by then
    const int control = control_signals();
    const std::string directory = ruk::host::runtime_directory();
    ruk::host::shared_region &region = make_region(directory);
    interrupts posted(region.ipmi);
    chassis served(config, [&posted](const blade_location &from, ruk::host::blade_event event,
                                     const bytes &data) { posted.post(from, event, data); });
    broker component(directory, served);
    publish_platform_info(region, config);
    say_ready(ready_fd);
    slog_nlog("serving %zu blades in %s\n", config.blades.size(), directory.c_str());
    component.run(control, [&] {
        signalfd_siginfo got{};
        if (read(control, &got, sizeof got) != sizeof got)
            return true;
        if (got.ssi_signo == SIGHUP)
            read_again(path, served, region);
        return got.ssi_signo == SIGHUP;
    });
    sd_notify(0, "STOPPING=1");
    slog_nlog("stopping\n");
}

} // namespace

int main(int argc, char **argv)
{
    options typed;
    try {
        typed.app.parse(argc, argv);
        if (typed.config_path.empty() && typed.simulated == 0)
            throw CLI::RequiredError("--config FILE or --simulate N");
    } catch (const CLI::ParseError &error) {
        return typed.app.exit(error) == 0 ? 0 : exit_usage;
    }

    setenv("RUK_LOG", "notice", false);
    try {
        const chassis_config config = typed.simulated != 0 ? simulated_chassis(typed.simulated)
                                                           : load_config(typed.config_path);
        if (typed.check) {
            const size_t blades = config.blades.size();
            printf("%s: %zu %s, no mistakes found\n", typed.config_path.c_str(), blades,
                   blades == 1 ? "blade" : "blades");
            return 0;
        }
        serve(config, typed.config_path, typed.ready_fd);
        return 0;
    } catch (const config_error &error) {
        fprintf(stderr, "%s\n", error.what());
        return exit_usage;
    } catch (const std::exception &error) {
        fprintf(stderr, "ruk-chassisd: %s\n", error.what());
        return exit_failed;
    }
}
