#pragma once
#include "files/base/Records.h"
#include "files/base/Result.h"

#include <QFile>

namespace files
{

/// Reads a file as it stands, as one segment at address 0.
/// @param position  bytes to skip at the start
/// @param size      bytes to read; 0 for the file's whole size, whatever `position` is
/// @return NoMemory, CannotOpen (no way to `position`), ReadFailed; the text is the message
Result<RecordOwner<FileData>> readBinary(QFile &file, std::uint32_t position, std::uint32_t size);

}  // namespace files
