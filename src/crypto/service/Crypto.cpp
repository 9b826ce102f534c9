#include "crypto/service/Crypto.h"

#include "report/Level.h"

#include <openssl/crypto.h>

Crypto::Crypto()
{
    OPENSSL_init_crypto(OPENSSL_INIT_LOAD_CRYPTO_STRINGS, nullptr);
    OPENSSL_init_crypto(OPENSSL_INIT_ADD_ALL_CIPHERS | OPENSSL_INIT_ADD_ALL_DIGESTS, nullptr);
    OPENSSL_init_crypto(OPENSSL_INIT_ADD_ALL_DIGESTS, nullptr);
    OPENSSL_init_crypto(OPENSSL_INIT_LOAD_CONFIG, nullptr);
}

// Out of line, so that the symbol exists for those who look it up by name.
Crypto::~Crypto() = default;

int Crypto::GetPubKeyBin(evp_pkey_st *, unsigned char **, unsigned long *)
{
    report::message(report::Level::Error, L"Not supported operation\n");
    return 0;
}

int Crypto::Buffer_Cleanup(unsigned char *buffer)
{
    if (buffer == nullptr) {
        return 0;
    }
    OPENSSL_free(buffer);
    return 1;
}
