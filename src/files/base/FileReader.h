#pragma once
#include "files/base/ByteBuffer.h"
#include "files/base/Result.h"

#include <QFile>
#include <QString>

#include <cstdint>
#include <span>

namespace files
{

/// Opens a regular file for reading, without ever blocking on a FIFO or a device.
/// Symbolic links are followed. The QFile is open read-only and unbuffered afterwards.
/// @return NotFound, NotRegular or CannotOpen
Result<void> openForReading(QFile &file, const QString &path);

/// Fills `out` from the file's current position on.
/// @return ReadFailed when the file ends before or the system reports a fault
Result<void> readExactly(QFile &file, std::span<std::uint8_t> out);

/// Reads `size` bytes from `offset` on into a block with one byte to spare, as payloads of records
/// are. The block is made before the file is looked at; pages of a forged size stay untouched.
/// @return NoMemory, also for a size that 32 bits don't hold; CannotOpen when there is no way to
///         `offset`; ReadFailed when the bytes aren't all there
Result<MallocArray<std::uint8_t>> readBlock(QFile &file, qint64 offset, qint64 size);

/// Reads an open regular file whole, from its start, into memory (never mapped: a mapped file that
/// shrinks kills the process).
/// @return the bytes; ReadFailed when the file ends before the size it had, NoMemory, TooLarge
///         above `limit` bytes, which is by default what the records' sizes of 32 bits can hold
Result<ByteBuffer> readAll(QFile &file, std::uint64_t limit = UINT32_MAX);

}  // namespace files
