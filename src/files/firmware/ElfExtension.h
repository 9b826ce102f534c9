#pragma once
#include "files/base/Result.h"

#include <cstdint>
#include <elf.h>
#include <span>
#include <string>
#include <vector>

namespace files
{

/// What an ELF file is to get: one more section with a PT_LOAD header of its own.
struct ElfAddition {
    std::span<const std::uint8_t> data;
    std::uint32_t address = 0;  ///< physical and virtual
    std::string name;
    std::uint8_t padding = 0;  ///< fills what is left free
};

/// Rebuilds a 32-bit little-endian ELF file with an addition: head, sections in their order,
/// section table, program headers. Gaps in front of sections with an address stay, as `padding`;
/// the first PT_LOAD that ends inside a word grows to its end. The result is compared with what
/// went in: each byte of each old PT_LOAD stands at its old address, and the addition at its own.
/// @return the whole new file; BadValue or Truncated when `file` is malformed; Refused, with a
///         sentence that names the segment, when bytes would be lost: of segments with holes, over
///         the head, or behind sections without bytes; TooLarge beyond what the tables can count
Result<std::vector<std::uint8_t>> withAddition(std::span<const std::uint8_t> file,
                                               const ElfAddition &addition);

/// The PT_LOAD headers of such a file, in its order. @return BadValue or Truncated
Result<std::vector<Elf32_Phdr>> loadsOf(std::span<const std::uint8_t> file);

}  // namespace files
