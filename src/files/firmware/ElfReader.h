#pragma once
#include "files/base/Records.h"
#include "files/base/Result.h"
#include "files/firmware/StagedSegment.h"

#include <QString>

namespace files
{

/// Reads a 32-bit ELF file: one segment for each PT_LOAD header, at its physical address, then head
/// and tables. Neighbours without an overlap may be one segment already, but the list is neither
/// sorted nor reduced.
/// @param padding  fills the holes between such neighbours
/// @return BadVersion for a 64-bit file and NoMemory, both with the message, the latter also for
///         headers that together want far more bytes than the file has; any other code means that
///         the file is no valid ELF file, the text says why
Result<RecordOwner<FileELF>> readElf(const QString &path, std::uint8_t padding);

/// Copies the first section of that name out of an ELF file of either class; zeros where the file
/// has no bytes for it.
/// @return the bytes, with one to spare, at address 0; Missing without such a section; NoMemory,
///         also above 0x1FFFFFFF bytes; any other code means that the file is no valid ELF file
Result<OwnedSegment> readElfSection(const QString &path, const std::string &name);

}  // namespace files
