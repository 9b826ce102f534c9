#pragma once
#include "crypto/primitives/Bytes.h"
#include "files/base/Result.h"

namespace crypto
{

/// AES in counter mode (NIST SP 800-38A, 6.5) with a counter that starts at 0, over bytes in
/// place. Encrypting and decrypting are the same. A key must serve for one text alone.
/// @param key  16 or 32 bytes: AES-128 or AES-256
/// @return Refused when the library fails, or for a key of another size
files::Result<void> aesCtr(ByteView key, std::span<std::uint8_t> bytes);

}  // namespace crypto
