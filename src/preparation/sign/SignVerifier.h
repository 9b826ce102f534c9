#pragma once
#include "preparation/sign/SignTrailer.h"

#include <optional>

namespace preparation
{

/// What is known about a signed image.
enum class SignVerdict {
    NotChecked,  ///< no key was given
    Authentic,   ///< the signature is the key's
    AnotherKey,  ///< the trailer names another key
    Damaged,     ///< the trailer names the key, and the signature isn't the key's
};

/// "not checked", "authentic", "another key", "damaged".
const char *signVerdictText(SignVerdict verdict);

struct OpenedSign {
    SignTrailer trailer;
    SignVerdict verdict = SignVerdict::NotChecked;
};

/// Opens a signed image. The bytes may be hostile.
/// @param key  the public key, or null
/// @return the refusals of `parseSignTrailer`
files::Result<OpenedSign> openSigned(ByteView file, const crypto::EcKey *key);

}  // namespace preparation
