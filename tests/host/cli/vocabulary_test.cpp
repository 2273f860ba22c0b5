// Each noun's commands, declared by themselves: they are what they are among all others. And how
// all of them tell what they are for.

#include "cli/vocabulary.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

using namespace cli;

namespace
{

// The command and all that are below it.
std::vector<CLI::App *> family(CLI::App &app)
{
    std::vector<CLI::App *> all = {&app};
    for (CLI::App *each : app.get_subcommands([](CLI::App *) { return true; }))
        for (CLI::App *member : family(*each))
            all.push_back(member);
    return all;
}

std::string help_below(CLI::App &app)
{
    std::string text;
    for (const CLI::App *each : family(app))
        text += each->help();
    return text;
}

std::vector<std::string> choices_of(const CLI::Option &option)
{
    const std::string type = option.get_type_name();
    if (type.empty() || type.front() != '{')
        return {};
    return CLI::detail::split(type.substr(1, type.size() - 2), ',');
}

// Descriptions begin with a capital letter or a number, or with a word that can be typed, and have
// no full stop.
bool is_description(const std::string &text, const std::vector<std::string> &choices)
{
    const std::string first = text.substr(0, text.find_first_of(" ,"));
    const bool begins_well = std::isupper(text[0]) || std::isdigit(text[0]) ||
                             std::find(choices.begin(), choices.end(), first) != choices.end();
    return begins_well && text.back() != '.';
}

// What is wrong with these words.
std::string mistake(const noun_names &known, const std::string &words)
{
    vocabulary vocabulary(known);
    try {
        vocabulary.app.parse(words);
    } catch (const std::exception &error) {
        return error.what();
    }
    return "";
}

noun_names nouns_of(std::vector<const char *> arguments)
{
    arguments.insert(arguments.begin(), "ruk-ipmi");
    return nouns_in(static_cast<int>(arguments.size()), const_cast<char **>(arguments.data()));
}

} // namespace

TEST(vocabulary, has_the_same_help_for_a_noun_alone)
{
    vocabulary whole(all_nouns());
    for (const std::string_view name : all_nouns()) {
        vocabulary alone({name});
        const std::string noun(name);
        EXPECT_EQ(help_below(*alone.app.get_subcommand(noun)),
                  help_below(*whole.app.get_subcommand(noun)));
    }
}

TEST(vocabulary, finds_the_same_mistakes_with_a_noun_alone)
{
    for (const std::string_view name : all_nouns())
        for (const char *rest : {"", " nonsense", " --nonsense", " -b 0 x", " -o xml", " -b"}) {
            const std::string words = std::string(name) + rest;
            EXPECT_EQ(mistake({name}, words), mistake(all_nouns(), words)) << words;
        }
}

TEST(vocabulary, is_of_the_noun_that_is_named_first)
{
    EXPECT_EQ(nouns_of({"-b", "3", "sel", "list"}), (noun_names{"sel"}));
    EXPECT_EQ(nouns_of({"fru", "read", "sel", "-b3"}), (noun_names{"fru"}));
}

TEST(vocabulary, is_whole_where_the_noun_may_be_what_an_option_is_given)
{
    EXPECT_EQ(nouns_of({"--log", "fru", "sel", "list"}), all_nouns());
    EXPECT_EQ(nouns_of({"-v", "sel", "list"}), all_nouns());
}

TEST(vocabulary, is_whole_where_no_noun_is_named)
{
    for (const std::vector<const char *> &arguments :
         {std::vector<const char *>{}, {"-h"}, {"--version"}, {"nonsense", "list"}})
        EXPECT_EQ(nouns_of(arguments), all_nouns());
}

TEST(vocabulary, has_help_of_80_columns_at_every_level)
{
    vocabulary whole(all_nouns());
    std::istringstream lines(help_below(whole.app));
    for (std::string line; std::getline(lines, line);)
        EXPECT_LE(line.size(), 80) << line;
}

TEST(vocabulary, tells_the_options_of_every_command_at_every_level)
{
    vocabulary whole(all_nouns());
    for (const CLI::App *each : family(whole.app))
        EXPECT_NE(each->help().find("  -b,--blade SLOT[.SUB]   Blades"), std::string::npos)
            << each->get_name();
}

TEST(vocabulary, describes_every_command)
{
    vocabulary whole(all_nouns());
    for (const CLI::App *each : family(whole.app))
        EXPECT_TRUE(each == &whole.app || is_description(each->get_description(), {}))
            << each->get_name() << ": " << each->get_description();
}

TEST(vocabulary, describes_every_option_and_argument)
{
    vocabulary whole(all_nouns());
    for (const CLI::App *each : family(whole.app))
        for (const CLI::Option *option : each->get_options())
            EXPECT_TRUE(is_description(option->get_description(), choices_of(*option)))
                << option->get_name() << ": " << option->get_description();
}

TEST(vocabulary, takes_every_word_that_it_offers)
{
    vocabulary whole(all_nouns());
    size_t offered = 0;
    for (CLI::App *each : family(whole.app))
        for (CLI::Option *option : each->get_options())
            for (const std::string &word : choices_of(*option)) {
                ++offered;
                option->clear();
                option->add_result(word);
                EXPECT_NO_THROW(option->run_callback()) << option->get_name() << " " << word;
            }
    EXPECT_GT(offered, 30);
}
