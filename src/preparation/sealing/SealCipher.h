#pragma once
#include "crypto/primitives/AesGcm.h"
#include "crypto/primitives/Digests.h"
#include "preparation/sealing/ImageFormat.h"

namespace preparation
{

using crypto::Digest;
using crypto::hkdfSha256;
using crypto::HmacSha256;
using crypto::Sha256;

/// An area, or a piece of another package, is one message of this cipher.
using AreaCipher = crypto::AesGcm;
using Iv = crypto::GcmIv;

}  // namespace preparation
