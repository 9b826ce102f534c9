#pragma once
#include "crypto/primitives/KeyPair.h"
#include "crypto/primitives/PublicKey.h"

namespace preparation
{

using crypto::ByteView;

inline constexpr std::size_t kImageKeyBytes = 16;      ///< of AES-128
inline constexpr std::size_t kLongImageKeyBytes = 32;  ///< of AES-256

/// Wraps an image's AES key for the holder of a private key. RSA-2048: RSAES-OAEP. P-256 and X25519
/// (ECIES): a fresh key pair, the common secret through HKDF-SHA-256 (info "MCUBoot_ECIES_v1") into
/// 16 bytes for AES-128-CTR and 32 for HMAC-SHA-256 over the encrypted key.
/// @param imageKey  16 bytes, for RSA also 32
/// @return the text; of ECIES public half of the fresh pair, HMAC, encrypted key. BadValue for
///         another kind of key
files::Result<std::vector<std::uint8_t>> wrapImageKey(const crypto::PublicKey &recipient,
                                                      ByteView imageKey);

/// The other way. @param wrapped  may be hostile
/// @return the image's key; BadValue when it wasn't wrapped for this key, or isn't as it was
files::Result<files::SecretBytes> unwrapImageKey(const crypto::KeyPair &key, ByteView wrapped);

}  // namespace preparation
