// Who keeps the session: FreeIPMI asks for the authentication capabilities first, and we do not.

#include <gtest/gtest.h>

#include "spoilt_controller.h"

namespace
{

using namespace tests;

// A controller's answer to whoever asks as the description says, and whether that is FreeIPMI.
bool is_freeipmi(const spoilt_controller &controller, const chassisd::bridge_config &config)
{
    const unsigned before = controller.asked(message_before_a_session);
    EXPECT_EQ(answer_of(config).data, rmcpplus_controller::usual_answer);
    return controller.asked(message_before_a_session) != before;
}

TEST(workaround, that_our_session_does_not_need_leaves_it_to_us)
{
    const spoilt_controller controller;
    for (const char *name : {"authcap", "opensesspriv"}) {
        chassisd::bridge_config config = controller.config();
        config.workarounds = {name};
        EXPECT_FALSE(is_freeipmi(controller, config)) << name;
    }
}

TEST(workaround, of_the_others_is_freeipmis)
{
    const spoilt_controller controller;
    for (const char *name : {"integritycheckvalue", "nochecksumcheck"}) {
        chassisd::bridge_config config = controller.config();
        config.workarounds = {"opensesspriv", name};
        EXPECT_TRUE(is_freeipmi(controller, config)) << name;
    }
}

TEST(cipher_suite, that_our_session_lacks_is_freeipmis)
{
    const spoilt_controller controller;
    for (const int suite : {0, 1, 2, 3, 17}) {
        chassisd::bridge_config config = controller.config();
        config.cipher_suite = static_cast<uint8_t>(suite);
        config.workarounds = {"opensesspriv"};
        EXPECT_EQ(is_freeipmi(controller, config), suite != 3 && suite != 17) << suite;
    }
}

TEST(workaround, names_are_known)
{
    for (const std::string &name : chassisd::workaround_names())
        EXPECT_TRUE(chassisd::known_workaround(name));
    EXPECT_FALSE(chassisd::known_workaround("nonesuch"));
}

} // namespace
