#include "manual/roff.h"

#include <cctype>
#include <sstream>

#include "help/wrapped.h"
#include "ruk_ipmi/version.h"

namespace manual
{

namespace
{

// A character that would mean something to roff, or be set as another one, written so that it is
// itself.
std::string escaped(char each)
{
    switch (each) {
    case '\\':
        return "\\e";
    case '-':
        return "\\-";
    case '\'':
        return "\\(aq";
    case '"':
        return "\\(dq";
    case '`':
        return "\\(ga";
    case '^':
        return "\\(ha";
    case '~':
        return "\\(ti";
    default:
        return {each};
    }
}

std::string escaped(const std::string &text)
{
    std::string result;
    for (const char each : text)
        result += escaped(each);
    return result;
}

// No line of a text may look like a macro.
std::string shielded(const std::string &line)
{
    return line.empty() || line[0] != '.' ? line : "\\&" + line;
}

std::string filled(const std::string &text)
{
    std::istringstream lines(help::wrapped(text, 78, 0));
    std::string result;
    for (std::string line; std::getline(lines, line);)
        result += shielded(line) + "\n";
    return result;
}

// What is typed is bold, what something else stands for is slanted; a path is one or the other.
std::string styled(const std::string &shown)
{
    std::string result;
    char font = 'R';
    for (const char each : shown) {
        const auto letter = static_cast<unsigned char>(each);
        char wanted = 'R';
        if (std::isupper(letter))
            wanted = 'I';
        else if (std::islower(letter) || each == '-')
            wanted = 'B';
        else if (std::isdigit(letter) || each == '_' || each == '/')
            wanted = font;
        if (wanted != font)
            result += std::string("\\f") + wanted;
        font = wanted;
        result += escaped(each);
    }
    return font == 'R' ? result : result + "\\fR";
}

std::string upper(std::string text)
{
    for (char &each : text)
        each = static_cast<char>(std::toupper(static_cast<unsigned char>(each)));
    return text;
}

} // namespace

// No date: the same sources make the same page on any day.
page::page(const std::string &name, int in_section, const std::string &about)
    : text_(".TH " + escaped(upper(name)) + " " + std::to_string(in_section) +
            " \"\" \"ruk_ipmi " RUK_IPMI_VERSION "\" \"ruk_ipmi manual\"\n.nh\n.ad l\n")
{
    section("NAME");
    text_ += filled(escaped(name) + " \\- " + escaped(about));
}

void page::section(const std::string &title)
{
    text_ += ".SH " + escaped(title) + "\n";
    at_start_ = true;
}

void page::subsection(const std::string &title)
{
    text_ += ".SS " + escaped(title) + "\n";
    at_start_ = true;
}

void page::begin_paragraph()
{
    if (!at_start_)
        text_ += ".PP\n";
    at_start_ = false;
}

void page::paragraph(const std::string &text)
{
    begin_paragraph();
    text_ += filled(escaped(text));
}

void page::synopsis(const std::string &shown)
{
    begin_paragraph();
    text_ += filled(styled(shown));
}

void page::item(const std::string &term, const std::string &text)
{
    text_ += ".TP\n" + shielded(styled(term)) + "\n" + filled(escaped(text));
    at_start_ = false;
}

void page::verbatim(const std::string &lines)
{
    begin_paragraph();
    text_ += ".EX\n";
    std::istringstream each(lines);
    for (std::string line; std::getline(each, line);)
        text_ += shielded(escaped(line)) + "\n";
    text_ += ".EE\n";
}

void page::see_also(const std::vector<std::string> &pages)
{
    section("SEE ALSO");
    for (const std::string &each : pages) {
        const size_t bracket = each.find('(');
        text_ += ".BR " + escaped(each.substr(0, bracket)) + " " + each.substr(bracket) +
                 (&each == &pages.back() ? "\n" : ",\n");
    }
}

} // namespace manual
