#include "chassisd/bridge/rmcpplus/cryptography.h"

#include <freeipmi/freeipmi.h>
#include <stdexcept>

namespace chassisd::rmcpplus
{

namespace
{

// With keys and blocks of the right sizes libgcrypt can only be out of memory.
void check(gcry_error_t error)
{
    if (error != 0)
        throw std::runtime_error(gcry_strerror(error));
}

gcry_mac_hd_t opened_mac(int hash)
{
    gcry_mac_hd_t handle;
    check(gcry_mac_open(&handle, hash, 0, nullptr));
    return handle;
}

gcry_cipher_hd_t opened_cipher()
{
    gcry_cipher_hd_t handle;
    check(gcry_cipher_open(&handle, GCRY_CIPHER_AES128, GCRY_CIPHER_MODE_CBC, 0));
    return handle;
}

} // namespace

signer::signer(int hash, const bytes &key) : handle_(opened_mac(hash))
{
    check(gcry_mac_setkey(handle_.get(), key.data(), key.size()));
}

bytes signer::signature_of(const uint8_t *data, size_t size, size_t length)
{
    bytes signature(length);
    check(gcry_mac_reset(handle_.get()));
    check(gcry_mac_write(handle_.get(), data, size));
    check(gcry_mac_read(handle_.get(), signature.data(), &length));
    return signature;
}

// Takes the same time wherever the two differ.
bool signer::is_genuine(const uint8_t *data, size_t size, const uint8_t *signature, size_t length)
{
    check(gcry_mac_reset(handle_.get()));
    check(gcry_mac_write(handle_.get(), data, size));
    return gcry_mac_verify(handle_.get(), signature, length) == 0;
}

bytes hmac(int hash, const bytes &key, const bytes &text)
{
    return signer(hash, key).signature_of(text.data(), text.size(), gcry_mac_get_algo_maclen(hash));
}

block_cipher::block_cipher(const bytes &key) : handle_(opened_cipher())
{
    check(gcry_cipher_setkey(handle_.get(), key.data(), block));
}

void block_cipher::encrypt(const uint8_t *initial, uint8_t *data, size_t size)
{
    check(gcry_cipher_setiv(handle_.get(), initial, block));
    check(gcry_cipher_encrypt(handle_.get(), data, size, nullptr, 0));
}

void block_cipher::decrypt(const uint8_t *initial, uint8_t *data, size_t size)
{
    check(gcry_cipher_setiv(handle_.get(), initial, block));
    check(gcry_cipher_decrypt(handle_.get(), data, size, nullptr, 0));
}

bytes unforeseeable(size_t count)
{
    bytes drawn(count);
    gcry_randomize(drawn.data(), count, GCRY_STRONG_RANDOM);
    return drawn;
}

// FreeIPMI sets libgcrypt up whenever it opens a session, without a lock. All but the first time it
// only finds things as they are, so it is the first that must be one thread's.
void set_up_cryptography()
{
    static const bool ready = ipmi_rmcpplus_init() == 0;
    if (!ready)
        throw std::bad_alloc();
}

} // namespace chassisd::rmcpplus
