// System information parameters that are texts, and the encodings they come in.

#include "system_info_fixture.h"

namespace
{

// A text of a parameter whose text is turned to printable ASCII.
class get_text : public get_system_info
{
  protected:
    // Gets one of a single block.
    void get_in(uint8_t encoding, const bytes &text)
    {
        expects_get(0x03).answers(text_answer(text, text.size(), encoding));
        EXPECT_EQ(get(0x03), 0);
    }

    // Gets one of 255 bytes, in 17 blocks of which the last has more than is left.
    void get_longest_in(uint8_t encoding, bytes text)
    {
        text.resize(14 + 16 * 16, 0xEE);
        expects_get(0x02).answers(text_answer(bytes_at(text.data(), 14), 255, encoding));
        for (uint8_t block = 1; block <= 16; ++block)
            expects_get(0x02, block)
                .answers(joined({0x00, 0x11, block}, bytes_at(&text[16u * block - 2], 16)));
        EXPECT_EQ(get(0x02), 0);
    }
};

} // namespace

TEST_F(get_system_info, reads_a_text_in_one_block)
{
    expects_get(0x02).answers(text_answer(characters("blade")));
    EXPECT_EQ(get(0x02), 0);
    EXPECT_TRUE(holds(5, characters("blade")));
    EXPECT_EQ(platform.journal(),
              (events{attached(), sent(0x1C), received(1001, 500, 483), detached()}));
}

TEST_F(get_system_info, keeps_no_more_of_the_first_block_than_the_text_has)
{
    expects_get(0x02).answers(text_answer(characters("blade or so"), 5));
    EXPECT_EQ(get(0x02), 0);
    EXPECT_TRUE(holds(5, characters("blade")));
    expects_get(0x02).answers(text_answer(characters("fourteen bytes and more"), 14));
    EXPECT_EQ(get(0x02), 0);
    EXPECT_TRUE(holds(14, characters("fourteen bytes")));
}

TEST_F(get_system_info, puts_a_text_together_from_whole_blocks)
{
    const bytes text = counting(14 + 16 + 16);
    expects_get(0xD1).answers(text_answer(bytes_at(text.data(), 14), 31));
    expects_get(0xD1, 1).answers(joined({0x00, 0x99, 0x01}, bytes_at(&text[14], 16)));
    expects_get(0xD1, 2).answers(joined({0x00, 0x99, 0x02}, bytes_at(&text[30], 16)));
    EXPECT_EQ(get(0xD1), 0);
    EXPECT_TRUE(holds(31, text));
    EXPECT_EQ(platform.calls().at(10), received(1003, 500, 483));
}

TEST_F(get_system_info, reads_one_byte_less_with_the_first_block_of_D0)
{
    const bytes text = counting(13 + 16);
    expects_get(0xD0).answers(joined({0x00, 0x11, 0xEE, 0x01, 0xEE, 29}, bytes_at(&text[0], 13)));
    expects_get(0xD0, 1).answers(joined({0x00, 0x11, 0x01}, bytes_at(&text[13], 16)));
    EXPECT_EQ(get(0xD0), 0);
    EXPECT_TRUE(holds(29, text));
    EXPECT_EQ(platform.log(), events{});
}

TEST_F(get_system_info, knows_which_parameters_are_texts)
{
    for (const uint8_t parameter :
         bytes{0x00, 0x01, 0x02, 0x03, 0x04, 0xD1, 0xDC, 0xDD, 0xDE, 0xDF, 0xE0}) {
        expects_get(parameter).answers(text_answer(characters("x")));
        EXPECT_EQ(get(parameter), 0);
        EXPECT_TRUE(holds(1, characters("x")));
    }
}

TEST_F(get_system_info, ends_a_text_with_the_block_that_failed)
{
    const bytes first = characters("fourteen bytes");
    expects_get(0x02).answers(text_answer(first, 31, 1));
    expects_get(0x02, 1).answers({0xC1});
    EXPECT_EQ(get(0x02), 0xC1);
    EXPECT_TRUE(holds(31, first));
    EXPECT_EQ(platform.log(), events{}); // as it came
    expects_get(0x02).answers(text_answer(first, 31, 1));
    expects_get(0x02, 1).answers({0xC1}).fails_to_receive(0x5007);
    EXPECT_EQ(get(0x02), 0x5007);
    EXPECT_TRUE(holds(31, first));
}

// Their encodings.

TEST_F(get_text, in_ascii_stays_as_it_came)
{
    get_in(0, {'a', 0x07, 0xC3});
    EXPECT_TRUE(holds(3, {'a', 0x07, 0xC3}));
    EXPECT_EQ(platform.log(), events{});
}

TEST_F(get_text, in_utf_8_is_made_printable_and_told_to_the_debug_log)
{
    get_in(1, {'a', 0xA9, 0xC3, 'b'});
    EXPECT_TRUE(holds(4, characters("a*b")));
    EXPECT_EQ(platform.log(), events{debug_line("location_get_sys_info () UTF Resp Param a*b \n")});
}

TEST_F(get_text, in_utf_16_is_made_printable_and_told_to_the_debug_log)
{
    get_in(2, {'A', 0x00, 'B', 0x00, 0x3D, 0xD8});
    EXPECT_TRUE(holds(6, characters("AB*")));
    EXPECT_EQ(platform.log(),
              events{debug_line("location_get_sys_info () Unicode Resp Param AB* \n")});
}

TEST_F(get_text, in_an_unknown_encoding_stays_as_it_came)
{
    get_in(15, {'a', 0xA9, 0xC3});
    EXPECT_TRUE(holds(3, {'a', 0xA9, 0xC3}));
    EXPECT_EQ(platform.log(), events{debug_line("location_get_sys_info(): Unhandled Character "
                                                "Encoding specified 15 \n")});
}

TEST_F(get_text, gives_way_to_what_could_be_turned_of_it)
{
    get_in(1, {'a', 'b', 0xC3, 0xA9, 'c'});
    EXPECT_TRUE(holds(5, characters("ab")));
    EXPECT_EQ(platform.log(),
              (events{error_line("UTF8_2_PrintableASCII () :ERROR Invalid UTF-8 Encoding \n"),
                      debug_line("location_get_sys_info () UTF Resp Param ab \n")}));
}

TEST_F(get_text, goes_by_the_encoding_of_its_first_block)
{
    expects_get(0x04).answers(text_answer(bytes(14, 'a'), 16, 1));
    expects_get(0x04, 1).answers({0x00, 0x11, 0x01, 0xA9, 0xC3});
    EXPECT_EQ(get(0x04), 0);
    EXPECT_TRUE(holds(16, characters("aaaaaaaaaaaaaa*")));
}

TEST_F(get_text, is_made_printable_for_four_parameters_only)
{
    for (const uint8_t parameter : bytes{0x00, 0x01, 0x02, 0x03, 0x04, 0xD1, 0xDC, 0xE0}) {
        platform.forget();
        expects_get(parameter).answers(text_answer({0xA9, 0xC3}, 2, 1));
        EXPECT_EQ(get(parameter), 0);
        const bool converted = parameter >= 0x01 && parameter <= 0x04;
        EXPECT_TRUE(holds(2, converted ? characters("*") : bytes{0xA9, 0xC3}));
        EXPECT_EQ(platform.log().empty(), !converted);
    }
}

TEST_F(get_text, of_255_bytes_fills_the_record_and_no_more)
{
    const bytes text(255, 'x');
    get_longest_in(0, text);
    EXPECT_TRUE(holds(255, joined(text, {0xEE}))); // the last block's next byte
}

TEST_F(get_text, of_255_bytes_is_made_printable_as_a_whole)
{
    get_longest_in(1, bytes(255, 'x'));
    EXPECT_EQ(bytes_at(out->value, 256), joined(bytes(255, 'x'), {0x00}));
    EXPECT_TRUE(out.guards_hold());
    get_longest_in(2, bytes(255, '!')); // 127 units of 0x2121
    EXPECT_EQ(bytes_at(out->value, 128), joined(bytes(127, '*'), {0x00}));
    EXPECT_TRUE(out.guards_hold());
}
