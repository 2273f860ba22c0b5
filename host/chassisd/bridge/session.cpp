#include "chassisd/bridge/session.h"

#include "chassisd/bridge/freeipmi_session.h"
#include "chassisd/bridge/rmcpplus/session.h"
#include "chassisd/bridge/workarounds.h"

namespace chassisd
{

uint8_t privilege_of(const bridge_config &config)
{
    if (config.privilege == "user")
        return 0x02;
    if (config.privilege == "operator")
        return 0x03;
    return 0x04;
}

std::unique_ptr<session> open_session(const bridge_config &config,
                                      session::clock::time_point deadline)
{
    using namespace rmcpplus;
    set_up_cryptography();
    const cipher_suite *const suite = find_cipher_suite(config.cipher_suite);
    if (suite && !need_freeipmi(config.workarounds))
        return std::make_unique<rmcpplus_session>(config, *suite, deadline);
    return std::make_unique<freeipmi_session>(config);
}

} // namespace chassisd
