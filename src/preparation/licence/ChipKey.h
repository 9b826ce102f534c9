#pragma once
#include "crypto/primitives/EcKey.h"

namespace preparation
{

/// Reads the public key of a chip: PEM, or 64 bytes: X, then Y, 32 bytes each, big-endian.
/// @return BadValue when it is neither, or not on P-256
files::Result<crypto::EcKey> readChipKey(crypto::ByteView file);

}  // namespace preparation
