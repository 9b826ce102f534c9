#pragma once
#include "files/base/Records.h"
#include "files/base/Result.h"

#include <QFile>

namespace files
{

/// Reads a provisioning file: its head as three words, the rest as one segment at address 0. The
/// size that the head tells isn't compared with the file's.
/// @return NoMemory, also for a file shorter than its head; CannotOpen, ReadFailed. The text is the
///         message
Result<RecordOwner<FileOBK>> readObk(QFile &file);

}  // namespace files
