#pragma once
#include <span>

namespace workbench
{

/// What choosing a device does to the "Continuation token address" field.
enum class TokenField {
    Enabled,
    Disabled,  ///< its text stays
    DisabledAndEmptied,
};

/// One entry of an MCU box: how it sets the form, and which rules of the request it switches on.
struct SfiDevice {
    const char *name;
    bool ramEnabled;
    const char *ramText;  ///< blanks at its end belong to it
    TokenField token;
    bool hashChecked;
    bool hashLocked;  ///< the user can't change the box
    // Rows and separator lines shown.
    bool smiRow;
    bool smiLine;
    bool keyAreaRow;
    bool keyAreaLine;
    bool provisioningRows;  ///< OBKey, SSFI and modules
    bool ramLine;
    bool emptiesSsfi;
    // Rules.
    bool combined;        ///< SMI files go into the image, and the token must be a number
    bool provisioned;     ///< OBKey, SSFI and modules go into the image; profile 0x484
    bool ofH5Panel;       ///< the device that the H5 panel stands for
    bool ignoresKeyArea;  ///< a path left in the hidden key-area field isn't read
};

/// Entries of the SFI tab's MCU box, in order; the first is no device.
extern const std::span<const SfiDevice> kSfiDevices;
/// Entries of the SFIx tab's MCU box: another order, other RAM sizes.
extern const std::span<const SfiDevice> kSfixDevices;

}  // namespace workbench
