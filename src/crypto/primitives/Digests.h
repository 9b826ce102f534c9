#pragma once
#include "crypto/primitives/Bytes.h"
#include "crypto/primitives/Handles.h"
#include "files/base/Result.h"
#include "files/base/Wipe.h"

/// @file
/// Digests and what is derived through them, over OpenSSL's EVP interface. A failed step sticks in
/// its object, so that one check at the end covers all of them; such a failure is the library's
/// (out of memory, algorithm not available), never the input's. Contexts hold key material and are
/// cleansed by the library when freed.

namespace crypto
{

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
    DigestContext m_context;
    std::unique_ptr<EVP_MD, files::FreeWith<&EVP_MD_free>> m_digest;
    bool m_ok = false;
};

/// SHA-256 of bytes in one piece.
files::Result<Digest> sha256(ByteView bytes);

/// Whether two blocks are the same, in a time that doesn't depend on where they differ. Blocks of
/// different sizes are not.
bool isEqual(ByteView one, ByteView other);

/// Fills with bytes of the operating system's generator, from OpenSSL's pool for secrets.
/// @return Refused when the random source failed
files::Result<void> fillRandom(std::span<std::uint8_t> out);

}  // namespace crypto
