#include "preparation/sealing/SealCipher.h"

#include <openssl/core_names.h>
#include <openssl/err.h>
#include <openssl/kdf.h>
#include <openssl/params.h>

#include <algorithm>

namespace preparation
{

namespace
{

using MacHandle = std::unique_ptr<EVP_MAC, files::FreeWith<&EVP_MAC_free>>;
using KdfHandle = std::unique_ptr<EVP_KDF, files::FreeWith<&EVP_KDF_free>>;
using KdfContext = std::unique_ptr<EVP_KDF_CTX, files::FreeWith<&EVP_KDF_CTX_free>>;
using CipherHandle = std::unique_ptr<EVP_CIPHER, files::FreeWith<&EVP_CIPHER_free>>;

/// The EVP interface counts in `int`; larger inputs go in steps of this size.
constexpr std::size_t kStep = std::size_t{1} << 30;

tl::unexpected<files::Error> libraryFailure(const char *what)
{
    // What the library queued must not be taken for a later operation's failure.
    ERR_clear_error();
    return files::fail(files::ErrorCode::Refused,
                       std::string("The cryptographic library failed at ") + what);
}

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

AreaCipher::AreaCipher(Direction direction, ByteView key)
    : m_context(EVP_CIPHER_CTX_new()), m_seal(direction == Direction::Seal)
{
    const CipherHandle cipher(EVP_CIPHER_fetch(nullptr, "AES-128-GCM", nullptr));
    // The library reads as many key bytes as the cipher has, whatever the caller holds.
    m_keyed = m_context && cipher && key.size() == kKeyBytes &&
              EVP_CipherInit_ex2(m_context.get(), cipher.get(), key.data(), nullptr, m_seal ? 1 : 0,
                                 nullptr) == 1;
}

void AreaCipher::begin(const Iv &iv, ByteView associated)
{
    m_ok = m_keyed && EVP_CipherInit_ex2(m_context.get(), nullptr, nullptr, iv.data(),
                                         m_seal ? 1 : 0, nullptr) == 1;
    associate(associated);
}

void AreaCipher::associate(ByteView bytes)
{
    int taken = 0;
    m_ok = m_ok && EVP_CipherUpdate(m_context.get(), nullptr, &taken, bytes.data(),
                                    static_cast<int>(bytes.size())) == 1;
}

void AreaCipher::update(ByteView in, std::uint8_t *out)
{
    while (m_ok && !in.empty()) {
        const std::size_t count = std::min(in.size(), kStep);
        int written = 0;
        m_ok = EVP_CipherUpdate(m_context.get(), out, &written, in.data(),
                                static_cast<int>(count)) == 1 &&
               static_cast<std::size_t>(written) == count;
        in = in.subspan(count);
        out += count;
    }
}

files::Result<Tag> AreaCipher::finishSealing()
{
    Tag tag{};
    Tag rest{};  // a counter mode leaves nothing to write here
    int written = 0;
    if (!m_ok || EVP_CipherFinal_ex(m_context.get(), rest.data(), &written) != 1 ||
        EVP_CIPHER_CTX_ctrl(m_context.get(), EVP_CTRL_AEAD_GET_TAG, static_cast<int>(tag.size()),
                            tag.data()) != 1) {
        return libraryFailure("AES-128-GCM");
    }
    return tag;
}

files::Result<bool> AreaCipher::finishOpening(ByteView tag)
{
    Tag expected{};
    Tag rest{};
    int written = 0;
    std::copy_n(tag.begin(), std::min(tag.size(), expected.size()), expected.begin());
    if (!m_ok || tag.size() != expected.size() ||
        EVP_CIPHER_CTX_ctrl(m_context.get(), EVP_CTRL_AEAD_SET_TAG,
                            static_cast<int>(expected.size()), expected.data()) != 1) {
        return libraryFailure("AES-128-GCM");
    }
    const bool authentic = EVP_CipherFinal_ex(m_context.get(), rest.data(), &written) == 1;
    ERR_clear_error();
    return authentic;
}

}  // namespace preparation
