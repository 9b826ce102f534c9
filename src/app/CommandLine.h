#pragma once
#include "workbench/frame/PanelTable.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace app
{

/// One thing that the command line asks the window to do.
struct Step {
    enum class Kind {
        NoGeneration,   ///< `-ng`
        ObkTemplate,    ///< `-obk`; without a path it is the last step
        ImageTemplate,  ///< `-pb`; without a path it is the last step
        ShowTab,        ///< `-tab` with a panel and a number; the range is the window's to check
        Complaint       ///< a faulty `-tab`; always the last step
    };
    Kind kind = Kind::NoGeneration;
    std::optional<QString> path;              ///< templates: slashes only
    bool hidesNextImagePage = false;          ///< `-obk` behind `-ng`, more than a path behind it
    const workbench::Panel *panel = nullptr;  ///< `-tab`
    int index = 0;                            ///< `-tab`; any number
    const wchar_t *complaint = nullptr;       ///< static text
};

/// Turns the arguments into steps, in order. What matches no switch is passed over, and so is all
/// behind the first fault and behind argument 254.
/// @param arguments  all of them, the program's own name included
std::vector<Step> parseCommandLine(const QStringList &arguments);

/// Whether the switches build the tabs from nothing: the first argument is `-ng`, `-obk` or `-pb`.
bool startsWithoutTabs(const QStringList &arguments);

/// What to say about a tab number beyond the tabs that the panel really shows.
QString rangeComplaint(const workbench::Panel &panel);

}  // namespace app
