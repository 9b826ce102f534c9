#pragma once
#include "files/base/Range.h"
#include "files/base/Result.h"
#include "preparation/sealing/ImageFormat.h"

#include <elf.h>
#include <string_view>
#include <vector>

namespace preparation
{

/// Bytes of a file, from offset to offset.
using FileRange = files::Range;

/// A 32-bit ELF file in memory that is to be changed in places: head and tables in host form, all
/// other bytes as they stand. Everything here was checked against the file's size once, when it was
/// opened.
struct ElfImage {
    std::vector<std::uint8_t> bytes;
    bool isBigEndian = false;
    Elf32_Ehdr head = {};
    std::vector<Elf32_Phdr> segments;
    std::vector<Elf32_Shdr> sections;
    std::vector<std::string> names;  ///< of the sections

    /// @return BadValue for what isn't a whole 32-bit ELF file with both tables
    static files::Result<ElfImage> open(ByteView file);

    /// Numbers in the file's byte order. The place must be inside the file.
    [[nodiscard]] std::uint32_t u32(std::size_t at) const;
    void putU16(std::size_t at, std::uint16_t value);
    void putU32(std::size_t at, std::uint32_t value);

    /// Appends `count` zeros at an offset that leaves the same rest as `like` divided by 4.
    std::size_t appendRoom(std::size_t count, std::uint32_t like);

    /// Whether a section has bytes in the file, all of them inside it.
    [[nodiscard]] bool hasBytes(const Elf32_Shdr &section) const;

    /// Where the section's bytes stand; empty when it has none.
    [[nodiscard]] FileRange rangeOf(const Elf32_Shdr &section) const;

    /// Whether bytes of that range are loaded.
    [[nodiscard]] bool isLoaded(const FileRange &range) const;

    /// Writes head and program headers at `segmentsAt`, section headers at `sectionsAt`.
    void writeTables(std::uint32_t segmentsAt, std::uint32_t sectionsAt);
};

/// Where a segment's bytes stand in the file.
inline FileRange rangeOf(const Elf32_Phdr &segment)
{
    return FileRange::of(segment.p_offset, segment.p_filesz);
}

}  // namespace preparation
