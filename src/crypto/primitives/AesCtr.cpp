#include "crypto/primitives/AesCtr.h"

#include "crypto/primitives/Handles.h"
#include "crypto/primitives/LibraryFailure.h"

#include <algorithm>

namespace crypto
{

files::Result<void> aesCtr(ByteView key, std::span<std::uint8_t> bytes)
{
    constexpr std::size_t kStep = std::size_t{1} << 30;  // the library counts in `int`
    constexpr std::array<std::uint8_t, 16> kZero{};
    const bool isLong = key.size() == 2 * kZero.size();
    const std::unique_ptr<EVP_CIPHER_CTX, files::FreeWith<&EVP_CIPHER_CTX_free>> context(
        EVP_CIPHER_CTX_new());
    bool isGood = context && (isLong || key.size() == kZero.size()) &&
                  EVP_EncryptInit_ex(context.get(), isLong ? EVP_aes_256_ctr() : EVP_aes_128_ctr(),
                                     nullptr, key.data(), kZero.data()) == 1;
    while (isGood && !bytes.empty()) {
        const std::size_t count = std::min(bytes.size(), kStep);
        int written = 0;
        isGood = EVP_EncryptUpdate(context.get(), bytes.data(), &written, bytes.data(),
                                   static_cast<int>(count)) == 1 &&
                 static_cast<std::size_t>(written) == count;
        bytes = bytes.subspan(count);
    }
    if (!isGood) {
        return libraryFailure("AES-CTR");
    }
    return {};
}

}  // namespace crypto
