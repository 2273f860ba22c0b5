#include "daemon.h"

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace tests
{

namespace
{

int ending(pid_t pid)
{
    int status = 0;
    waitpid(pid, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

} // namespace

chassis_daemon::chassis_daemon(const std::string &configuration)
{
    char name[] = "/tmp/ruk-test-XXXXXX";
    if (!mkdtemp(name))
        throw std::runtime_error("no temporary directory");
    directory_ = name;
    write_file(configuration);
    setenv("RUK_RUNTIME_DIR", (directory_ + "/run").c_str(), 1);
    start();
}

chassis_daemon::~chassis_daemon()
{
    if (pid_ > 0)
        stop(SIGKILL);
    std::filesystem::remove_all(directory_);
}

void chassis_daemon::start()
{
    int ready[2];
    if (pipe(ready) != 0)
        throw std::runtime_error("no pipe");
    pid_ = fork();
    if (pid_ == 0) {
        close(ready[0]);
        execl(RUK_CHASSISD, RUK_CHASSISD, "--config", (directory_ + "/chassis.toml").c_str(),
              "--ready-fd", std::to_string(ready[1]).c_str(), nullptr);
        _exit(127);
    }
    close(ready[1]);
    char line[16];
    const ssize_t length = read(ready[0], line, sizeof line);
    close(ready[0]);
    if (length != 6)
        throw std::runtime_error("ruk-chassisd did not get ready");
}

int chassis_daemon::stop(int signal)
{
    const pid_t pid = pid_;
    pid_ = -1;
    kill(pid, signal);
    return ending(pid);
}

void chassis_daemon::reconfigure(const std::string &configuration)
{
    write_file(configuration);
    kill(pid_, SIGHUP);
}

// Whole or not at all: the daemon may still be at the last one.
void chassis_daemon::write_file(const std::string &configuration) const
{
    const std::string path = directory_ + "/chassis.toml";
    std::ofstream(path + ".new") << configuration;
    std::filesystem::rename(path + ".new", path);
}

unsigned chassis_daemon::descriptors() const
{
    const std::filesystem::directory_iterator open("/proc/" + std::to_string(pid_) + "/fd");
    return static_cast<unsigned>(std::distance(begin(open), end(open)));
}

ipmi_request sel_entry_request(uint8_t slot, uint16_t record_id, uint32_t mark)
{
    ipmi_request request{};
    request.location.slot_id = slot;
    request.reserved_0c = mark;
    request.netfn_cmd = 0x0A43;
    request.data_len = 6;
    request.data[2] = static_cast<uint8_t>(record_id);
    request.data[3] = static_cast<uint8_t>(record_id >> 8);
    request.data[5] = 0xFF;
    return request;
}

ipmi_response empty_response()
{
    ipmi_response response{};
    response.data_len = sizeof response;
    return response;
}

bool answers(const ipmi_response &response, const ipmi_request &request)
{
    return response.comp_code == 0 && response.data_len == 19 &&
           response.reserved_0c == request.reserved_0c && response.netfn_cmd == request.netfn_cmd &&
           memcmp(&response.location, &request.location, sizeof request.location) == 0 &&
           memcmp(response.data + 3, request.data + 2, 2) == 0;
}

int in_child(const std::function<int()> &function)
{
    fflush(nullptr);
    const pid_t pid = fork();
    if (pid == 0)
        _exit(function());
    return ending(pid);
}

bool eventually(const std::function<bool()> &so)
{
    for (int tries = 0; tries < 500; ++tries) {
        if (so())
            return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return so();
}

} // namespace tests
