#include "cli/stream.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <poll.h>
#include <unistd.h>

#include "cli/terminal.h"

namespace cli
{

namespace
{

void end_quietly(int)
{
    _exit(exit_fine);
}

// A blade's name is a number too, though it may have a dot.
std::string column_text(const std::string &key, const json &value)
{
    const bool named = value.is_number() || key == "blade";
    return (named ? label(key) + " " : "") + value_text(value);
}

std::string about(const std::string &blade)
{
    return blade.empty() ? "ruk-ipmi" : "blade " + blade;
}

json about_fields(const std::string &blade, const json &error)
{
    json fields = json::object();
    if (!blade.empty())
        fields["blade"] = blade;
    fields["error"] = error;
    return fields;
}

} // namespace

stream::stream(format chosen, bool verbose) : format_(chosen), verbose_(verbose)
{
    for (const int each : {SIGINT, SIGTERM, SIGPIPE})
        signal(each, end_quietly);
}

void stream::line(const json &fields)
{
    if (format_ == format::as_json) {
        write_line(json_line(fields));
        return;
    }
    widths_.resize(std::max(widths_.size(), fields.size()));
    std::string text;
    size_t column = 0;
    for (const auto &[key, value] : fields.items()) {
        const std::string cell = column_text(key, value);
        size_t &width = widths_[column++];
        width = std::max(width, cell.size());
        text += column == fields.size() ? cell : padded(cell, width + 2);
    }
    write_line(text);
}

void stream::picture(const std::vector<std::string> &lines, const json &fields)
{
    if (format_ == format::as_json) {
        write_line(json_line(fields));
        return;
    }
    static constexpr char home[] = "\033[H";
    static constexpr char erase_screen[] = "\033[2J";
    static constexpr char erase_line_end[] = "\033[K";
    static constexpr char erase_below[] = "\033[J";
    const bool in_place = is_terminal();
    // The cursor stands in the line below, so one line fewer fits.
    const size_t shown = in_place ? std::min(lines.size(), terminal_height() - 1) : lines.size();
    std::string text = in_place ? home : drawn_ ? "\n" : "";
    if (in_place && !drawn_)
        text = erase_screen + text;
    for (size_t at = 0; at < shown; ++at)
        text += lines[at] + (in_place ? erase_line_end : "") + "\n";
    write(text + (in_place ? erase_below : ""));
    drawn_ = true;
}

void stream::notice(const std::string &text, const json &fields)
{
    if (format_ == format::as_json)
        line(fields);
    fprintf(stderr, "%s\n", text.c_str());
}

void stream::failed(const std::string &blade, const failure &why)
{
    std::string &last = failures_[blade];
    if (last == why.what())
        return;
    last = why.what();
    notice(about(blade) + ": " + last, about_fields(blade, failure_fields(why)));
}

void stream::works(const std::string &blade)
{
    if (failures_.erase(blade) != 0)
        notice(about(blade) + ": works again", about_fields(blade, nullptr));
}

void stream::remark(const std::string &text) const
{
    if (verbose_)
        fprintf(stderr, "ruk-ipmi: %s\n", text.c_str());
}

void stream::wait(std::chrono::milliseconds limit, int fd) const
{
    pollfd watched[] = {{STDOUT_FILENO, 0, 0}, {fd, POLLIN, 0}};
    if (poll(watched, std::size(watched), static_cast<int>(limit.count())) > 0 &&
        (watched[0].revents & (POLLERR | POLLHUP)) != 0)
        end_quietly(0);
}

// A line goes out in one piece, before the next is looked for.
void stream::write_line(const std::string &text)
{
    write(text + "\n");
}

void stream::wait_until(std::chrono::steady_clock::time_point time) const
{
    using std::chrono::milliseconds;
    const auto left = time - std::chrono::steady_clock::now();
    wait(std::max(milliseconds(0), std::chrono::duration_cast<milliseconds>(left)));
}

void stream::write(const std::string &text)
{
    if (fputs(text.c_str(), stdout) < 0 || fflush(stdout) != 0)
        throw std::runtime_error("cannot write all of standard output");
}

} // namespace cli
