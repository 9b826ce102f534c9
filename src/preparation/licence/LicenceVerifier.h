#pragma once
#include "preparation/licence/LicenceFormat.h"
#include "preparation/sign/SignVerifier.h"

namespace preparation
{

struct OpenedLicence {
    Licence licence;
    SignVerdict verdict = SignVerdict::NotChecked;
};

/// Opens a licence. The bytes may be hostile.
/// @param key  the token's public key for this firmware, or null
/// @return the refusals of `parseLicence`
files::Result<OpenedLicence> openLicence(ByteView file, const crypto::EcKey *key);

}  // namespace preparation
