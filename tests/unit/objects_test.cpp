// Named mutexes and events.

#include "ruk_ipmi/objects.h"

#include <cstring>
#include <thread>

#include "support/guarded.h"
#include "support/scripted_test.h"

using namespace ruk_ipmi_testing;

namespace
{

// An object of either kind, not looked up yet.
template <typename Object>
class named_object : public scripted_test
{
  protected:
    void SetUp() override { *object = {}; }

    void name_it(const char *name) { strcpy(object->name, name); }

    guarded<Object> object;
};

using mutex_by_name = named_object<mutex_obj>;
using event_by_name = named_object<event_obj>;

const std::string name_of_49(49, 'n');

// The name of an object that belongs to the calling thread.
std::string with_this_thread(const std::string &name)
{
    return name + formatted("-%d", this_thread());
}

} // namespace

// acquire_mutex, release_mutex.

TEST_F(mutex_by_name, is_created_and_locked)
{
    EXPECT_EQ(acquire_mutex("door", object.get(), 0), 0u);
    EXPECT_EQ(platform.journal(),
              (events{os_call("os_mutex_create door"), os_call("os_mutex_get door, 100 ticks")}));
    EXPECT_TRUE(object.guards_hold());
    release_mutex(object.get());
}

TEST_F(mutex_by_name, is_attached_to_when_it_exists)
{
    platform.os.let_go("door");
    EXPECT_EQ(acquire_mutex("door", object.get(), 0), 0u);
    EXPECT_EQ(platform.journal(),
              (events{os_call("os_mutex_create door"), os_call("os_mutex_ident door"),
                      os_call("os_mutex_get door, 100 ticks")}));
    release_mutex(object.get());
}

TEST_F(mutex_by_name, is_unlocked_by_its_object)
{
    acquire_mutex("door", object.get(), 0);
    platform.forget();
    release_mutex(object.get());
    EXPECT_EQ(platform.journal(), (events{os_call("os_mutex_put door")}));
    EXPECT_STREQ(object->name, "door");
    EXPECT_TRUE(object.guards_hold());
}

TEST_F(mutex_by_name, is_looked_up_once_for_each_object)
{
    acquire_mutex("door", object.get(), 0);
    release_mutex(object.get());
    platform.forget();
    EXPECT_EQ(acquire_mutex("another door", object.get(), 1), 0u);
    EXPECT_EQ(platform.journal(), (events{os_call("os_mutex_get door, 100 ticks")}));
    release_mutex(object.get());
}

TEST_F(mutex_by_name, is_looked_up_once_also_when_its_name_is_one_character)
{
    acquire_mutex("d", object.get(), 0);
    release_mutex(object.get());
    platform.forget();
    EXPECT_EQ(acquire_mutex("d", object.get(), 0), 0u);
    EXPECT_EQ(platform.journal(), (events{os_call("os_mutex_get d, 100 ticks")}));
    release_mutex(object.get());
}

TEST_F(mutex_by_name, is_refused_without_a_name_or_an_object)
{
    name_it("door");
    const bytes before = object.content();
    EXPECT_EQ(acquire_mutex(nullptr, object.get(), 0), 0x5106u);
    EXPECT_EQ(acquire_mutex("door", nullptr, 0), 0x5106u);
    EXPECT_EQ(acquire_mutex(nullptr, nullptr, 1), 0x5106u);
    EXPECT_EQ(platform.journal(),
              events(3, debug_line("Null parameter passed in acquire_mutex.\n")));
    EXPECT_EQ(object.content(), before);
}

TEST_F(mutex_by_name, that_can_be_neither_created_nor_found_gives_the_status_of_the_latter)
{
    platform.os.fails("os_mutex_create", 0x5201);
    platform.os.fails("os_mutex_ident", 0xABCDEF01);
    EXPECT_EQ(acquire_mutex("door", object.get(), 0), 0xABCDEF01u);
    EXPECT_EQ(platform.journal(),
              (events{os_call("os_mutex_create door"), os_call("os_mutex_ident door"),
                      debug_line("Error in acqiuiring the mutex abcdef01\n")}));
    EXPECT_EQ(object.content(), bytes(84));
}

TEST_F(mutex_by_name, that_cannot_be_locked_gives_the_status)
{
    platform.os.fails("os_mutex_get", 0x5203);
    EXPECT_EQ(acquire_mutex("door", object.get(), 0), 0x5203u);
    EXPECT_EQ(platform.journal(),
              (events{os_call("os_mutex_create door"), os_call("os_mutex_get door, 100 ticks"),
                      debug_line("Error in acqiuiring the mutex 5203\n")}));
}

TEST_F(mutex_by_name, that_another_holds_can_be_tried_again)
{
    platform.os.hold("door");
    EXPECT_EQ(acquire_mutex("door", object.get(), 0), scripted_os::busy);
    platform.os.let_go("door");
    platform.forget();
    EXPECT_EQ(acquire_mutex("door", object.get(), 0), 0u);
    EXPECT_EQ(platform.journal(), (events{os_call("os_mutex_get door, 100 ticks")}));
    release_mutex(object.get());
}

TEST_F(mutex_by_name, is_looked_up_again_after_a_failed_search)
{
    platform.os.fails("os_mutex_create", 0x5204);
    platform.os.fails("os_mutex_ident", 0x5202);
    EXPECT_EQ(acquire_mutex("door", object.get(), 0), 0x5202u);
    EXPECT_EQ(acquire_mutex("door", object.get(), 0), 0u);
    EXPECT_EQ(platform.calls().at(2), os_call("os_mutex_create door"));
    release_mutex(object.get());
}

TEST_F(mutex_by_name, of_a_thread_bears_the_threads_number)
{
    platform.os.let_go(with_this_thread("door"));
    EXPECT_EQ(acquire_mutex("door", object.get(), 7), 0u);
    const std::string name = with_this_thread("door");
    EXPECT_EQ(platform.journal(),
              (events{os_call("os_mutex_create " + name), os_call("os_mutex_ident " + name),
                      os_call("os_mutex_get " + name + ", 100 ticks")}));
    release_mutex(object.get());
}

TEST_F(mutex_by_name, of_a_thread_is_another_in_every_thread)
{
    mutex_obj others{};
    EXPECT_EQ(acquire_mutex("door", object.get(), 1), 0u);
    std::thread([&others] {
        EXPECT_EQ(acquire_mutex("door", &others, 1), 0u);
        EXPECT_EQ(others.name, with_this_thread("door"));
        release_mutex(&others);
    }).join();
    EXPECT_STRNE(others.name, object->name);
    release_mutex(object.get());
}

TEST_F(mutex_by_name, keeps_the_first_49_characters_of_its_name)
{
    EXPECT_EQ(acquire_mutex(name_of_49.c_str(), object.get(), 0), 0u);
    EXPECT_EQ(object->name, name_of_49);
    release_mutex(object.get());
    *object = {};
    EXPECT_EQ(acquire_mutex((name_of_49 + "o").c_str(), object.get(), 0), 0u);
    EXPECT_EQ(object->name, name_of_49);
    release_mutex(object.get());
}

TEST_F(mutex_by_name, of_a_thread_keeps_the_first_49_characters_number_included)
{
    const std::string name(45, 'n');
    EXPECT_EQ(acquire_mutex(name.c_str(), object.get(), 1), 0u);
    EXPECT_EQ(object->name, with_this_thread(name).substr(0, 49));
    EXPECT_TRUE(object.guards_hold());
    release_mutex(object.get());
}

TEST_F(mutex_by_name, may_bear_a_name_that_looks_like_a_format)
{
    EXPECT_EQ(acquire_mutex("%s%d%n", object.get(), 0), 0u);
    EXPECT_STREQ(object->name, "%s%d%n");
    release_mutex(object.get());
}

// create_event.

TEST_F(event_by_name, is_created_not_set)
{
    EXPECT_EQ(create_event("bell", object.get(), 0), 0u);
    EXPECT_EQ(platform.journal(), (events{os_call("os_ev_create bell")}));
    EXPECT_STREQ(object->name, "bell");
    EXPECT_FALSE(platform.os.is_set("bell"));
    EXPECT_TRUE(object.guards_hold());
}

TEST_F(event_by_name, is_left_alone_when_it_has_a_name)
{
    name_it("gong");
    const bytes before = object.content();
    EXPECT_EQ(create_event("bell", object.get(), 0), 0u);
    EXPECT_EQ(create_event("bell", object.get(), 1), 0u);
    EXPECT_EQ(platform.journal(), events{});
    EXPECT_EQ(object.content(), before);
}

TEST_F(event_by_name, is_left_alone_also_when_its_name_is_one_character)
{
    EXPECT_EQ(create_event("e", object.get(), 0), 0u);
    platform.forget();
    EXPECT_EQ(create_event("e", object.get(), 0), 0u);
    EXPECT_EQ(platform.journal(), events{});
}

TEST_F(event_by_name, is_refused_without_a_name_or_an_object)
{
    EXPECT_EQ(create_event(nullptr, object.get(), 0), 0x5106u);
    EXPECT_EQ(create_event("bell", nullptr, 0), 0x5106u);
    EXPECT_EQ(create_event(nullptr, nullptr, 1), 0x5106u);
    EXPECT_EQ(platform.calls(), events{});
    EXPECT_EQ(object.content(), bytes(84));
}

TEST_F(event_by_name, that_cannot_be_created_gives_the_status_and_can_be_tried_again)
{
    platform.os.fails("os_ev_create", 0xABCDEF01);
    EXPECT_EQ(create_event("bell", object.get(), 0), 0xABCDEF01u);
    EXPECT_EQ(object.content(), bytes(84));
    EXPECT_EQ(create_event("bell", object.get(), 0), 0u);
    EXPECT_EQ(platform.journal(), events(2, os_call("os_ev_create bell")));
}

TEST_F(event_by_name, of_a_thread_bears_the_threads_number)
{
    EXPECT_EQ(create_event("bell", object.get(), 0xFFFFFFFF), 0u);
    EXPECT_EQ(platform.journal(), (events{os_call("os_ev_create " + with_this_thread("bell"))}));
    EXPECT_EQ(object->name, with_this_thread("bell"));
}

TEST_F(event_by_name, keeps_the_first_49_characters_of_its_name)
{
    EXPECT_EQ(create_event((name_of_49 + "op").c_str(), object.get(), 0), 0u);
    EXPECT_EQ(object->name, name_of_49);
    *object = {};
    EXPECT_EQ(create_event((name_of_49 + "op").c_str(), object.get(), 1), 0u);
    EXPECT_EQ(object->name, name_of_49);
    EXPECT_TRUE(object.guards_hold());
}

TEST_F(event_by_name, may_bear_a_name_that_looks_like_a_format)
{
    EXPECT_EQ(create_event("%s%d%n", object.get(), 0), 0u);
    EXPECT_STREQ(object->name, "%s%d%n");
}
