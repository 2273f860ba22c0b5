#include "chassisd/bridge/rmcpplus/cipher_suite.h"

#include <algorithm>
#include <gcrypt.h>
#include <iterator>

namespace chassisd::rmcpplus
{

namespace
{

constexpr cipher_suite suites[] = {
    {3, 1, 1, 1, GCRY_MAC_HMAC_SHA1, 12},
    {17, 3, 4, 1, GCRY_MAC_HMAC_SHA256, 16},
};

} // namespace

const cipher_suite *find_cipher_suite(uint8_t number)
{
    const auto found =
        std::find_if(std::begin(suites), std::end(suites),
                     [&](const cipher_suite &each) { return each.number == number; });
    return found == std::end(suites) ? nullptr : found;
}

} // namespace chassisd::rmcpplus
