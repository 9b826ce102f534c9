#include "crypto/primitives/KeyPair.h"

#include "crypto/primitives/LibraryFailure.h"

#include <openssl/core_names.h>
#include <openssl/ec.h>
#include <openssl/err.h>
#include <openssl/pem.h>
#include <openssl/x509.h>

#include <algorithm>
#include <functional>

namespace crypto
{

namespace
{

using files::ErrorCode;
using files::fail;
using files::Result;
using files::SecretBytes;

struct KeyType {
    std::string_view name;
    const char *algorithm;
    const char *curve;  ///< null for what isn't on a chosen curve
    int bits;           ///< of an RSA key
};

constexpr KeyType kTypes[] = {
    {"rsa-2048", "RSA", nullptr, 2048},
    {"rsa-3072", "RSA", nullptr, 3072},
    {"ecdsa-p256", "EC", "P-256", 0},
    {"ecdsa-p384", "EC", "P-384", 0},
    {"ecdsa-brainpoolP256t1", "EC", "brainpoolP256t1", 0},
    {"ed25519", "ED25519", nullptr, 0},
    {"x25519", "X25519", nullptr, 0},
};

constexpr std::size_t kRawBytes = 32;

EvpKey makeKey(const KeyType &type)
{
    if (type.bits != 0) {
        return EvpKey(EVP_RSA_gen(static_cast<unsigned>(type.bits)));
    }
    if (type.curve != nullptr) {
        return EvpKey(EVP_EC_gen(type.curve));
    }
    return EvpKey(EVP_PKEY_Q_keygen(nullptr, nullptr, type.algorithm));
}

int refusePhrase(char *, int, int, void *)
{
    return -1;
}

/// What `encode` writes; a memory BIO wipes what it held.
Result<SecretBytes> encoded(const char *what, const std::function<int(BIO *)> &encode)
{
    const Bio memory(BIO_new(BIO_s_mem()));
    if (!memory || encode(memory.get()) != 1) {
        return libraryFailure(what);
    }
    SecretBytes bytes(BIO_pending(memory.get()));
    if (BIO_read(memory.get(), bytes.data(), static_cast<int>(bytes.size())) !=
        static_cast<int>(bytes.size())) {
        return libraryFailure(what);
    }
    return bytes;
}

}  // namespace

std::vector<std::string_view> KeyPair::types()
{
    std::vector<std::string_view> names;
    for (const KeyType &type : kTypes) {
        names.push_back(type.name);
    }
    return names;
}

Result<KeyPair> KeyPair::make(std::string_view type)
{
    const auto *const known = std::find_if(std::begin(kTypes), std::end(kTypes),
                                           [type](const KeyType &t) { return t.name == type; });
    if (known == std::end(kTypes)) {
        return fail(ErrorCode::BadValue, "'" + std::string(type) + "' is no key type");
    }
    EvpKey key = makeKey(*known);
    if (!key) {
        return libraryFailure("making a key");
    }
    return KeyPair(std::move(key));
}

Result<KeyPair> KeyPair::readPrivate(ByteView pem)
{
    const Bio memory(BIO_new_mem_buf(pem.data(), static_cast<int>(pem.size())));
    EvpKey key(memory ? PEM_read_bio_PrivateKey(memory.get(), nullptr, &refusePhrase, nullptr)
                      : nullptr);
    ERR_clear_error();
    if (!key) {
        return fail(ErrorCode::BadValue, "no private key without a pass phrase in PEM form");
    }
    return KeyPair(std::move(key));
}

Result<SecretBytes> KeyPair::privatePem() const
{
    return encoded("writing a private key", [this](BIO *out) {
        return PEM_write_bio_PKCS8PrivateKey(out, m_key.get(), nullptr, nullptr, 0, nullptr,
                                             nullptr);
    });
}

Result<SecretBytes> KeyPair::privateDer(bool minimal) const
{
    const bool isCurve = EVP_PKEY_get_base_id(m_key.get()) == EVP_PKEY_EC;
    if (isCurve && EVP_PKEY_set_int_param(m_key.get(), OSSL_PKEY_PARAM_EC_INCLUDE_PUBLIC,
                                          minimal ? 0 : 1) != 1) {
        return libraryFailure("writing a private key");
    }
    return encoded("writing a private key", [this](BIO *out) {
        return i2d_PKCS8PrivateKey_bio(out, m_key.get(), nullptr, nullptr, 0, nullptr, nullptr);
    });
}

Result<SecretBytes> KeyPair::rawPrivate() const
{
    SecretBytes raw(kRawBytes);
    std::size_t size = raw.size();
    const auto tooLong = [] {
        ERR_clear_error();
        return fail(ErrorCode::BadValue, "the private part of this key isn't 32 bytes long");
    };
    if (EVP_PKEY_get_base_id(m_key.get()) == EVP_PKEY_EC) {
        BIGNUM *found = nullptr;
        EVP_PKEY_get_bn_param(m_key.get(), OSSL_PKEY_PARAM_PRIV_KEY, &found);
        const SecretNumber number(found);
        if (!number || EVP_PKEY_get_bits(m_key.get()) > static_cast<int>(8 * kRawBytes) ||
            BN_bn2binpad(number.get(), raw.data(), static_cast<int>(kRawBytes)) < 0) {
            return tooLong();
        }
    } else if (EVP_PKEY_get_raw_private_key(m_key.get(), raw.data(), &size) != 1 ||
               size != kRawBytes) {
        return tooLong();
    }
    return raw;
}

Result<std::string> KeyPair::publicPem() const
{
    return encoded("writing a public key",
                   [this](BIO *out) { return PEM_write_bio_PUBKEY(out, m_key.get()); })
        .map([](const SecretBytes &pem) {
            return std::string(pem.span().begin(), pem.span().end());
        });
}

Result<std::vector<std::uint8_t>> KeyPair::publicDer() const
{
    return encoded("writing a public key",
                   [this](BIO *out) { return i2d_PUBKEY_bio(out, m_key.get()); })
        .map([](const SecretBytes &der) {
            return std::vector<std::uint8_t>(der.span().begin(), der.span().end());
        });
}

}  // namespace crypto
