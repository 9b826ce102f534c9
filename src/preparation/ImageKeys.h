#pragma once
#include "preparation/SealCipher.h"

namespace preparation
{

/// What all areas of one image are sealed with: 16 key bytes and the base of the IVs.
class ImageKeys
{
public:
    /// Derives both from the key file, the profile and the image nonce.
    /// @param key    16 bytes
    /// @param nonce  16 bytes, from the head
    static files::Result<ImageKeys> derive(ByteView key, std::uint32_t profile, ByteView nonce);

    [[nodiscard]] ByteView imageKey() const { return m_derived.span().first(kKeyBytes); }

    /// The IV of one area: the base, its last four bytes xor the index as a big-endian number.
    [[nodiscard]] Iv areaIv(std::uint32_t index) const;

private:
    files::SecretBytes m_derived;  ///< key, then IV base
};

/// The key of the image nonce, 32 bytes, from the 16-byte key file.
files::Result<files::SecretBytes> deriveNonceKey(ByteView key);

}  // namespace preparation
