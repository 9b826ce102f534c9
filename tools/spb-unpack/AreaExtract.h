#pragma once
#include "files/base/Result.h"
#include "preparation/ImageOpener.h"

#include <string>

namespace unpack
{

/// A run of firmware bytes without a hole.
struct Run {
    std::uint32_t address = 0;
    std::vector<std::uint8_t> bytes;
};

/// The `F` areas of an authentic image by ascending address, touching ones joined.
/// @return Refused when there is none, or one lies over another or past the address space
files::Result<std::vector<Run>> firmwareRuns(const preparation::OpenedImage &image);

/// Whether `writeFirmware` knows a format for the file name's ending, in upper or lower case:
/// `.bin`, `.hex`, `.srec`, `.s19`.
bool isFirmwareName(const std::string &path);

/// Writes the `F` areas in the format of the file name's ending; holes of a raw binary are 0xFF.
/// @param path  in the system's encoding
/// @return Refused when there is no firmware, or a raw binary would span more than 0x1FFFFFFF
///         bytes; WriteFailed with the writer's own words
files::Result<void> writeFirmware(const preparation::OpenedImage &image, const std::string &path);

/// Writes the plain bytes of one area; those of the types `K` and `O`, which hold keys, are
/// readable by their owner only.
/// @param index  from 1
/// @return Refused when there is no such area; the failures of the safe writer
files::Result<void> writeArea(const preparation::OpenedImage &image, std::uint32_t index,
                              const std::string &path);

}  // namespace unpack
