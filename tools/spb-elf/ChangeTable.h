#pragma once
#include "files/PostProcessing.h"

#include <optional>
#include <string>

namespace elf_tool
{

/// What a rewrite of an ELF file changes: a line for each segment, and the file's sizes.
std::string changeTable(const files::ElfRewrite &rewrite);
/// What the sums do to a file of another format: a line for each segment and one for the table.
std::string changeTable(const files::CrcRewrite &rewrite);

/// New segments, and old ones that grow, that would share addresses with another one.
/// @return a sentence that names both; nothing when all is well
std::optional<std::string> overlapOf(const files::ElfRewrite &rewrite);

}  // namespace elf_tool
