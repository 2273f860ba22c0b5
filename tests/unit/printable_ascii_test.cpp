// A blade's text as printable ASCII.

#include <algorithm>
#include <array>

#include "ruk_ipmi/system_info.h"
#include "support/guarded.h"
#include "support/scripted_test.h"

using namespace ruk_ipmi_testing;

namespace
{

// A text of 8 bytes, with room for a terminator behind it.
class printable : public scripted_test
{
  protected:
    static constexpr uint32_t size = 8;

    std::string so_far() { return text->data(); }

    // The text is `begin` and zeros, and so is its terminator; nothing around it was written.
    bool holds(const std::string &begin)
    {
        std::array<char, size + 1> all{};
        std::copy(begin.begin(), begin.end(), all.begin());
        return *text == all && text.guards_hold();
    }

    guarded<std::array<char, size + 1>> text;
};

class utf_8 : public printable
{
  protected:
    int turn(const bytes &source)
    {
        return UTF8_2_PrintableASCII(source.data(), text->data(), size,
                                     static_cast<uint32_t>(source.size()));
    }

    // Turns what is no text, after which there is one line and no terminator.
    void refuses(const bytes &source, const std::string &line)
    {
        platform.forget();
        EXPECT_EQ(turn(source), -1);
        EXPECT_EQ(platform.journal(), events{error_line("UTF8_2_PrintableASCII" + line)});
        EXPECT_EQ(text->back(), static_cast<char>(text.fill));
        EXPECT_TRUE(text.guards_hold());
    }

    const std::string bad_length = " () :ERROR Invalid UTF-8 Encoding \n";
    const std::string bad_lead = " () :ERROR Invalid MSB Encoded UTF-8 Format\n";
};

class utf_16 : public printable
{
  protected:
    int turn(const bytes &source)
    {
        return Unicode16_2_PrintableASCII(text->data(), size, source.data(),
                                          static_cast<uint32_t>(source.size()));
    }
};

} // namespace

TEST_F(utf_8, of_ascii_stays_what_it_is_where_it_can_be_printed)
{
    EXPECT_EQ(turn({' ', 'A', 'z', '~', 0x1F, 0x7F, 0x00, '\n'}), 0);
    EXPECT_TRUE(holds(" Az~****"));
    EXPECT_EQ(platform.journal(), events{});
}

TEST_F(utf_8, of_a_character_outside_ascii_becomes_one_asterisk)
{
    for (const bytes &source :
         {bytes{0xA9, 0xC3}, bytes{0xAC, 0x82, 0xE2}, bytes{0x80, 0x98, 0x9F, 0xF0},
          bytes{0x80, 0x80, 0x80, 0x88, 0xF8}, bytes{0x80, 0x80, 0x80, 0x80, 0x84, 0xFC}}) {
        EXPECT_EQ(turn(joined(source, {'b'})), 0);
        EXPECT_EQ(so_far(), "*b");
    }
}

TEST_F(utf_8, of_any_length_is_printed_where_it_means_a_character_of_ascii)
{
    for (const bytes &source :
         {bytes{0x81, 0xC1}, bytes{0x81, 0x81, 0xE0}, bytes{0x81, 0x81, 0x80, 0xF0},
          bytes{0x81, 0x81, 0x80, 0x80, 0xF8}, bytes{0x81, 0x81, 0x80, 0x80, 0x80, 0xFC}}) {
        EXPECT_EQ(turn(source), 0);
        EXPECT_EQ(so_far(), "A");
    }
}

TEST_F(utf_8, takes_every_bit_as_it_comes)
{
    EXPECT_EQ(turn({0x82, 0xC1}), 0);
    EXPECT_EQ(so_far(), "B");
    EXPECT_EQ(turn({0xA2, 0xC0}), 0);
    EXPECT_EQ(so_far(), "\"");
}

TEST_F(utf_8, counts_the_lead_bytes_bits_as_the_highest)
{
    for (const bytes &source :
         {bytes{0x81, 0xC3}, bytes{0x81, 0x81, 0xE1}, bytes{0x81, 0x81, 0x80, 0xF1},
          bytes{0x81, 0x81, 0x80, 0x80, 0xF9}, bytes{0x81, 0x81, 0x80, 0x80, 0x80, 0xFD}}) {
        EXPECT_EQ(turn(source), 0);
        EXPECT_EQ(so_far(), "*");
    }
}

TEST_F(utf_8, takes_a_lead_byte_of_a_longer_character_for_that_of_a_shorter_one)
{
    EXPECT_EQ(turn({0x81, 0xE1}), 0);
    EXPECT_EQ(so_far(), "A");
}

TEST_F(utf_8, ends_the_text_where_the_source_would)
{
    EXPECT_EQ(turn({'a', 0xA9, 0xC3, 'b'}), 0);
    const std::string behind(4, '\0');
    EXPECT_EQ(std::string(text->data(), size), "a*b" + behind + '\0');
    EXPECT_EQ(text->back(), static_cast<char>(text.fill));
}

TEST_F(utf_8, of_nothing_clears_the_text)
{
    EXPECT_EQ(turn({}), 0);
    EXPECT_EQ(std::string(text->data(), size), std::string(size, '\0'));
    EXPECT_EQ(text->back(), static_cast<char>(text.fill));
}

TEST_F(utf_8, of_just_the_texts_size_has_its_terminator_behind_it)
{
    EXPECT_EQ(turn(bytes(8, 'x')), 0);
    EXPECT_TRUE(holds("xxxxxxxx"));
}

TEST_F(utf_8, longer_than_the_text_is_refused_and_the_text_left_alone)
{
    refuses(bytes(9, 'x'), "(): Insufficient Buffer \n");
    EXPECT_TRUE(text.untouched());
}

TEST_F(utf_8, whose_lead_byte_comes_first_is_refused)
{
    refuses({0xC3, 0xA9}, bad_length);
    EXPECT_EQ(so_far(), "");
    refuses({0xFF}, bad_length);
}

TEST_F(utf_8, that_ends_within_a_character_is_refused)
{
    refuses({0xA9}, bad_length);
    refuses({'a', 0x80, 0x80, 0x80, 0x80, 0x80}, bad_length);
}

TEST_F(utf_8, of_more_than_six_bytes_to_a_character_is_refused)
{
    refuses({0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0xFE}, bad_length);
    refuses(bytes(8, 0x80), bad_length);
}

TEST_F(utf_8, whose_lead_byte_lacks_the_marks_of_its_length_is_refused)
{
    refuses({0xA9, 'A'}, bad_lead);
    refuses({0x82, 0xAC, 0xC3}, bad_lead);
    refuses({0x80, 0x80, 0x80, 0xE2}, bad_lead);
    refuses({0x80, 0x80, 0x80, 0x80, 0xF0}, bad_lead);
    refuses({0x80, 0x80, 0x80, 0x80, 0x80, 0xF8}, bad_lead);
}

TEST_F(utf_8, keeps_what_was_turned_before_an_error)
{
    refuses({'a', 'b', 0xA9, 0xC3, 0xC3, 'c', 'd', 'e'}, bad_length);
    EXPECT_EQ(std::string(text->data(), size), std::string("ab*\0\0\0\0\0", size));
}

TEST_F(utf_16, comes_low_byte_first)
{
    EXPECT_EQ(turn({0x41, 0x00, 0x42, 0x00}), 0);
    EXPECT_TRUE(holds("AB"));
    EXPECT_EQ(platform.journal(), events{});
}

TEST_F(utf_16, becomes_asterisks_where_it_cannot_be_printed)
{
    EXPECT_EQ(turn({0x1F, 0, 0x20, 0, 0x7E, 0, 0x7F, 0, 0x41, 0x01, 0x00, 0x41, 0x00, 0x00}), 0);
    EXPECT_TRUE(holds("* ~****"));
}

TEST_F(utf_16, becomes_an_asterisk_for_each_unit_of_a_character)
{
    EXPECT_EQ(turn({0x3D, 0xD8, 0x00, 0xDE}), 0);
    EXPECT_TRUE(holds("**"));
}

TEST_F(utf_16, loses_an_odd_last_byte)
{
    EXPECT_EQ(turn({0x41, 0x00, 0x42}), 0);
    EXPECT_TRUE(holds("A"));
    EXPECT_EQ(turn({0x41}), 0);
    EXPECT_TRUE(holds(""));
}

TEST_F(utf_16, of_nothing_clears_the_text_and_what_follows_it)
{
    EXPECT_EQ(turn({}), 0);
    EXPECT_TRUE(holds(""));
}

TEST_F(utf_16, of_one_unit_less_than_the_texts_size_fits)
{
    EXPECT_EQ(turn({'1', 0, '2', 0, '3', 0, '4', 0, '5', 0, '6', 0, '7', 0, '8'}), 0);
    EXPECT_TRUE(holds("1234567"));
}

TEST_F(utf_16, of_as_many_units_as_the_texts_size_is_refused_and_the_text_left_alone)
{
    for (const size_t length : {16, 17, 18}) {
        platform.forget();
        EXPECT_EQ(turn(bytes(length, 'x')), -1);
        EXPECT_TRUE(text.untouched());
        EXPECT_EQ(
            platform.journal(),
            events{error_line("Unicode16_2_PrintableASCII(): Failed,Insufficient Buffer  \n")});
    }
}
