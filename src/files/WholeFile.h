#pragma once
#include "files/base/ByteBuffer.h"

#include <QFile>

#include <optional>

namespace files
{

/// Reads an open file whole for one of the readers of `FileManager`.
/// @return the bytes; or nullopt after a report at level 5
std::optional<ByteBuffer> readWholeFile(QFile &file);

}  // namespace files
