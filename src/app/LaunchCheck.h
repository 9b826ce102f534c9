#pragma once
#include <QByteArrayList>
#include <QString>

#include <functional>
#include <optional>

namespace app
{

/// What `--help` and `--version` print, wherever they stand among the arguments; the first one
/// counts. Needs no display and no application object.
/// @return the text with its line feed, or nothing when neither is there
std::optional<QByteArray> textForQuestion(const QByteArrayList &arguments);

/// Whether there is a screen to open a window on. Platforms other than X11 and Wayland, chosen by
/// `-platform` or QT_QPA_PLATFORM, need none.
/// @param variable  reads an environment variable; empty when unset
bool canOpenWindow(const QByteArrayList &arguments,
                   const std::function<QByteArray(const char *)> &variable);

}  // namespace app
