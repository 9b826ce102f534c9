#pragma once
#include "crypto/primitives/EcKey.h"

namespace crypto
{

/// Signs a SHA-256 digest with ECDSA. The nonce comes from key and digest (RFC 6979 with SHA-256),
/// so the same inputs give the same bytes and no weak random number can give the key away.
/// It is verified with the public half before it is given out.
/// @return r, then s; Refused when the public half doesn't fit, or when the library fails
files::Result<RawSignature> signDeterministic(const EcKey &key, const Digest &digest);

}  // namespace crypto
