#pragma once
#include "files/base/Result.h"

#include <QString>

namespace crypto
{

/// What `Crypto::generateEncryptionandNonce` does, with the reason of a failure for the caller's
/// own words; the service's message has been reported then.
/// @param size  bytes; zero or below makes an empty file
/// @return Refused when the random source fails, NoMemory, CannotOpen or WriteFailed
files::Result<void> makeRandomFile(const QString &path, int size);

}  // namespace crypto
