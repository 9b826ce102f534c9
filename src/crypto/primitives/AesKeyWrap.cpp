#include "crypto/primitives/AesKeyWrap.h"

#include "crypto/primitives/Handles.h"
#include "crypto/primitives/LibraryFailure.h"

#include <openssl/err.h>

namespace crypto
{

namespace
{

constexpr std::size_t kBlock = 8;
constexpr std::size_t kLargest = 4096;  // any key is far below it
constexpr std::size_t kShortKey = 16;
constexpr std::size_t kLongKey = 32;

/// @return bytes written to `out`, or -1
int runWrap(bool isWrap, ByteView wrappingKey, ByteView in, std::uint8_t *out)
{
    const bool isLong = wrappingKey.size() == kLongKey;
    if (!isLong && wrappingKey.size() != kShortKey) {
        return -1;
    }
    const std::unique_ptr<EVP_CIPHER_CTX, files::FreeWith<&EVP_CIPHER_CTX_free>> context(
        EVP_CIPHER_CTX_new());
    if (!context) {
        return -1;
    }
    EVP_CIPHER_CTX_set_flags(context.get(), EVP_CIPHER_CTX_FLAG_WRAP_ALLOW);
    int written = 0;
    const bool isDone =
        EVP_CipherInit_ex(context.get(), isLong ? EVP_aes_256_wrap() : EVP_aes_128_wrap(), nullptr,
                          wrappingKey.data(), nullptr, isWrap ? 1 : 0) == 1 &&
        EVP_CipherUpdate(context.get(), out, &written, in.data(), static_cast<int>(in.size())) == 1;
    return isDone ? written : -1;
}

}  // namespace

files::Result<std::vector<std::uint8_t>> wrapKey(ByteView wrappingKey, ByteView key)
{
    std::vector<std::uint8_t> wrapped(key.size() + 2 * kBlock);
    const bool isSize =
        key.size() >= 2 * kBlock && key.size() % kBlock == 0 && key.size() <= kLargest;
    const int written = isSize ? runWrap(true, wrappingKey, key, wrapped.data()) : -1;
    if (written != static_cast<int>(key.size() + kBlock)) {
        return libraryFailure("AES key wrap");
    }
    wrapped.resize(static_cast<std::size_t>(written));
    return wrapped;
}

files::Result<files::SecretBytes> unwrapKey(ByteView wrappingKey, ByteView wrapped)
{
    const bool isSize =
        wrapped.size() >= 3 * kBlock && wrapped.size() % kBlock == 0 && wrapped.size() <= kLargest;
    files::SecretBytes room(isSize ? wrapped.size() : 0);
    const int written = isSize ? runWrap(false, wrappingKey, wrapped, room.data()) : -1;
    ERR_clear_error();
    if (written != static_cast<int>(wrapped.size() - kBlock)) {
        return files::fail(files::ErrorCode::BadValue,
                           "the wrapped key isn't for this wrapping key, or is damaged");
    }
    files::SecretBytes key(static_cast<std::size_t>(written));
    std::copy_n(room.data(), key.size(), key.data());
    return key;
}

}  // namespace crypto
