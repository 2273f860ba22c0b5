// What is typed behind the daemon's name.
#ifndef RUK_HOST_CHASSISD_OPTIONS_H
#define RUK_HOST_CHASSISD_OPTIONS_H

#include <CLI/CLI.hpp>
#include <string>

namespace chassisd
{

struct options {
    options();

    CLI::App app;
    std::string config_path; // empty: none
    unsigned simulated = 0;  // 0: the file says what the blades are
    int ready_fd = -1;       // negative: nobody waits
    bool check = false;
};

} // namespace chassisd

#endif
