// Each noun's commands, declared by themselves: they are what they are among all others.

#include "cli/vocabulary.h"

#include <gtest/gtest.h>

using namespace cli;

namespace
{

std::string help_below(const CLI::App &app)
{
    std::string text = app.help();
    for (const CLI::App *each : app.get_subcommands([](const CLI::App *) { return true; }))
        text += help_below(*each);
    return text;
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
    const vocabulary whole(all_nouns());
    for (const std::string_view name : all_nouns()) {
        const vocabulary alone({name});
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

TEST(vocabulary, is_of_the_nouns_that_are_named)
{
    EXPECT_EQ(nouns_of({"-b", "3", "sel", "list"}), (noun_names{"sel"}));
    EXPECT_EQ(nouns_of({"fru", "read", "sel", "-b3"}), (noun_names{"fru", "sel"}));
}

TEST(vocabulary, is_whole_where_no_noun_is_named)
{
    for (const std::vector<const char *> &arguments :
         {std::vector<const char *>{}, {"-h"}, {"--version"}, {"nonsense", "list"}})
        EXPECT_EQ(nouns_of(arguments), all_nouns());
}
