#pragma once
#include "files/base/Records.h"
#include "files/base/Result.h"

#include <QString>

#include <functional>
#include <string>
#include <string_view>

namespace files
{

/// What reading a modules list needs from above.
struct ModuleServices {
    /// Opens a HEX file that a row names: its segments, sorted; null after the reason has been
    /// reported.
    std::function<RecordOwner<FileData>(const QString &path)> openHex;
    /// Takes a warning that doesn't end the reading.
    std::function<void(const std::string &text)> warn;
};

/// Reads a modules list and all files that it names, 1 to 8 modules.
/// @param text      all bytes of the list
/// @param listPath  anchored names count from its folder; messages name it as it stands here
/// @return BadCount (columns or modules), BadValue (address, identifier, module's name), NotFound,
///         CannotOpen, ReadFailed, TooLarge (span of a HEX module), Missing (no module), NoMemory;
///         the text is the message. Or Reported after `openHex`
Result<RecordOwner<FileMCSV>> readModules(std::string_view text, const QString &listPath,
                                          const ModuleServices &services);

}  // namespace files
