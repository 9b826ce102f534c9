#pragma once
#include <QString>
#include <QStringList>

class QWidget;

namespace workbench
{

/// "Open file" for one file, starting in `lastFolder`, which then holds the chosen path.
/// @return the path; empty when the user cancelled, and then `lastFolder` stays
QString chooseFile(QWidget *parent, QString &lastFolder, const QString &filter);

/// The same for several files; `lastFolder` takes the last of them.
QStringList chooseFiles(QWidget *parent, QString &lastFolder, const QString &filter);

/// Puts the whole path of a file that doesn't exist into the trace: the told sentences have its
/// name alone. To be called when a file couldn't be opened.
void traceIfMissing(const QString &path);

/// Opens a file's folder in the desktop's file manager.
/// @return false when the desktop has none
bool showInFolder(const QString &path);

}  // namespace workbench
