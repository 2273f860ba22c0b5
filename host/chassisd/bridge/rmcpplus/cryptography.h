// What keeps a session's packets secret and genuine, as libgcrypt does it.
#ifndef RUK_HOST_CHASSISD_BRIDGE_RMCPPLUS_CRYPTOGRAPHY_H
#define RUK_HOST_CHASSISD_BRIDGE_RMCPPLUS_CRYPTOGRAPHY_H

#include <gcrypt.h>
#include <memory>

#include "chassisd/blade.h"

namespace chassisd::rmcpplus
{

// Signs with a key: an HMAC, or as many bytes of its beginning as are wanted.
class signer
{
  public:
    // `hash` is one of libgcrypt's GCRY_MAC_HMAC_*.
    signer(int hash, const bytes &key);

    bytes signature_of(const uint8_t *data, size_t size, size_t length);
    bool is_genuine(const uint8_t *data, size_t size, const uint8_t *signature, size_t length);

  private:
    struct closer {
        void operator()(gcry_mac_hd_t handle) const { gcry_mac_close(handle); }
    };

    std::unique_ptr<gcry_mac_handle, closer> handle_;
};

// The whole HMAC of a text.
bytes hmac(int hash, const bytes &key, const bytes &text);

// AES-128 in CBC mode, in place, whole blocks at a time.
class block_cipher
{
  public:
    static constexpr size_t block = 16; // of initial vector and key, too

    explicit block_cipher(const bytes &key); // whose first 16 bytes are used

    void encrypt(const uint8_t *initial, uint8_t *data, size_t size);
    void decrypt(const uint8_t *initial, uint8_t *data, size_t size);

  private:
    struct closer {
        void operator()(gcry_cipher_hd_t handle) const { gcry_cipher_close(handle); }
    };

    std::unique_ptr<gcry_cipher_handle, closer> handle_;
};

// Bytes that never come again and that nobody can foretell, to start a session with.
bytes unforeseeable(size_t count);

// Has the process's cryptography set up before several threads use it; must come first.
void set_up_cryptography();

} // namespace chassisd::rmcpplus

#endif
