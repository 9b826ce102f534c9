#pragma once
#include "files/base/Records.h"
#include "files/base/Result.h"

#include <cstdint>
#include <span>

namespace files
{

/// Reads an SFI or SFIx image up to its first option bytes area, and checks its areas against each
/// other.
/// @param file  all bytes of the file
/// @return BadMagic; Truncated (the text is the end of a sentence that names the file); in an area
///         BadKind, BadVersion, BadIndex, BadCount; Missing without an option bytes area; then the
///         refusals of `checkSfiAreas`; or NoMemory. The text is the message but for the first two
Result<RecordOwner<FileSFI>> readSfi(std::span<const std::uint8_t> file);

/// The same for an SSFI image.
Result<RecordOwner<FileSFI>> readSsfi(std::span<const std::uint8_t> file);

}  // namespace files
