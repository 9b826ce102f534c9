#pragma once
#include "files/PostProcessing.h"

#include <optional>
#include <string>

namespace elf_tool
{

/// What a rewrite of an ELF file changes: a line for each segment, and the file's sizes.
std::string changeTable(const files::ElfRewrite &rewrite);
/// What the sums do to a file of another format: a line for each segment and one for the table.
/// @param fileBytes  of a binary, to be compared with what it becomes; 0 for text
std::string changeTable(const files::CrcRewrite &rewrite, std::uint64_t fileBytes);

/// New segments, and old ones that grow, that would share addresses with another one.
/// @return a sentence that names both; nothing when all is well
std::optional<std::string> overlapOf(const files::ElfRewrite &rewrite);

/// Old segments that would take less memory than before.
/// @return a sentence that names the first; nothing when all is well
std::optional<std::string> shrunkMemory(const files::ElfRewrite &rewrite);

/// Sums over zeros that fill a segment up to a word, where the new ELF file doesn't hold them: a
/// device would come to another sum.
/// @return a sentence that names the segment; nothing when all is well
std::optional<std::string> foreignSum(const files::CrcRewrite &rewrite);

}  // namespace elf_tool
