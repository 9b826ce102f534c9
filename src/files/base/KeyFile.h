#pragma once
#include "files/base/Result.h"
#include "files/base/Wipe.h"

#include <QString>

namespace files
{

/// Reads a key-like file whole into one buffer that is wiped when dropped; nothing of it stays in
/// a stream's own buffer.
/// @param expectedSize  in bytes; 0 accepts any size up to 16 MiB
/// @return NotFound, NotRegular, CannotOpen (no permission), WrongSize, ReadFailed
Result<SecretBytes> readKeyFile(const QString &path, std::uint64_t expectedSize);

}  // namespace files
