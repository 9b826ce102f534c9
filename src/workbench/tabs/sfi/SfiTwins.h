#pragma once
#include "workbench/tabs/sfi/SfiMcu.h"

#include <span>

namespace workbench
{

/// Rows of the SFI and SFIx forms. `Firmware` is the internal list of SFIx.
enum class Row {
    Mcu,
    Firmware,
    External,
    Key,
    Nonce,
    OptionBytes,
    Smi,
    KeyArea,
    Obk,
    Ssfi,
    Modules,
    Version,
    Hash,
    Ram,
    Token,
    Output,
};

/// Texts of one row.
struct FormRow {
    Row id;
    const char *name;     ///< middle part of its object names
    const char *label;    ///< '&' marks the mnemonic
    const char *filter;   ///< of its "Open file" dialog, or null
    const char *toolTip;  ///< or null
};

/// All that tells the SFI tab and the SFIx tab apart. Their forms, lists, steps and panes are one
/// implementation that reads this.
struct TwinTraits {
    const char *kind;  ///< first part of object names, and the first argument of `parseSfiFile`
    std::span<const FormRow> rows;  ///< in the order of the form
    std::span<const McuRow> mcus;

    const char *generateCaption;
    const char *imageTitle;   ///< of the info pane's right half
    const char *defaultName;  ///< what "Select folder" proposes
    const char *extension;    ///< of the output, compared with case

    const char *settingsGroup;
    const char *savedFirmware;   ///< key of the firmware list in that group
    const char *savedAddresses;  ///< and of its addresses

    const char *extensionRefusal;
    const char *noOptionBytes;
    const char *keyAreaUnreadable;
    const char *keyAreaWrongType;
    const char *createFailed;
    const char *created;

    /// An image needs a firmware file, but for devices with provisioning files.
    bool needsFirmware;
    /// An image needs an external firmware file.
    bool needsExternal;
    /// A RAM size of 0 is refused, and both number fields may only be empty together.
    bool strictNumbers;

    /// The texts of a row, or null when this twin doesn't have it.
    [[nodiscard]] const FormRow *find(Row row) const;
};

extern const TwinTraits kSfiTwin;
extern const TwinTraits kSfixTwin;

}  // namespace workbench
