#include "crypto/primitives/AesGcm.h"

#include "crypto/primitives/LibraryFailure.h"
#include "files/base/Progress.h"

#include <algorithm>
#include <openssl/err.h>

namespace crypto
{

namespace
{

using CipherHandle = std::unique_ptr<EVP_CIPHER, files::FreeWith<&EVP_CIPHER_free>>;

constexpr std::size_t kAes128KeyBytes = 16;

}  // namespace

AesGcm::AesGcm(Direction direction, ByteView key)
    : m_context(EVP_CIPHER_CTX_new()), m_seal(direction == Direction::Seal)
{
    const CipherHandle cipher(EVP_CIPHER_fetch(nullptr, "AES-128-GCM", nullptr));
    // The library reads as many key bytes as the cipher has, whatever the caller holds.
    m_keyed = m_context && cipher && key.size() == kAes128KeyBytes &&
              EVP_CipherInit_ex2(m_context.get(), cipher.get(), key.data(), nullptr, m_seal ? 1 : 0,
                                 nullptr) == 1;
}

void AesGcm::begin(const GcmIv &iv, ByteView associated)
{
    m_ok = m_keyed && EVP_CipherInit_ex2(m_context.get(), nullptr, nullptr, iv.data(),
                                         m_seal ? 1 : 0, nullptr) == 1;
    associate(associated);
}

void AesGcm::associate(ByteView bytes)
{
    int taken = 0;
    m_ok = m_ok && EVP_CipherUpdate(m_context.get(), nullptr, &taken, bytes.data(),
                                    static_cast<int>(bytes.size())) == 1;
}

void AesGcm::update(ByteView in, std::uint8_t *out)
{
    // In steps also because the EVP interface counts in `int`.
    const std::size_t size = in.size();
    while (m_ok && !in.empty()) {
        const std::size_t count = std::min(in.size(), files::kProgressStep);
        int written = 0;
        m_ok = EVP_CipherUpdate(m_context.get(), out, &written, in.data(),
                                static_cast<int>(count)) == 1 &&
               static_cast<std::size_t>(written) == count;
        in = in.subspan(count);
        out += count;
        if (size > files::kProgressStep) {
            files::tellProgress(m_seal ? files::Activity::Encrypting : files::Activity::Decrypting,
                                {}, size - in.size(), size);
        }
    }
}

files::Result<GcmTag> AesGcm::finishSealing()
{
    GcmTag tag{};
    GcmTag rest{};  // a counter mode leaves nothing to write here
    int written = 0;
    if (!m_ok || EVP_CipherFinal_ex(m_context.get(), rest.data(), &written) != 1 ||
        EVP_CIPHER_CTX_ctrl(m_context.get(), EVP_CTRL_AEAD_GET_TAG, static_cast<int>(tag.size()),
                            tag.data()) != 1) {
        return libraryFailure("AES-128-GCM");
    }
    return tag;
}

files::Result<bool> AesGcm::finishOpening(ByteView tag)
{
    GcmTag expected{};
    GcmTag rest{};
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

}  // namespace crypto
