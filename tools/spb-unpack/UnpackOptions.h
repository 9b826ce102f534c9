#pragma once
#include "files/base/Result.h"

#include <cstdint>
#include <optional>
#include <string>

namespace unpack
{

/// What the user asked for; paths in the system's encoding.
struct Options {
    std::string image;
    bool json = false;
    std::optional<std::string> key;
    std::optional<std::string> out;
    std::optional<std::uint32_t> area;  ///< index from 1; none for all `F` areas
    bool help = false;
    bool version = false;
};

/// Reads the command line.
/// @return the options; BadValue with a sentence for the user (exit status 3)
files::Result<Options> parseOptions(int argc, char **argv);

/// The text of `--help`.
const char *helpText();

/// "spb-unpack " and the program's version.
const char *versionText();

}  // namespace unpack
