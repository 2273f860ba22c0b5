#include "manual/man_pages.h"

#include <cctype>
#include <stdexcept>

#include "cli/vocabulary.h"
#include "manual/roff.h"
#include "manual/texts.h"

namespace manual
{

namespace
{

constexpr int for_users = 1;
constexpr int for_administrators = 8;

std::string page_name(const command &at)
{
    return joined(at.path, "-");
}

std::string sentence(const std::string &text)
{
    return text.back() == '.' ? text : text + ".";
}

std::string capitalised(std::string text)
{
    text[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(text[0])));
    return text;
}

// The line by which a page is found begins with a small letter, unless that word never does, and
// has no full stop.
std::string about(const command &at)
{
    std::string text = at.help;
    if (text.back() == '.')
        text.pop_back();
    if (text.size() > 1 && std::isupper(static_cast<unsigned char>(text[1])) == 0)
        text[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(text[0])));
    return text;
}

// "-b, --blade SLOT[.SUB]", or "FILE".
std::string term(const parameter &each)
{
    if (each.names.empty())
        return each.value;
    return joined(each.names, ", ") + (each.value.empty() ? "" : " " + each.value);
}

// "[--id N]", as it stands in a command.
std::string usage(const parameter &each)
{
    std::string text = each.names.empty() ? "" : each.names.back();
    if (!each.value.empty())
        text += (text.empty() ? "" : " ") + each.value;
    if (each.repeats && each.names.empty())
        text += "...";
    return each.required ? text : "[" + text + "]";
}

std::string usage(const command &at)
{
    std::string text = at.path.front();
    if (at.for_blades)
        text += " -b SLOT[.SUB]";
    for (size_t word = 1; word < at.path.size(); ++word)
        text += " " + at.path[word];
    for (const parameter &each : at.options)
        if (each.is_common() && !each.is_help())
            text += " " + usage(each);
    for (const parameter &each : at.arguments)
        text += " " + usage(each);
    return text;
}

void put_parameters(page &out, const std::vector<parameter> &parameters)
{
    for (const parameter &each : parameters)
        out.item(term(each), sentence(each.help));
}

void put_items(page &out, const std::string &title, const described_items &items)
{
    out.section(title);
    for (const described_item &each : items)
        out.item(each.term, each.text);
}

void put_examples(page &out, const examples &some)
{
    if (some.empty())
        return;
    out.section("EXAMPLES");
    for (const example &each : some) {
        out.paragraph(each.what);
        out.verbatim(each.lines);
    }
}

// What a command does, its arguments and its own options.
void put_command(page &out, const command &at)
{
    std::string does = sentence(at.help);
    if (at.for_one_blade)
        does += " It is for one blade at a time.";
    if (at.has_binary)
        does += " With -o binary it writes the bytes.";
    out.paragraph(does);
    put_parameters(out, at.arguments);
    put_parameters(out, at.options);
}

void put_commands_below(page &out, const command &at, const std::string &prefix)
{
    for (const command &below : at.commands) {
        const std::string name = prefix + below.path.back();
        out.subsection(name);
        if (below.commands.empty())
            out.synopsis(usage(below));
        put_command(out, below);
        put_commands_below(out, below, name + " ");
    }
}

// Two commands never share a name, or one would hide the other's page.
void add(std::map<std::string, std::string> &some, const command &at, const std::string &what)
{
    if (!some.emplace(page_name(at) + ".1", what).second)
        throw std::logic_error("two commands are called " + page_name(at));
}

void add_links(pages &all, const command &at, const std::string &target)
{
    for (const command &below : at.commands) {
        add(all.links, below, target);
        add_links(all, below, target);
    }
}

std::string noun_page(const command &noun, const examples &some)
{
    page out(page_name(noun), for_users, about(noun));
    out.section("SYNOPSIS");
    if (noun.commands.empty()) {
        out.synopsis(usage(noun));
        out.section("DESCRIPTION");
        put_command(out, noun);
    } else {
        out.synopsis(noun.path[0] + " [OPTIONS] " + noun.path[1] + " COMMAND");
        out.section("COMMANDS");
        put_commands_below(out, noun, "");
    }
    out.section("OPTIONS");
    out.paragraph("Those of every command, and the exit status, are in ruk-ipmi(1).");
    put_examples(out, some);
    out.see_also({"ruk-ipmi(1)", "ruk-chassisd(8)"});
    return out.text();
}

std::string tool_page(const command &tool)
{
    const program_texts texts = texts_of_tool();
    page out(page_name(tool), for_users, about(tool));
    out.section("SYNOPSIS");
    out.synopsis(tool.path[0] + " [OPTIONS] COMMAND");
    out.section("DESCRIPTION");
    for (const std::string &each : texts.description)
        out.paragraph(each);
    out.section("OPTIONS");
    put_parameters(out, tool.options);
    out.section("COMMANDS");
    for (const command &noun : tool.commands)
        out.item(noun.path.back(), sentence(noun.help) + " See " + page_name(noun) + "(1).");
    out.section("EXIT STATUS");
    out.paragraph(
        "Every blade is tried, and the worst failure counts. From the worst on, they are 4, "
        "3, 2, 1 and 5. A command that goes on until it is interrupted ends with 0 then.");
    for (const cli::exit_meaning &each : cli::exit_meanings)
        out.item(std::to_string(each.code), sentence(capitalised(each.meaning)));
    put_items(out, "ENVIRONMENT", texts.environment);
    put_items(out, "FILES", texts.files);
    put_examples(out, texts.examples);
    out.see_also({"ruk-chassisd(8)"});
    return out.text();
}

} // namespace

pages tool_pages(const command &tool)
{
    pages all;
    add(all.texts, tool, tool_page(tool));
    auto some = examples_of_nouns();
    for (const command &noun : tool.commands) {
        add(all.texts, noun, noun_page(noun, some[noun.path.back()]));
        add_links(all, noun, page_name(noun) + ".1");
    }
    return all;
}

pages daemon_pages(const command &daemon)
{
    const program_texts texts = texts_of_daemon();
    const daemon_details details = details_of_daemon();
    page out(page_name(daemon), for_administrators, about(daemon));
    out.section("SYNOPSIS");
    out.synopsis(usage(daemon));
    out.section("DESCRIPTION");
    for (const std::string &each : texts.description)
        out.paragraph(each);
    out.section("OPTIONS");
    put_parameters(out, daemon.options);
    out.section("CHASSIS FILE");
    out.paragraph(details.about_file);
    for (const described_item &each : details.file_keys)
        out.item(each.term, each.text);
    out.paragraph("For example:");
    out.verbatim(details.file);
    put_items(out, "SIGNALS", details.signals);
    put_items(out, "EXIT STATUS", details.exit_status);
    put_items(out, "ENVIRONMENT", texts.environment);
    put_items(out, "FILES", texts.files);
    put_examples(out, texts.examples);
    out.see_also({"ruk-ipmi(1)"});
    return {{{page_name(daemon) + ".8", out.text()}}, {}};
}

} // namespace manual
