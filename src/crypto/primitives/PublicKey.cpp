#include "crypto/primitives/PublicKey.h"

#include "crypto/primitives/KeyPair.h"
#include "crypto/primitives/LibraryFailure.h"
#include "crypto/primitives/PssContext.h"

#include <openssl/core_names.h>
#include <openssl/ec.h>
#include <openssl/err.h>
#include <openssl/pem.h>
#include <openssl/rsa.h>

namespace crypto
{

using files::ErrorCode;
using files::fail;
using files::Result;

namespace
{

constexpr std::size_t kX25519Bytes = 32;
constexpr std::size_t kPointBytes = 65;
constexpr std::uint8_t kUncompressed = 4;

EvpKey pointKey(ByteView raw)
{
    OSSL_PARAM parameters[] = {
        OSSL_PARAM_construct_utf8_string(OSSL_PKEY_PARAM_GROUP_NAME,
                                         const_cast<char *>("prime256v1"), 0),
        OSSL_PARAM_construct_octet_string(OSSL_PKEY_PARAM_PUB_KEY,
                                          const_cast<std::uint8_t *>(raw.data()), raw.size()),
        OSSL_PARAM_construct_end()};
    const KeyContext context(EVP_PKEY_CTX_new_from_name(nullptr, "EC", nullptr));
    EVP_PKEY *made = nullptr;
    if (!context || EVP_PKEY_fromdata_init(context.get()) != 1 ||
        EVP_PKEY_fromdata(context.get(), &made, EVP_PKEY_PUBLIC_KEY, parameters) != 1) {
        return nullptr;
    }
    return EvpKey(made);
}

}  // namespace

const char *kindName(KeyKind kind)
{
    static const char *const names[] = {"RSA-2048", "RSA-3072", "ECDSA-P256",
                                        "Ed25519",  "X25519",   "another kind"};
    return names[static_cast<int>(kind)];
}

Result<PublicKey> PublicKey::read(ByteView pem)
{
    const Bio memory(BIO_new_mem_buf(pem.data(), static_cast<int>(pem.size())));
    EvpKey key(memory ? PEM_read_bio_PUBKEY(memory.get(), nullptr, nullptr, nullptr) : nullptr);
    ERR_clear_error();
    if (key) {
        return PublicKey(std::move(key));
    }
    if (const auto pair = KeyPair::readPrivate(pem)) {
        return pair->publicHalf();
    }
    return fail(ErrorCode::BadValue, "no public key in PEM form");
}

Result<PublicKey> PublicKey::fromRaw(KeyKind kind, ByteView raw)
{
    EvpKey key;
    if (kind == KeyKind::X25519 && raw.size() == kX25519Bytes && (raw.back() & 0x80) == 0) {
        key.reset(EVP_PKEY_new_raw_public_key(EVP_PKEY_X25519, nullptr, raw.data(), raw.size()));
    } else if (kind == KeyKind::EcdsaP256 && raw.size() == kPointBytes &&
               raw.front() == kUncompressed) {
        key = pointKey(raw);
    }
    ERR_clear_error();
    if (!key) {
        return fail(ErrorCode::BadValue, std::string("it is no key for ") + kindName(kind));
    }
    return PublicKey(std::move(key));
}

PublicKey PublicKey::share() const
{
    EVP_PKEY_up_ref(m_key.get());
    return PublicKey(EvpKey(m_key.get()));
}

KeyKind PublicKey::kind() const
{
    char group[80] = "";
    switch (EVP_PKEY_get_base_id(m_key.get())) {
    case EVP_PKEY_RSA:
        return EVP_PKEY_get_bits(m_key.get()) == 2048   ? KeyKind::Rsa2048
               : EVP_PKEY_get_bits(m_key.get()) == 3072 ? KeyKind::Rsa3072
                                                        : KeyKind::Other;
    case EVP_PKEY_EC:
        EVP_PKEY_get_group_name(m_key.get(), group, sizeof group, nullptr);
        ERR_clear_error();
        return std::string_view(group) == "prime256v1" ? KeyKind::EcdsaP256 : KeyKind::Other;
    case EVP_PKEY_ED25519:
        return KeyKind::Ed25519;
    case EVP_PKEY_X25519:
        return KeyKind::X25519;
    default:
        return KeyKind::Other;
    }
}

Result<std::vector<std::uint8_t>> PublicKey::bootDer() const
{
    unsigned char *encoded = nullptr;
    // Of an RSA key this is PKCS#1; of other kinds it would be the bare point.
    const bool isRsa = EVP_PKEY_get_base_id(m_key.get()) == EVP_PKEY_RSA;
    const int size =
        isRsa ? i2d_PublicKey(m_key.get(), &encoded) : i2d_PUBKEY(m_key.get(), &encoded);
    const Buffer der(encoded);
    if (size <= 0) {
        return libraryFailure("writing a public key");
    }
    return std::vector<std::uint8_t>(der.get(), der.get() + size);
}

Result<std::vector<std::uint8_t>> PublicKey::raw() const
{
    std::size_t size = kX25519Bytes;
    std::vector<std::uint8_t> bytes(kPointBytes);
    if (kind() == KeyKind::X25519
            ? EVP_PKEY_get_raw_public_key(m_key.get(), bytes.data(), &size) == 1
            : kind() == KeyKind::EcdsaP256 &&
                  EVP_PKEY_get_octet_string_param(m_key.get(), OSSL_PKEY_PARAM_ENCODED_PUBLIC_KEY,
                                                  bytes.data(), bytes.size(), &size) == 1) {
        bytes.resize(size);
        return bytes;
    }
    return libraryFailure("writing a public key");
}

Result<bool> PublicKey::verify(const Digest &digest, ByteView signature) const
{
    bool fits = false;
    switch (kind()) {
    case KeyKind::Ed25519: {
        const DigestContext context(EVP_MD_CTX_new());
        fits = context &&
               EVP_DigestVerifyInit(context.get(), nullptr, nullptr, nullptr, m_key.get()) == 1 &&
               EVP_DigestVerify(context.get(), signature.data(), signature.size(), digest.data(),
                                digest.size()) == 1;
        break;
    }
    case KeyKind::Rsa2048:
    case KeyKind::Rsa3072:
    case KeyKind::EcdsaP256: {
        const KeyContext context(EVP_PKEY_CTX_new(m_key.get(), nullptr));
        if (!context || EVP_PKEY_verify_init(context.get()) != 1 || !usePss(context.get())) {
            return libraryFailure("checking a signature");
        }
        fits = EVP_PKEY_verify(context.get(), signature.data(), signature.size(), digest.data(),
                               digest.size()) == 1;
        break;
    }
    default:
        break;
    }
    ERR_clear_error();
    return fits;
}

Result<std::vector<std::uint8_t>> PublicKey::encrypt(ByteView secret) const
{
    if (kind() != KeyKind::Rsa2048 && kind() != KeyKind::Rsa3072) {
        return fail(ErrorCode::BadValue,
                    std::string("a key of the kind ") + kindName(kind()) + " encrypts nothing");
    }
    std::vector<std::uint8_t> text(static_cast<std::size_t>(EVP_PKEY_get_size(m_key.get())));
    std::size_t size = text.size();
    const KeyContext context(EVP_PKEY_CTX_new(m_key.get(), nullptr));
    if (!context || EVP_PKEY_encrypt_init(context.get()) != 1 || !useOaep(context.get()) ||
        EVP_PKEY_encrypt(context.get(), text.data(), &size, secret.data(), secret.size()) != 1 ||
        size != text.size()) {
        return libraryFailure("RSAES-OAEP");
    }
    return text;
}

}  // namespace crypto
