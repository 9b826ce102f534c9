#include "crypto/service/EC_Crypto.h"

#include "crypto/primitives/Handles.h"
#include "crypto/service/CipherChoice.h"
#include "crypto/service/Reporting.h"

#include <QByteArray>

#include <cstdio>
#include <cstring>
#include <openssl/ec.h>
#include <openssl/err.h>

using report::Level;

namespace
{

constexpr int kPrime256v1 = NID_X9_62_prime256v1;
constexpr int kBrainpoolP256t1 = NID_brainpoolP256t1;

/// SubjectPublicKeyInfo in front of X and Y, the point-form byte included.
unsigned long prefixBytes(int curve)
{
    return curve == kBrainpoolP256t1 ? 28 : 27;
}

/// @return false when the key is too short to hold a prefix
bool cutPrefix(int curve, unsigned char *der, unsigned long *size)
{
    const unsigned long prefix = prefixBytes(curve);
    if (*size < prefix) {
        return false;
    }
    *size -= prefix;
    std::memmove(der, der + prefix, *size);
    return true;
}

/// Only public keys come here.
void dump(const unsigned char *bytes, unsigned long size)
{
    crypto::tell(Level::Dump, L"public key in DER:");
    const QByteArray shown =
        QByteArray::fromRawData(reinterpret_cast<const char *>(bytes), static_cast<int>(size));
    crypto::tell(Level::Dump, QString::fromLatin1(shown.toHex(' ')).toStdWString().c_str());
}

}  // namespace

EC_Crypto::EC_Crypto() = default;

EC_Crypto::EC_Crypto(int curve) : curveNID(curve) {}

int EC_Crypto::SetCurveNID(int curve)
{
    curveNID = curve;
    int result = 1;
    if (curve == kPrime256v1) {
        crypto::tell(Level::Information, L"Prime256v1 curve is selected. \n");
    } else if (curve == kBrainpoolP256t1) {
        crypto::tell(Level::Information, L"brainpoolP256t1 curve is selected.\n");
    } else {
        result = crypto::refuse(L"Unsupported curve NID!\n");
    }
    std::fflush(stdout);
    return result;
}

int EC_Crypto::KeyGen(evp_pkey_st **key)
{
    ERR_clear_error();
    const crypto::KeyContext choice(EVP_PKEY_CTX_new_id(EVP_PKEY_EC, nullptr));
    EVP_PKEY *made = nullptr;
    if (!choice || EVP_PKEY_paramgen_init(choice.get()) != 1 ||
        EVP_PKEY_CTX_set_ec_paramgen_curve_nid(choice.get(), curveNID) != 1 ||
        // Files carry the curve's name, not its parameters.
        EVP_PKEY_CTX_set_ec_param_enc(choice.get(), OPENSSL_EC_NAMED_CURVE) != 1 ||
        EVP_PKEY_paramgen(choice.get(), &made) != 1) {
        return 0;
    }
    const crypto::EvpKey parameters(made);
    const crypto::KeyContext context(EVP_PKEY_CTX_new(parameters.get(), nullptr));
    if (!context || EVP_PKEY_keygen_init(context.get()) != 1) {
        return 0;
    }
    if (EVP_PKEY_keygen(context.get(), key) != 1) {
        ERR_print_errors_fp(stderr);
        return 0;
    }
    const crypto::KeyContext check(EVP_PKEY_CTX_new(*key, nullptr));
    return check && EVP_PKEY_check(check.get()) == 1 ? 1 : 0;
}

int EC_Crypto::GetPubKeyBin(evp_pkey_st *key, unsigned char **out, unsigned long *outLen)
{
    unsigned char *der = nullptr;
    if (GetPubKeyDER(key, &der, outLen) != 1) {
        return -1;
    }
    crypto::Buffer owner(der);
    dump(der, *outLen);
    if (!cutPrefix(curveNID, der, outLen)) {
        return -1;
    }
    *out = owner.release();
    return 1;
}

int EC_Crypto::GetPubKeyBin(unsigned char *path, unsigned char **out, unsigned long *outLen)
{
    EVP_PKEY *found = nullptr;
    if (ReadPubKey(path, &found) != 1) {
        return crypto::refuse(L"Reading public key fails \n");
    }
    const crypto::EvpKey key(found);
    unsigned char *der = nullptr;
    if (GetPubKeyDER(key.get(), &der, outLen) != 1) {
        return -1;
    }
    crypto::Buffer owner(der);
    if (!cutPrefix(curveNID, der, outLen)) {
        return -1;
    }
    dump(der, *outLen);
    *out = owner.release();
    return 1;
}

int EC_Crypto::GetPubKeyBinDer(unsigned char *path, unsigned char **out, unsigned long *outLen)
{
    EVP_PKEY *found = nullptr;
    if (ReadPubKey(path, &found) != 1) {
        return crypto::refuse(L"Reading public key fails \n", 0);
    }
    const crypto::EvpKey key(found);
    if (GetPubKeyDER(key.get(), out, outLen) != 1) {
        return 0;
    }
    dump(*out, *outLen);
    return 1;
}

int EC_Crypto::GenerateKeys(unsigned char *prvPath, unsigned char *pubPath, unsigned char *hashPath,
                            unsigned char *password, CIHERTYPE cipherType)
{
    const EVP_CIPHER *cipher = crypto::pickCipher(cipherType);
    if (cipher == nullptr) {
        return -1;
    }
    if (curveNID == kPrime256v1) {
        crypto::tell(Level::Information, L"Generating Prime256v1 keys... \n");
    } else if (curveNID == kBrainpoolP256t1) {
        crypto::tell(Level::Information, L"Generating brainpoolP256t1 keys... \n");
    } else {
        std::fflush(stdout);
        return crypto::refuse(L"Unsupported curve NID!\n");
    }
    EVP_PKEY *made = nullptr;
    const int generated = KeyGen(&made);
    const crypto::EvpKey key(made);
    if (generated != 1) {
        return crypto::refuse(L"Error occured while generating Keypair! \n");
    }
    if (SaveEncPrvKey(prvPath, key.get(), password, cipher) != 1) {
        return crypto::refuse(L"Error occured while creating PEM file!\n");
    }
    crypto::tell(Level::Information, L"Private key PEM file created \n");
    if (SavePubKey(pubPath, key.get()) != 1) {
        return crypto::refuse(L"Error occured while creating public key PEM file!\n");
    }
    crypto::tell(Level::Information, L"Public key PEM file created \n");
    if (SaveHashPubKey(key.get(), hashPath) != 1) {
        return crypto::refuse(L"Error occured while creating public key hash file!\n");
    }
    crypto::tell(Level::Information, L"public key hash file created \n");
    std::fflush(stdout);
    return 1;
}

void EC_Crypto::bn_Copy(unsigned char *destination, const unsigned char *source,
                        unsigned int length)
{
    for (unsigned int i = 0; i < length; ++i) {
        destination[i] = source[length - 1 - i];
    }
}
