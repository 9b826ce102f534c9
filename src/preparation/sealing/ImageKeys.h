#pragma once
#include "preparation/sealing/SealCipher.h"

#include <initializer_list>
#include <string_view>

namespace preparation
{

/// What all pieces of one package are sealed with: 16 key bytes and the base of the IVs. Each kind
/// of package has three letters of its own in the derivation, so that no two kinds share a key.
class ImageKeys
{
public:
    /// Derives both for a package without a profile.
    /// @param kind   three letters: SMI, SFU, SSP
    /// @param key    16 bytes
    /// @param nonce  16 bytes, from the head
    static files::Result<ImageKeys> derive(std::string_view kind, ByteView key, ByteView nonce);

    /// Derives both for an SFI image from the key file, the profile and the image nonce.
    /// @param key    16 bytes
    /// @param nonce  16 bytes, from the head
    static files::Result<ImageKeys> derive(ByteView key, std::uint32_t profile, ByteView nonce);

    [[nodiscard]] ByteView imageKey() const { return m_derived.span().first(kKeyBytes); }

    /// The IV of one piece: the base, its last four bytes xor the index as a big-endian number.
    [[nodiscard]] Iv areaIv(std::uint32_t index) const;

private:
    static files::Result<ImageKeys> deriveFrom(ByteView key, ByteView info);

    files::SecretBytes m_derived;  ///< key, then IV base
};

/// The key of the image nonce, 32 bytes, from the 16-byte key file.
/// @param kind  three letters: SFI, SMI, SFU, SSP
files::Result<files::SecretBytes> deriveNonceKey(ByteView key, std::string_view kind);

/// The nonce of a package, from all that decides its bytes, so that one key and nonce file can
/// serve package after package and still no two of them share a derived key.
/// @param inputs  hashed one behind the other: the nonce file, the head, the plain bytes
files::Result<NonceBytes> packageNonce(std::string_view kind, ByteView key,
                                       std::initializer_list<ByteView> inputs);

}  // namespace preparation
