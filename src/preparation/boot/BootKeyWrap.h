#pragma once
#include "crypto/primitives/KeyPair.h"
#include "crypto/primitives/PublicKey.h"

namespace preparation
{

using crypto::ByteView;

inline constexpr std::size_t kImageKeyBytes = 16;

/// Wraps an image's AES-128 key for the holder of a private key (ECIES): a fresh key pair, the
/// common secret through HKDF-SHA-256 (info "MCUBoot_ECIES_v1") into 16 bytes for AES-128-CTR and
/// 32 for HMAC-SHA-256 over the encrypted key.
/// @param recipient  P-256 or X25519
/// @param imageKey   16 bytes
/// @return public half of the fresh pair, HMAC, encrypted key; BadValue for another kind of key
files::Result<std::vector<std::uint8_t>> wrapImageKey(const crypto::PublicKey &recipient,
                                                      ByteView imageKey);

/// The other way. @param wrapped  may be hostile
/// @return the image's key; BadValue when it wasn't wrapped for this key, or isn't as it was
files::Result<files::SecretBytes> unwrapImageKey(const crypto::KeyPair &key, ByteView wrapped);

}  // namespace preparation
