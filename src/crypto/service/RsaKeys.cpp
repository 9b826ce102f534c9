#include "crypto/primitives/Handles.h"
#include "crypto/service/CipherChoice.h"
#include "crypto/service/Crypto.h"
#include "crypto/service/KeyErrors.h"
#include "crypto/service/Reporting.h"
#include "crypto/service/StandardOutput.h"

#include <cstdio>
#include <cstring>
#include <openssl/core_names.h>
#include <openssl/err.h>
#include <openssl/rsa.h>

using report::Level;

namespace
{

constexpr int kRsaBits = 4096;

/// Checks the pair as RSA_check_key did. @return 1, or -1 with the faults reported or printed
int checkPair(EVP_PKEY *key)
{
    const crypto::KeyContext context(key != nullptr ? EVP_PKEY_CTX_new(key, nullptr) : nullptr);
    const int checked = context ? EVP_PKEY_check(context.get()) : -1;
    if (checked == 0) {
        crypto::reportKeyErrors();
        return -1;
    }
    if (checked == 1) {
        crypto::tell(Level::Information, L"RSA key ok \n");
    }
    if (checked < 0 || ERR_peek_error() != 0) {
        ERR_print_errors_fp(stderr);
        return -1;
    }
    return 1;
}

void printNumber(const EVP_PKEY *key, const char *label, const char *parameter)
{
    BIGNUM *found = nullptr;
    crypto::printText(label);
    if (EVP_PKEY_get_bn_param(key, parameter, &found) != 1) {
        ERR_clear_error();
        crypto::printText(" = NULL\n");
        return;
    }
    const crypto::SecretNumber number(found);
    char *digits = BN_bn2hex(number.get());
    crypto::printText(" = 0x");
    crypto::printText(digits != nullptr ? digits : "");
    crypto::printText("\n");
    OPENSSL_clear_free(digits, digits != nullptr ? std::strlen(digits) : 0);
}

}  // namespace

int Crypto::KeyGen(evp_pkey_st **key)
{
    ERR_clear_error();
    const crypto::KeyContext context(EVP_PKEY_CTX_new_id(EVP_PKEY_RSA, nullptr));
    if (!context || EVP_PKEY_keygen_init(context.get()) <= 0 ||
        EVP_PKEY_CTX_set_rsa_keygen_bits(context.get(), kRsaBits) <= 0) {
        return 0;
    }
    if (EVP_PKEY_keygen(context.get(), key) != 1) {
        ERR_print_errors_fp(stderr);
    }
    return checkPair(*key);
}

int Crypto::GenerateKeys(unsigned char *prvPath, unsigned char *pubPath, unsigned char *hashPath,
                         unsigned char *password, CIHERTYPE cipherType)
{
    const EVP_CIPHER *cipher = crypto::pickCipher(cipherType);
    if (cipher == nullptr) {
        return -1;
    }
    // No error, but its level is part of what callers see.
    crypto::tell(Level::Error, L"Generating RSA private key... \n");
    std::fflush(stdout);
    EVP_PKEY *made = nullptr;
    const int generated = KeyGen(&made);
    const crypto::EvpKey key(made);
    if (generated != 1) {
        return crypto::refuse(L"Error: fail occured while generating RSA private key\n");
    }
    crypto::tell(Level::Information, L"Saving RSA private key...\n");
    if (SaveEncPrvKey(prvPath, key.get(), password, cipher) != 1) {
        return crypto::refuse(L"Error: creating PEM file fails\n");
    }
    crypto::tell(Level::Information, L"Private key PEM file created\n");
    if (SavePubKey(pubPath, key.get()) != 1) {
        return crypto::refuse(L"Error: creating Pubkey.pem fails\n");
    }
    crypto::tell(Level::Information, L"Public key PEM file created\n");
    SaveHashPubKey(key.get(), hashPath);
    crypto::tell(Level::Information, L"Key generation done\n");
    std::fflush(stdout);
    return 1;
}

int Crypto::DisplayRSAKeyParams(evp_pkey_st *key)
{
    const bool isRsa =
        key != nullptr && (EVP_PKEY_is_a(key, "RSA") == 1 || EVP_PKEY_is_a(key, "RSA-PSS") == 1);
    if (isRsa) {
        printNumber(key, "p", OSSL_PKEY_PARAM_RSA_FACTOR1);
        printNumber(key, "q", OSSL_PKEY_PARAM_RSA_FACTOR2);
        printNumber(key, "n", OSSL_PKEY_PARAM_RSA_N);
        printNumber(key, "e", OSSL_PKEY_PARAM_RSA_E);
        printNumber(key, "d", OSSL_PKEY_PARAM_RSA_D);
    } else {
        crypto::printText("Error: EVP_PKEY_get1_RSA failed\n");
    }
    std::fflush(stdout);
    return isRsa ? 1 : -1;
}
