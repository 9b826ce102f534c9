#pragma once
#include "files/base/Result.h"
#include "preparation/listing/PackageKinds.h"
#include "tools/console/Program.h"

#include <cstdint>
#include <optional>
#include <string>

namespace unpack
{

/// What the user asked for; paths in the system's encoding.
struct Options {
    bool json = false;
    std::optional<std::string> key;
    std::optional<std::string> publicKey;  ///< PEM, for a signed image or a licence
    std::optional<std::string> body;       ///< of an SFU package; none: beside its header
    std::optional<std::string> out;
    std::optional<std::uint32_t> area;  ///< index from 1; none for all `F` areas
};

/// The command line's options, which write into `out`; it must outlive them.
std::vector<console::Option> optionTable(Options &out);

/// Whether options and names make sense together.
/// @return BadValue with a sentence for the user (exit status 3)
files::Result<void> checkTogether(const Options &options, const console::Arguments &images);

/// Whether the options make sense for a package of that kind. @return as above
files::Result<void> checkForKind(const Options &options, preparation::PackageKind kind);

/// The text of `--help`.
const char *helpText();

}  // namespace unpack
