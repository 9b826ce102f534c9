#pragma once
#include "crypto/primitives/Bytes.h"
#include "files/base/Result.h"
#include "files/base/Wipe.h"

#include <vector>

namespace crypto
{

/// AES key wrap (RFC 3394) with its usual initial value: the same bytes each time, 8 more than the
/// key has.
/// @param wrappingKey  16 or 32 bytes: AES-128 or AES-256
/// @param key          a multiple of 8 bytes, 16 at least
/// @return Refused when the library fails, or for keys of another size
files::Result<std::vector<std::uint8_t>> wrapKey(ByteView wrappingKey, ByteView key);

/// The other way. @param wrapped  may be hostile
/// @return BadValue when it wasn't wrapped under this key, or isn't as it was
files::Result<files::SecretBytes> unwrapKey(ByteView wrappingKey, ByteView wrapped);

}  // namespace crypto
