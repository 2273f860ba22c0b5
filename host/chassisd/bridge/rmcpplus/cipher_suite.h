// The cipher suites of IPMI 2.0 that encrypt and sign with what is thought safe, or was.
#ifndef RUK_HOST_CHASSISD_BRIDGE_RMCPPLUS_CIPHER_SUITE_H
#define RUK_HOST_CHASSISD_BRIDGE_RMCPPLUS_CIPHER_SUITE_H

#include <cstddef>
#include <cstdint>

namespace chassisd::rmcpplus
{

struct cipher_suite {
    uint8_t number;
    uint8_t authentication; // the algorithms, as IPMI numbers them
    uint8_t integrity;
    uint8_t confidentiality;
    int hash;                // libgcrypt's name of what the first two are
    size_t signature_length; // bytes of it under each packet
};

// Null for any other.
const cipher_suite *find_cipher_suite(uint8_t number);

} // namespace chassisd::rmcpplus

#endif
