#pragma once
#include "files/base/Result.h"
#include "workbench/tabs/sfi/SavedForm.h"

#include <QSize>
#include <QString>

namespace app
{

/// What the settings file holds for this version's forms. Its defaults are those of a first run.
struct SavedState {
    QSize
        windowSize;  ///< read from the key "size", written under "Size": invalid for our own files
    QString lastFolder;
    bool paddingFF = true;
    bool generateSettingsFile = true;
    bool generateLogFile = false;
    QString logFilePath;
    workbench::SavedForm sfi;
    workbench::SavedForm sfix;
};

/// Reads a settings file. A value that is missing keeps its default, one of a wrong type reads as
/// empty, 0 or false.
/// @return the state; NotFound, NotRegular, CannotOpen, TooLarge (above 4 MiB), ReadFailed
files::Result<SavedState> readSettings(const QString &path);

/// Writes the state whole or not at all, readable by its owner only. Keys that this version has no
/// form for stay as they are.
/// @return CannotOpen for a file that may not be changed, WriteFailed
files::Result<void> writeSettings(const QString &path, const SavedState &state);

}  // namespace app
