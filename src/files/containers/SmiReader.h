#pragma once
#include "files/base/Records.h"
#include "files/base/Result.h"

#include <QFile>

namespace files
{

/// Reads a secure module image whole, as one segment at address 0. The magic is the only check.
/// @return Truncated or BadMagic; NoMemory, ReadFailed. The text is the message but for BadMagic,
///         whose message names the file
Result<RecordOwner<FileData>> readSmi(QFile &file);

}  // namespace files
