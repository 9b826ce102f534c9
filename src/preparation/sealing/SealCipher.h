#pragma once
#include "files/base/Ownership.h"
#include "files/base/Result.h"
#include "files/base/Wipe.h"
#include "preparation/sealing/ImageFormat.h"

#include <openssl/evp.h>

#include <array>
#include <memory>

/// @file
/// The cryptographic primitives of a protected image over OpenSSL's EVP interface. A failed step
/// sticks in its object, so that one check at the end covers all of them; such a failure is the
/// library's (out of memory, algorithm not available), never the input's. Contexts hold key
/// material and are cleansed by the library when freed.

namespace preparation
{

using Digest = std::array<std::uint8_t, 32>;

/// HKDF with SHA-256 and no salt (RFC 5869).
/// @return `bytes` bytes that are wiped when dropped
files::Result<files::SecretBytes> hkdfSha256(ByteView inputKey, ByteView info, std::size_t bytes);

/// HMAC-SHA-256 (RFC 2104) over bytes that come in pieces.
class HmacSha256
{
public:
    explicit HmacSha256(ByteView key);
    void update(ByteView bytes);
    /// Ends the computation; the object can't be used again.
    files::Result<Digest> finish();

private:
    std::unique_ptr<EVP_MAC_CTX, files::FreeWith<&EVP_MAC_CTX_free>> m_context;
    bool m_ok = false;
};

/// SHA-256 over bytes that come in pieces; `begin` starts each computation.
class Sha256
{
public:
    Sha256();
    void begin();
    void update(ByteView bytes);
    files::Result<Digest> finish();

private:
    std::unique_ptr<EVP_MD_CTX, files::FreeWith<&EVP_MD_CTX_free>> m_context;
    std::unique_ptr<EVP_MD, files::FreeWith<&EVP_MD_free>> m_digest;
    bool m_ok = false;
};

using Iv = std::array<std::uint8_t, 12>;

/// AES-128-GCM with a 16-byte tag, many messages under one key. The key schedule is made once.
class AreaCipher
{
public:
    enum class Direction { Seal, Open };

    /// @param key  16 bytes
    AreaCipher(Direction direction, ByteView key);

    /// Starts one message.
    /// @param associated  authenticated, not encrypted
    void begin(const Iv &iv, ByteView associated);
    void associate(ByteView bytes);

    /// Encrypts or decrypts the next bytes of the message.
    /// @param out  room for `in.size()` bytes; may be `in` itself, else must not overlap it
    void update(ByteView in, std::uint8_t *out);

    /// Ends a message of direction Seal.
    files::Result<Tag> finishSealing();

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

}  // namespace preparation
