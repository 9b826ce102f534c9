#include "crypto/primitives/Handles.h"
#include "crypto/service/Crypto.h"
#include "crypto/service/Reporting.h"

#include <openssl/err.h>
#include <openssl/rsa.h>

using report::Level;

namespace
{

/// A fresh init forgets padding and digest, so both are set for signing and again for verifying.
int setPadding(EVP_PKEY_CTX *context)
{
    return EVP_PKEY_CTX_set_rsa_padding(context, RSA_PKCS1_PADDING);
}

int setDigest(EVP_PKEY_CTX *context)
{
    return EVP_PKEY_CTX_set_signature_md(context, EVP_sha256());
}

/// @return the refusal's text, or null once the context is ready to sign
const wchar_t *prepareSigning(EVP_PKEY_CTX *context)
{
    if (context == nullptr) {
        return L"Error: creating signing context fails\n";
    }
    if (EVP_PKEY_sign_init(context) < 1) {
        return L"Error: signing init fails\n";
    }
    if (setPadding(context) < 1) {
        return L"Error: RSA padding fails\n";
    }
    if (setDigest(context) < 1) {
        return L"Error: setting hash algo fails\n";
    }
    return nullptr;
}

}  // namespace

int Crypto::CalculateDigest(unsigned char *data, unsigned long dataLen, unsigned char *out,
                            unsigned long *outLen)
{
    ERR_clear_error();
    const crypto::DigestContext context(EVP_MD_CTX_new());
    unsigned int size = 0;
    if (!context || EVP_DigestInit_ex(context.get(), EVP_sha256(), nullptr) != 1 ||
        EVP_DigestUpdate(context.get(), data, dataLen) != 1 ||
        EVP_DigestFinal_ex(context.get(), out, &size) != 1) {
        return crypto::refuse(L"Error: unknown message digest \n");
    }
    *outLen = size;
    return 1;
}

int Crypto::sign(unsigned char *hash, unsigned long hashLen, unsigned char **sig,
                 unsigned long *sigLen, evp_pkey_st *key, bool verbose)
{
    ERR_clear_error();
    const crypto::KeyContext context(key != nullptr ? EVP_PKEY_CTX_new(key, nullptr) : nullptr);
    if (const wchar_t *refusal = prepareSigning(context.get())) {
        return crypto::refuse(refusal);
    }
    std::size_t size = 0;
    if (EVP_PKEY_sign(context.get(), nullptr, &size, hash, hashLen) < 1) {
        return crypto::refuse(L"Error: determining signing buffer length fails\n");
    }
    crypto::Buffer signature = crypto::allocateBuffer(size);
    if (!signature) {
        return crypto::refuse(L"Error: allocating signature buffer fails\n");
    }
    if (hash == nullptr) {
        return crypto::refuse(L"Error: unvalid hash pointer \n");
    }
    if (EVP_PKEY_sign(context.get(), signature.get(), &size, hash, hashLen) <= 0) {
        return crypto::refuse(L"Error: creating signature fails\n");
    }
    *sig = signature.release();
    *sigLen = size;
    if (verbose) {
        crypto::tell(Level::Information, L"signature generated\n");
        crypto::tell(Level::Information, L"signature verification: ");
    }
    EVP_PKEY_verify_init(context.get());
    setPadding(context.get());
    setDigest(context.get());
    // Only a plain "no" counts: callers rely on a verification that couldn't be done being a pass.
    if (EVP_PKEY_verify(context.get(), *sig, *sigLen, hash, hashLen) == 0) {
        crypto::tell(Level::Error, L"FAIL \n");
        return 0;
    }
    if (verbose) {
        crypto::tell(Level::Success, L"SUCCESS \n");
    }
    return 1;
}

int Crypto::GenerateSignature(unsigned char *data, unsigned long dataLen, unsigned char *prvPath,
                              unsigned char *password, unsigned char **sig, unsigned long *sigLen,
                              bool verbose, char *spare)
{
    crypto::tell(Level::Information, L"Reading Private Key File... \n");
    EVP_PKEY *found = nullptr;
    if (ReadEncPrvKey(prvPath, &found, password, spare) != 1) {
        return crypto::refuse(L"Error: reading private key file fails\n");
    }
    const crypto::EvpKey key(found);
    const crypto::Buffer digest = crypto::allocateBuffer(crypto::kDigestRoom);
    if (!digest) {
        return crypto::refuse(L"Error: allocating signature buffer fails \n");
    }
    unsigned long digestLen = 0;
    CalculateDigest(data, dataLen, digest.get(), &digestLen);
    if (sign(digest.get(), digestLen, sig, sigLen, key.get(), verbose) != 1) {
        return crypto::refuse(L"Error: signing fails \n");
    }
    std::fflush(stdout);
    return 1;
}
