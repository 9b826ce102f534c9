#pragma once
#include <QString>

#include <span>

/// @file
/// The panels of the form in one table, which the left bar, the command line and the displaying of
/// tabs read. No widgets.

namespace workbench
{

/// What displaying a panel does to the device boxes of all tabs.
enum class DeviceBoxes {
    Unchanged,
    Free,      ///< unlocked, with the entries that they had before
    LockedH5,  ///< on the device of the H5 panel
};

/// What it does to the list of devices in the HSM tab.
enum class HsmDevices { Unchanged, Microcontrollers, Microprocessors };

/// One panel: a button of the left bar and the tabs that it shows.
struct Panel {
    const char *name;     ///< of `-tab` and `highlightCurrentIcon`; compared without case
    const char *button;   ///< object name; its label's is this and "Label"
    const char *icon;     ///< resource
    const char *caption;  ///< of the label
    int captionLength;    ///< characters with the blanks behind it
    DeviceBoxes deviceBoxes;
    HsmDevices hsmDevices;
    std::span<const char *const> tabs;  ///< keys, in the order of the tabs
};

/// All panels, from top to bottom.
std::span<const Panel> panels();

/// @return null when no panel has the name
const Panel *findPanel(const QString &name);

}  // namespace workbench
