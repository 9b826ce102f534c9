#include "crypto/primitives/Digests.h"

#include "crypto/primitives/LibraryFailure.h"

#include <climits>
#include <openssl/core_names.h>
#include <openssl/kdf.h>
#include <openssl/params.h>
#include <openssl/rand.h>

namespace crypto
{

namespace
{

using MacHandle = std::unique_ptr<EVP_MAC, files::FreeWith<&EVP_MAC_free>>;
using KdfHandle = std::unique_ptr<EVP_KDF, files::FreeWith<&EVP_KDF_free>>;
using KdfContext = std::unique_ptr<EVP_KDF_CTX, files::FreeWith<&EVP_KDF_CTX_free>>;

/// Parameters take a plain pointer although inputs are only read.
OSSL_PARAM octets(const char *name, ByteView bytes)
{
    return OSSL_PARAM_construct_octet_string(name, const_cast<std::uint8_t *>(bytes.data()),
                                             bytes.size());
}

OSSL_PARAM sha256Name()
{
    static char name[] = "SHA256";
    return OSSL_PARAM_construct_utf8_string(OSSL_MAC_PARAM_DIGEST, name, 0);
}

}  // namespace

files::Result<files::SecretBytes> hkdfSha256(ByteView inputKey, ByteView info, std::size_t bytes)
{
    const KdfHandle kdf(EVP_KDF_fetch(nullptr, "HKDF", nullptr));
    const KdfContext context(kdf ? EVP_KDF_CTX_new(kdf.get()) : nullptr);
    const std::array parameters = {sha256Name(), octets(OSSL_KDF_PARAM_KEY, inputKey),
                                   octets(OSSL_KDF_PARAM_INFO, info), OSSL_PARAM_construct_end()};
    files::SecretBytes derived(bytes);
    if (!context ||
        EVP_KDF_derive(context.get(), derived.data(), derived.size(), parameters.data()) != 1) {
        return libraryFailure("HKDF-SHA-256");
    }
    return derived;
}

HmacSha256::HmacSha256(ByteView key)
{
    const MacHandle mac(EVP_MAC_fetch(nullptr, "HMAC", nullptr));
    m_context.reset(mac ? EVP_MAC_CTX_new(mac.get()) : nullptr);
    const std::array parameters = {sha256Name(), OSSL_PARAM_construct_end()};
    m_ok =
        m_context && EVP_MAC_init(m_context.get(), key.data(), key.size(), parameters.data()) == 1;
}

void HmacSha256::update(ByteView bytes)
{
    m_ok = m_ok && EVP_MAC_update(m_context.get(), bytes.data(), bytes.size()) == 1;
}

files::Result<Digest> HmacSha256::finish()
{
    Digest digest{};
    std::size_t written = 0;
    if (!m_ok || EVP_MAC_final(m_context.get(), digest.data(), &written, digest.size()) != 1 ||
        written != digest.size()) {
        return libraryFailure("HMAC-SHA-256");
    }
    return digest;
}

Sha256::Sha256() : m_context(EVP_MD_CTX_new()), m_digest(EVP_MD_fetch(nullptr, "SHA256", nullptr))
{
}

void Sha256::begin()
{
    m_ok =
        m_context && m_digest && EVP_DigestInit_ex2(m_context.get(), m_digest.get(), nullptr) == 1;
}

void Sha256::update(ByteView bytes)
{
    m_ok = m_ok && EVP_DigestUpdate(m_context.get(), bytes.data(), bytes.size()) == 1;
}

files::Result<Digest> Sha256::finish()
{
    Digest digest{};
    unsigned int written = 0;
    if (!m_ok || EVP_DigestFinal_ex(m_context.get(), digest.data(), &written) != 1 ||
        written != digest.size()) {
        return libraryFailure("SHA-256");
    }
    return digest;
}

files::Result<Digest> sha256(ByteView bytes)
{
    Sha256 sha;
    sha.begin();
    sha.update(bytes);
    return sha.finish();
}

bool isEqual(ByteView one, ByteView other)
{
    return one.size() == other.size() && CRYPTO_memcmp(one.data(), other.data(), one.size()) == 0;
}

files::Result<void> fillRandom(std::span<std::uint8_t> out)
{
    if (out.size() > INT_MAX || RAND_priv_bytes(out.data(), static_cast<int>(out.size())) != 1) {
        return libraryFailure("random bytes");
    }
    return {};
}

}  // namespace crypto
