#pragma once
#include <QString>

#include <functional>

class QWidget;

namespace workbench
{

struct LongWorkTimes {
    int quietMs = 500;   ///< what is done by then needs no box
    int repaintMs = 50;  ///< between two looks at the box
};
/// Tests have no time to wait.
inline LongWorkTimes longWorkTimes;

/// Runs a request with the wait cursor. When its files take longer than half a second, a box says
/// which file is read, encrypted or written and how far it is; the window is painted meanwhile and
/// takes nothing but the box's "Cancel". Inside another such request it is a part of that one.
/// @param parent  of the box
/// @param file    what is encrypted or decrypted, for the box; reading and writing name theirs
/// @return false when the user cancelled: no output file has been put in its place then
bool whileBusy(QWidget *parent, const std::function<void()> &work, const QString &file = {});

}  // namespace workbench
