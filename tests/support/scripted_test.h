// The scripted platform as the fixture of the library's own tests: what did not go as scripted
// fails the test.
#ifndef RUK_TESTS_SUPPORT_SCRIPTED_TEST_H
#define RUK_TESTS_SUPPORT_SCRIPTED_TEST_H

#include <gtest/gtest.h>

#include "support/whole_platform.h"

namespace ruk_ipmi_testing
{

class scripted_test : public ::testing::Test
{
  protected:
    // The exchanges go with the test's result, where the descriptions of the commands are held to
    // them.
    void TearDown() override
    {
        EXPECT_EQ(platform.complaint(), "");
        RecordProperty("exchanges", platform.exchanges());
    }

    whole_platform platform;
};

} // namespace ruk_ipmi_testing

#endif
