#include "cli/exporter/metrics_text.h"

#include <charconv>

namespace cli
{

namespace
{

std::string quoted(const std::string &text)
{
    std::string escaped = "\"";
    for (const char each : text) {
        if (each == '"' || each == '\\')
            escaped += '\\';
        escaped += each == '\n' ? std::string("\\n") : std::string(1, each);
    }
    return escaped + "\"";
}

std::string labels_text(const labels &all)
{
    std::string text;
    for (const auto &[name, value] : all)
        text += (text.empty() ? "{" : ",") + name + "=" + quoted(value);
    return text.empty() ? text : text + "}";
}

} // namespace

std::string number_text(double value)
{
    char text[512]; // the largest number has 309 digits, the smallest not many more
    const auto end = std::to_chars(text, std::end(text), value, std::chars_format::fixed).ptr;
    return std::string(text, end);
}

std::string metrics_text(const std::vector<metric> &metrics)
{
    std::string text;
    for (const metric &each : metrics) {
        text += "# HELP " + each.name + " " + each.help + "\n";
        text += "# TYPE " + each.name + " " + each.type + "\n";
        for (const sample &one : each.samples)
            text += each.name + one.suffix + labels_text(one.labels) + " " +
                    number_text(one.value) + "\n";
    }
    return text;
}

} // namespace cli
