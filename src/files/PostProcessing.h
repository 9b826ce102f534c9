#pragma once
#include "files/FileManager.h"
#include "files/base/ByteBuffer.h"
#include "files/base/Result.h"
#include "files/firmware/CrcArea.h"

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// Rewrites a 32-bit little-endian ELF file with one more section and one more loadable segment.
/// @param padding  fills what is left free
/// @return false after a report, and then the file is as it was
bool AddSegToElf(const QString &path, const QByteArray &data, unsigned int address,
                 const QString &name, unsigned char padding);

/// The operations of this file in two steps: what would change, all in memory, and the writing.
/// Errors whose code is Reported have been reported; the texts of all others are messages.
namespace files
{

/// Said of a range without firmware; the file stays as it was.
inline constexpr const char *kNothingInRange =
    "No segments located in the specified range, firmware file not modified";

/// An ELF file before and after.
struct ElfRewrite {
    ByteBuffer before;
    std::vector<std::uint8_t> after;
    std::vector<std::string> added;  ///< names of the new sections, in order
};

/// What a table of sums does to a file.
struct CrcRewrite {
    RecordOwner<FileType> record;     ///< segments as they are summed
    std::vector<std::uint8_t> zeros;  ///< by segment: bytes added to fill it up to a word
    CrcArea area;                     ///< without blocks: nothing to write
    std::optional<ElfRewrite> elf;    ///< for ELF files
};

/// @return the rewritten file; Refused or TooLarge, and CannotOpen for a malformed one
Result<ElfRewrite> planAddition(const QString &path, std::span<const std::uint8_t> data,
                                std::uint32_t address, const std::string &name,
                                std::uint8_t padding);

/// Ends the process when the file can't be written. @return the sums; or why there are none
Result<CrcRewrite> planCrc(FileManager &manager, const std::wstring &path, const CrcRange &range,
                           std::uint8_t padding);
Result<ElfRewrite> planMerge(FileManager &manager, const std::wstring &userElf,
                             const std::wstring &headerBin, const std::wstring &secureElf);

/// Puts the file in its place, once and whole. @return WriteFailed
Result<void> write(const ElfRewrite &rewrite, const QString &path);
/// Likewise, with the messages of the format's writer and of success.
/// @return WriteFailed or Reported
Result<void> writeCrc(FileManager &manager, CrcRewrite &rewrite, const std::wstring &path);

}  // namespace files
