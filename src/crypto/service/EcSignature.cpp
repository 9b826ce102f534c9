#include "crypto/primitives/Handles.h"
#include "crypto/service/EC_Crypto.h"
#include "crypto/service/Reporting.h"

#include <algorithm>
#include <openssl/ec.h>
#include <openssl/err.h>

using report::Level;

namespace
{

constexpr int kNumberBytes = 32;
constexpr std::size_t kRawBytes = 64;

using EcdsaNumbers = std::unique_ptr<ECDSA_SIG, files::FreeWith<&ECDSA_SIG_free>>;

/// Whether the signature is right, with the words for it. @return 1, 0 or -1
int verify(EVP_PKEY *key, const unsigned char *sig, std::size_t sigLen, const unsigned char *hash,
           std::size_t hashLen)
{
    const crypto::KeyContext context(EVP_PKEY_CTX_new(key, nullptr));
    int verified = -1;
    if (context && EVP_PKEY_verify_init(context.get()) == 1) {
        verified = EVP_PKEY_verify(context.get(), sig, sigLen, hash, hashLen);
    }
    if (verified == 1) {
        crypto::tell(Level::Success, L"SUCCESS \n");
        return 1;
    }
    crypto::tell(Level::Error, verified == 0 ? L"Incorrect signature!\n"
                                             : L"Error occured during signature verification!\n");
    return verified == 0 ? 0 : -1;
}

/// Turns DER into r and s, over the DER itself. @return false when a number is too long
bool makeRaw(unsigned char *sig, std::size_t sigLen)
{
    const unsigned char *at = sig;
    const EcdsaNumbers numbers(d2i_ECDSA_SIG(nullptr, &at, static_cast<long>(sigLen)));
    return numbers &&
           BN_bn2binpad(ECDSA_SIG_get0_r(numbers.get()), sig, kNumberBytes) == kNumberBytes &&
           BN_bn2binpad(ECDSA_SIG_get0_s(numbers.get()), sig + kNumberBytes, kNumberBytes) ==
               kNumberBytes;
}

}  // namespace

int EC_Crypto::sign(unsigned char *hash, unsigned long hashLen, unsigned char **sig,
                    unsigned long *sigLen, evp_pkey_st *key)
{
    ERR_clear_error();
    const int longest =
        key != nullptr && EVP_PKEY_get_base_id(key) == EVP_PKEY_EC ? EVP_PKEY_get_size(key) : 0;
    if (longest <= 0) {
        return crypto::refuse(L"Error: determining signing buffer length fails \n");
    }
    // On a small curve DER may be shorter than the raw form that replaces it.
    std::size_t size = std::max(static_cast<std::size_t>(longest), kRawBytes);
    crypto::Buffer signature = crypto::allocateBuffer(size);
    if (!signature) {
        return crypto::refuse(L"Error: allocating signature buffer fails \n");
    }
    if (hash == nullptr) {
        return crypto::refuse(L"Error: unvalid hash pointer \n");
    }
    const crypto::KeyContext context(EVP_PKEY_CTX_new(key, nullptr));
    if (!context || EVP_PKEY_sign_init(context.get()) != 1 ||
        EVP_PKEY_sign(context.get(), signature.get(), &size, hash, hashLen) != 1) {
        return crypto::refuse(L"Error: Creating ECDSA signature fails!\n");
    }
    *sig = signature.release();
    *sigLen = size;
    crypto::tell(Level::Information, L"ECDSA signature generated.\n");
    crypto::tell(Level::Information, L"signature verification: ");
    const int verified = verify(key, *sig, *sigLen, hash, hashLen);
    if (!makeRaw(*sig, *sigLen)) {
        return -1;
    }
    *sigLen = kRawBytes;
    return verified;
}
