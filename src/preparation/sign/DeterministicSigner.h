#pragma once
#include "preparation/sealing/EcKey.h"

namespace preparation
{

/// Signs a SHA-256 digest with ECDSA. The nonce comes from key and digest (RFC 6979 with SHA-256),
/// so the same inputs give the same bytes and no weak random number can give the key away.
/// @return r, then s; an error only when the library fails
files::Result<RawSignature> signDeterministic(const EcKey &key, const Digest32 &digest);

}  // namespace preparation
