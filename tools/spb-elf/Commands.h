#pragma once
#include "ElfOptions.h"

namespace elf_tool
{

/// Runs the command that the options were checked for. Messages go to standard error, the table of
/// `--dry-run` to standard output.
/// @param words  the command and the file's path
/// @return the exit status
int run(const Options &options, const console::Arguments &words);

}  // namespace elf_tool
