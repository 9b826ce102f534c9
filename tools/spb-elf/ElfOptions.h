#pragma once
#include "files/base/Result.h"
#include "tools/console/Program.h"

#include <cstdint>
#include <optional>
#include <string>

namespace elf_tool
{

/// What the user asked for; paths in the system's encoding.
struct Options {
    bool isDryRun = false;
    std::optional<std::uint32_t> flashStart;
    std::optional<std::uint32_t> flashEnd;
    std::optional<std::uint32_t> slice;
    std::optional<std::uint32_t> padding;
    std::optional<std::uint32_t> address;
    std::optional<std::string> data;
    std::optional<std::string> name;
    std::optional<std::string> secure;
    std::optional<std::string> header;
};

/// The command line's options, which write into `out`; it must outlive them.
std::vector<console::Option> optionTable(Options &out);

/// Whether command, file and options make sense together.
/// @param words  the command and the file's path
/// @return BadValue with a sentence for the user (exit status 3)
files::Result<void> checkTogether(const Options &options, const console::Arguments &words);

/// The text of `--help`.
const char *helpText();

}  // namespace elf_tool
