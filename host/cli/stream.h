// What a command tells that goes on until it is interrupted: line by line, each as it comes.
//
// SIGINT, SIGTERM, or a standard output that nobody reads any more end the whole tool at once, with
// exit code 0: that is how such a command is meant to end, and it has nothing to put away. So it
// ends too while it waits for a blade's answer.
#ifndef RUK_HOST_CLI_STREAM_H
#define RUK_HOST_CLI_STREAM_H

#include <chrono>
#include <map>
#include <vector>

#include "cli/output.h"

namespace cli
{

class stream
{
  public:
    // From now on the tool ends as said above. With `verbose`, remarks are shown.
    stream(format chosen, bool verbose);

    // A line: a JSON object, or its values side by side. A number stands behind its name.
    void line(const json &fields);

    // What is drawn anew each time: in place on a terminal. In JSON a line.
    void picture(const std::vector<std::string> &lines, const json &fields);

    // Something that concerns who reads the lines, on standard error; in JSON a line too.
    void notice(const std::string &text, const json &fields);

    // What went wrong with a blade, or with the ring where no blade is named: told once as long as
    // it stays so. When it works again, that is told too.
    void failed(const std::string &blade, const failure &why);
    void works(const std::string &blade);

    // For who wants to know what the command is doing.
    void remark(const std::string &text) const;

    // Waits until `fd` can be read (-1: there is none) or the time has passed.
    void wait(std::chrono::milliseconds limit, int fd = -1) const;

    // Waits until that time; one that has passed is no wait.
    void wait_until(std::chrono::steady_clock::time_point time) const;

  private:
    void write(const std::string &text);
    void write_line(const std::string &text);

    format format_;
    bool verbose_;
    std::vector<size_t> widths_; // of the columns so far
    bool drawn_ = false;
    std::map<std::string, std::string> failures_; // by blade, as long as they last
};

} // namespace cli

#endif
