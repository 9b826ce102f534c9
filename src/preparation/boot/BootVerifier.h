#pragma once
#include "crypto/primitives/KeyPair.h"
#include "preparation/boot/BootFormat.h"
#include "preparation/boot/BootTrailer.h"

namespace preparation
{

/// Keys for a check. Each may be null.
struct BootKeys {
    const crypto::PublicKey *signer = nullptr;
    const crypto::KeyPair *recipient = nullptr;  ///< opens the wrapped key of an encrypted image
    ByteView wrapKey = {};                       ///< does, too: AES key of 16 or 32 bytes
};

/// What a check found; an image that failed it gives none.
struct BootVerdict {
    bool isSigned = false;
    bool isSignatureChecked = false;  ///< a key was given, and the signature is its
    bool isEncrypted = false;         ///< the firmware in the file isn't readable
    BootRest rest = BootRest::None;
};

/// Checks everything that the format allows to check: the order of things, hash, key, signature,
/// wrapped key, padding and trailer. With the keys no flipped bit passes. (The flag of a confirmed
/// image isn't signed; where erased bytes are zero, its one bit makes another valid image.)
/// Stricter than a loader has to be: values in the plain block that nothing protects are refused.
/// @param image  of `parseBootImage`
/// @return the first thing that is wrong, as a sentence
files::Result<BootVerdict> verifyBootImage(const BootImage &image, const BootKeys &keys);

}  // namespace preparation
