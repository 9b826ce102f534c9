#pragma once
#include "crypto/primitives/Bytes.h"
#include "crypto/primitives/Handles.h"
#include "files/base/Result.h"

namespace crypto
{

using GcmIv = std::array<std::uint8_t, 12>;
using GcmTag = std::array<std::uint8_t, 16>;

/// AES-128-GCM with a 16-byte tag (NIST SP 800-38D), many messages under one key. The key schedule
/// is made once. A failed step sticks until the next `begin`; it is the library's, or a key of
/// another size, never the message's.
class AesGcm
{
public:
    enum class Direction { Seal, Open };

    /// @param key  16 bytes
    AesGcm(Direction direction, ByteView key);

    /// Starts one message.
    /// @param associated  authenticated, not encrypted
    void begin(const GcmIv &iv, ByteView associated);
    void associate(ByteView bytes);

    /// Encrypts or decrypts the next bytes of the message.
    /// @param out  room for `in.size()` bytes; may be `in` itself, else must not overlap it
    void update(ByteView in, std::uint8_t *out);

    /// Ends a message of direction Seal.
    files::Result<GcmTag> finishSealing();

    /// Ends a message of direction Open, comparing the tag in constant time.
    /// @param tag  16 bytes
    /// @return whether the message is authentic
    files::Result<bool> finishOpening(ByteView tag);

private:
    std::unique_ptr<EVP_CIPHER_CTX, files::FreeWith<&EVP_CIPHER_CTX_free>> m_context;
    bool m_seal = false;
    bool m_keyed = false;
    bool m_ok = false;
};

}  // namespace crypto
