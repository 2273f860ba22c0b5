#include "cli/output.h"

#include <algorithm>
#include <cstdio>
#include <unistd.h>

#include "cli/terminal.h"
#include "help/wrapped.h"

namespace cli
{

namespace
{

constexpr size_t line_width = 80;

void put(const std::string &text)
{
    fwrite(text.data(), 1, text.size(), stdout);
}

std::string trimmed(std::string text)
{
    text.resize(text.find_last_not_of(' ') + 1);
    return text;
}

std::string upper(std::string text)
{
    for (char &each : text)
        each = static_cast<char>(toupper(static_cast<unsigned char>(each)));
    return text;
}

bool is_table(const json &value)
{
    return value.is_array() && !value.empty() && value.front().is_object();
}

// Rows under the names of their fields. Where a row is too long for the terminal, its last column
// stands below its second.
void put_table(const json &rows)
{
    std::vector<std::vector<std::string>> lines(1);
    for (const auto &[key, value] : rows.front().items())
        lines[0].push_back(upper(label(key)));
    for (const json &row : rows) {
        lines.emplace_back();
        for (const json &value : row)
            lines.back().push_back(value_text(value));
    }
    std::vector<size_t> widths(lines[0].size());
    for (const auto &line : lines)
        for (size_t at = 0; at < line.size(); ++at)
            widths[at] = std::max(widths[at], line[at].size());
    const size_t width = terminal_width();
    const size_t indent = widths[0] + 2;
    for (const auto &line : lines) {
        std::string row;
        for (size_t at = 0; at + 1 < line.size(); ++at)
            row += padded(line[at], widths[at] + 2);
        const bool fits = width == no_width || row.size() + line.back().size() <= width;
        put(fits ? row + line.back()
                 : trimmed(row) + "\n" + std::string(indent, ' ') +
                       help::wrapped(line.back(), width - std::min(indent, width / 2), indent));
        put("\n");
    }
}

// Values first come, first shown, their names in one column; objects and tables stand apart.
void put_fields(const json &fields, size_t indent)
{
    size_t width = 0;
    for (const auto &[key, value] : fields.items())
        if (!value.is_object() && !is_table(value))
            width = std::max(width, key.size() + 2);
    for (const auto &[key, value] : fields.items()) {
        if (value.is_object()) {
            put(std::string(indent, ' ') + label(key) + "\n");
            put_fields(value, indent + 2);
        } else if (is_table(value)) {
            put_table(value);
        } else {
            const size_t column = indent + width;
            put(std::string(indent, ' ') + padded(label(key) + ":", width) +
                help::wrapped(value_text(value), line_width - column, column) + "\n");
        }
    }
}

} // namespace

void output::blade(const std::string &name, const report &told)
{
    if (format_ == format::as_json) {
        json element = {{"blade", name}};
        element.update(told.fields);
        if (told.ended)
            element["error"] = failure_fields(*told.ended);
        all_.push_back(std::move(element));
    } else if (format_ == format::as_bytes || told.only_binary) {
        put(std::string(told.binary.begin(), told.binary.end()));
    } else if (!told.fields.empty()) {
        if (headed_)
            put((anything_ ? "\nblade " : "blade ") + name + "\n");
        put_fields(told.fields, 0);
        anything_ = true;
    }
    if (told.ended) {
        fflush(stdout); // so that the line stands behind what it is about
        complain("blade " + name, *told.ended);
    }
}

void output::local(const report &told)
{
    if (format_ == format::as_json)
        all_ = told.fields;
    else if (!told.text.empty())
        put(told.text);
    else
        put_fields(told.fields, 0);
    if (!told.ended)
        return;
    if (format_ == format::as_json)
        all_["error"] = failure_fields(*told.ended);
    fflush(stdout);
    complain("ruk-ipmi", *told.ended);
}

void output::finish()
{
    if (format_ == format::as_json)
        write_json(all_);
    if (fflush(stdout) != 0 || ferror(stdout))
        throw failure(exit_refused, "cannot write all of standard output");
}

json failure_fields(const failure &why)
{
    json fields = {{"kind", kind_name(why.kind)}, {"code", nullptr}};
    if (why.code > 0xFF)
        fields["code"] = hex(static_cast<uint16_t>(why.code));
    else if (why.code != 0)
        fields["code"] = hex(static_cast<uint8_t>(why.code));
    fields["message"] = why.what();
    return fields;
}

void write_json(const json &value)
{
    put(value.dump(2, ' ', true, json::error_handler_t::replace) + "\n");
}

std::string json_line(const json &value)
{
    return value.dump(-1, ' ', true, json::error_handler_t::replace);
}

void complain(const std::string &about, const failure &why)
{
    fprintf(stderr, "%s: %s\n", about.c_str(), why.what());
}

std::string padded(std::string text, size_t width)
{
    text.resize(std::max(width, text.size()), ' ');
    return text;
}

// A field's name as people read it.
std::string label(std::string key)
{
    std::replace(key.begin(), key.end(), '_', ' ');
    return key;
}

std::string value_text(const json &value)
{
    if (value.is_null())
        return "-";
    if (value.is_boolean())
        return value.get<bool>() ? "yes" : "no";
    if (value.is_string())
        return value.get_ref<const std::string &>().empty() ? "-" : value.get<std::string>();
    if (!value.is_array())
        return value.dump();
    std::string joined;
    for (const json &each : value)
        joined += (joined.empty() ? "" : ", ") + value_text(each);
    return joined.empty() ? "none" : joined;
}

std::string printable(const std::string &text)
{
    std::string clean = text;
    for (char &each : clean)
        if (each < ' ' || each > '~')
            each = '?';
    return trimmed(clean);
}

progress::progress(const std::string &what, size_t total)
    : what_(what),
      total_(isatty(STDERR_FILENO) ? total : 0)
{
}

progress::~progress()
{
    if (shown_ != 0)
        fprintf(stderr, "\r\033[K");
}

void progress::reached(size_t done)
{
    if (total_ == 0)
        return;
    fprintf(stderr, "\r%s: %zu of %zu", what_.c_str(), done, total_);
    fflush(stderr);
    shown_ = done;
}

} // namespace cli
