// The list of outstanding commands.

#include "ruk_ipmi/list.h"

#include <cstdlib>
#include <thread>

#include "memory.h"
#include "support/scripted_test.h"

using namespace ruk_ipmi_testing;

namespace
{

class list : public scripted_test
{
  protected:
    void SetUp() override
    {
        ipmi_list_init(&items, "things");
        platform.forget();
    }

    void TearDown() override
    {
        while (items.head)
            list_delete(&items, items.head);
        scripted_test::TearDown();
    }

    // What is in the list, from its head on.
    std::vector<int> content() const
    {
        std::vector<int> numbers;
        for (const ipmi_list_node *at = items.head; at; at = at->next)
            numbers.push_back(*static_cast<const int *>(at->data));
        return numbers;
    }

    ipmi_list_node *node(size_t index)
    {
        ipmi_list_node *at = items.head;
        while (index-- > 0)
            at = at->next;
        return at;
    }

    const std::string name = "things_" + std::to_string(this_thread());
    const event locked = os_call("os_mutex_get " + name + ", 500 ticks");
    const event unlocked = os_call("os_mutex_put " + name);
    ipmi_list items{};
    int one = 1, two = 2, three = 3;
};

class list_of_three : public list
{
  protected:
    void SetUp() override
    {
        list::SetUp();
        for (int *each : {&one, &two, &three})
            list_insert(&items, each);
        platform.forget();
    }
};

} // namespace

TEST_F(list, begins_empty_with_a_mutex_named_after_the_thread)
{
    ipmi_list fresh;
    fresh.head = reinterpret_cast<ipmi_list_node *>(&one);
    ipmi_list_init(&fresh, "others");
    const std::string mutex = "others_" + std::to_string(this_thread());
    EXPECT_EQ(fresh.head, nullptr);
    EXPECT_EQ(fresh.mutex.name, mutex);
    EXPECT_EQ(platform.journal(), (events{os_call("os_mutex_create " + mutex)}));
}

TEST_F(list, attaches_to_the_mutex_that_is_there)
{
    ipmi_list second{};
    ipmi_list_init(&second, "things");
    EXPECT_EQ(platform.journal(),
              (events{os_call("os_mutex_create " + name), os_call("os_mutex_ident " + name)}));
    EXPECT_EQ(second.mutex.name, name);
}

TEST_F(list, needs_no_mutex)
{
    ipmi_list fresh{};
    fresh.head = reinterpret_cast<ipmi_list_node *>(&one);
    ipmi_list_init(&fresh, nullptr);
    EXPECT_EQ(fresh.head, nullptr);
    EXPECT_EQ(platform.journal(), events{});
}

TEST_F(list, cuts_a_mutex_name_of_more_than_99_characters)
{
    ipmi_list fresh{};
    platform.os.fails("os_mutex_create", 1);
    platform.os.fails("os_mutex_ident", 1);
    ipmi_list_init(&fresh, std::string(120, 'x').c_str());
    EXPECT_EQ(platform.journal(), (events{os_call("os_mutex_create " + std::string(99, 'x')),
                                          os_call("os_mutex_ident " + std::string(99, 'x'))}));
}

TEST_F(list, ignores_a_missing_list_to_make)
{
    ipmi_list_init(nullptr, "nothing");
    EXPECT_EQ(platform.journal(), events{});
}

TEST_F(list, locks_for_500_ticks)
{
    EXPECT_EQ(get_list_access(&items), 0u);
    EXPECT_EQ(platform.journal(), (events{locked}));
    release_list_access(&items);
    EXPECT_EQ(platform.journal(), (events{locked, unlocked}));
}

TEST_F(list, tells_the_log_when_it_cannot_be_locked)
{
    platform.os.fails("os_mutex_get", 0xABC);
    EXPECT_EQ(get_list_access(&items), 0xABCu);
    EXPECT_EQ(platform.journal(),
              (events{locked, debug_line("os_mutex_get on " + name + " returned rc abc ")}));
}

TEST_F(list, appends_at_the_tail)
{
    for (int *each : {&one, &two, &three})
        EXPECT_EQ(list_insert(&items, each), 0);
    EXPECT_EQ(content(), (std::vector{1, 2, 3}));
    EXPECT_EQ(platform.journal(), (events{locked, unlocked, locked, unlocked, locked, unlocked}));
}

TEST_F(list, appends_even_when_it_cannot_be_locked)
{
    platform.os.fails("os_mutex_get", 1);
    EXPECT_EQ(list_insert(&items, &one), 0);
    EXPECT_EQ(content(), (std::vector{1}));
}

TEST_F(list, loses_nothing_to_another_thread_also_when_it_cannot_be_locked)
{
    constexpr int each = 300;
    ipmi_list unlocked_items{};
    ipmi_list_init(&unlocked_items, nullptr);
    const auto insert = [&] {
        for (int i = 0; i < each; ++i)
            list_insert(&unlocked_items, &one);
    };
    std::thread other(insert);
    insert();
    other.join();
    int count = 0;
    for (; unlocked_items.head; ++count)
        list_delete(&unlocked_items, unlocked_items.head);
    EXPECT_EQ(count, 2 * each);
}

TEST_F(list, says_when_there_is_no_memory_for_a_node)
{
    int result = 0;
    {
        const no_memory_left here;
        result = list_insert(&items, &one);
    }
    EXPECT_EQ(result, -1);
    EXPECT_EQ(content(), std::vector<int>{});
    EXPECT_EQ(platform.journal(), (events{locked, unlocked}));
}

TEST_F(list, refuses_to_append_to_nothing_but_locks_all_the_same)
{
    EXPECT_EQ(list_insert(nullptr, &one), -1);
    EXPECT_EQ(platform.journal(),
              (events{os_call("os_mutex_get (null), 500 ticks"),
                      debug_line(formatted("os_mutex_get on (null) returned rc %x ",
                                           scripted_os::unknown)),
                      os_call("os_mutex_put (null)")}));
}

TEST_F(list_of_three, gives_back_the_head_and_makes_its_successor_the_head)
{
    EXPECT_EQ(list_delete(&items, node(0)), &one);
    EXPECT_EQ(content(), (std::vector{2, 3}));
    EXPECT_EQ(platform.journal(), (events{locked, unlocked}));
}

TEST_F(list_of_three, bridges_what_is_taken_from_its_middle)
{
    EXPECT_EQ(list_delete(&items, node(1)), &two);
    EXPECT_EQ(content(), (std::vector{1, 3}));
}

TEST_F(list_of_three, ends_where_its_tail_was_taken)
{
    EXPECT_EQ(list_delete(&items, node(2)), &three);
    EXPECT_EQ(content(), (std::vector{1, 2}));
    EXPECT_EQ(node(1)->next, nullptr);
}

TEST_F(list_of_three, is_empty_when_all_is_taken)
{
    while (items.head)
        list_delete(&items, items.head);
    EXPECT_EQ(content(), std::vector<int>{});
    EXPECT_EQ(list_insert(&items, &two), 0);
    EXPECT_EQ(content(), (std::vector{2}));
}

TEST_F(list, gives_nothing_when_it_is_empty)
{
    ipmi_list_node stranger{&one, nullptr};
    EXPECT_EQ(list_delete(&items, &stranger), nullptr);
    EXPECT_EQ(list_delete_and_free_data(&items, &stranger), -1);
    EXPECT_EQ(platform.journal(), (events{locked, unlocked, locked, unlocked}));
}

TEST_F(list, gives_nothing_when_it_is_missing)
{
    ipmi_list_node stranger{&one, nullptr};
    EXPECT_EQ(list_delete(nullptr, &stranger), nullptr);
    EXPECT_EQ(list_delete_and_free_data(nullptr, &stranger), -1);
    EXPECT_EQ(platform.calls().size(), 4u);
}

TEST_F(list, frees_an_item_with_its_node)
{
    list_insert(&items, malloc(1)); // the leak checker sees whether it is
    EXPECT_EQ(list_delete_and_free_data(&items, items.head), 0);
    EXPECT_EQ(items.head, nullptr);
}

TEST_F(list_of_three, is_walked_from_first_to_next)
{
    EXPECT_EQ(get_list_first(&items), node(0));
    EXPECT_EQ(get_list_next(&items, node(0)), node(1));
    EXPECT_EQ(get_list_next(&items, node(2)), nullptr);
    EXPECT_EQ(platform.journal(), (events{locked, unlocked, locked, unlocked, locked, unlocked}));
}

TEST_F(list, has_nothing_after_no_node)
{
    EXPECT_EQ(get_list_first(&items), nullptr);
    EXPECT_EQ(get_list_next(&items, nullptr), nullptr);
    EXPECT_EQ(get_list_first(nullptr), nullptr);
}
