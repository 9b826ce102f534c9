#pragma once
#include "files/base/Records.h"
#include "preparation/smi/SmiSealer.h"

namespace preparation
{

/// How a section lies among Flash words of 32 bytes.
struct SmiPlacement {
    bool misalignedStart = false;
    bool singleWord = false;
    bool misalignedEnd = false;
    bool nextInLastWord = false;  ///< another section with bytes begins in its last word
};

/// Judges the place of one of an ELF file's sections, which must not be empty.
SmiPlacement placementOf(const FileELF &elf, const section_header &section);

/// The first section of that name, or null.
const section_header *findSection(const FileELF &elf, const std::string &name);

/// All that comes of one section.
struct SmiModule {
    QByteArray file;
    std::uint32_t address = 0;
    QByteArray clearElf;
    SmiPlacement placement;
};

/// Builds the module's file and the clear ELF.
/// @param request  all but the load address, which is the section's
/// @param notices  receives what the user should know of the clear ELF
/// @return BadValue for a record or section that doesn't fit; the refusals of `buildSmi` and
///         `ClearElf::make`
files::Result<SmiModule> buildModule(const std::string &elfPath, const FileELF *elf,
                                     const std::string &name, SmiRequest request,
                                     std::vector<std::string> &notices);

}  // namespace preparation
