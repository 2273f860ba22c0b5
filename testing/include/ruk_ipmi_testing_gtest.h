/** The scripted platform as a GoogleTest fixture; see ruk_ipmi_testing.h. */
#ifndef RUK_IPMI_TESTING_GTEST_H
#define RUK_IPMI_TESTING_GTEST_H

#include <gtest/gtest.h>

#include "ruk_ipmi_testing.h"

namespace ruk_ipmi_testing
{

/**
 * A test with a platform of its own: what did not go as scripted fails it.
 *
 *     class sel_survey : public ruk_ipmi_testing::scripted_platform_test {};
 *
 *     TEST_F(sel_survey, counts_nothing_in_an_empty_log)
 *     {
 *         platform.expects(blade(5), 0x0A40).answers({...});
 *         ...
 *     }
 */
class scripted_platform_test : public ::testing::Test
{
  protected:
    /** Fails the test when there is a complaint. Whoever overrides it calls it last. */
    void TearDown() override
    {
        const std::string complaint = platform.complaint();
        if (!complaint.empty())
            ADD_FAILURE() << "not as scripted:\n" << complaint;
    }

    scripted_platform platform; /**< the platform of this test */
};

} // namespace ruk_ipmi_testing

#endif
