// The scripted platform as a GoogleTest fixture: what did not go as scripted fails the test.
#ifndef RUK_IPMI_TESTING_SCRIPTED_PLATFORM_GTEST_H
#define RUK_IPMI_TESTING_SCRIPTED_PLATFORM_GTEST_H

#include <gtest/gtest.h>

#include "scripted_platform.h"

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

    scripted_platform platform;
};

} // namespace ruk_ipmi_testing

#endif
