#pragma once
#include "files/base/Result.h"
#include "workbench/forms/SavedGroup.h"

#include <QSize>
#include <QString>

#include <vector>

namespace app
{

/// What the settings file holds of the window. Its defaults are those of a first run.
struct SavedWindow {
    QSize size;  ///< read from the key "size", written under "Size": invalid for our own files
    QString lastFolder;
    bool paddingFF = true;
    bool generateSettingsFile = true;
    bool generateLogFile = false;
    QString logFilePath;
};

/// The window and the groups of the tabs. Each tab knows the keys of its own.
struct SavedState {
    struct Named {
        QString name;
        workbench::SavedGroup group;
    };
    SavedWindow window;
    std::vector<Named> groups;  ///< written in this order

    /// @return an empty group when there is none of the name
    [[nodiscard]] workbench::SavedGroup group(const QString &name) const;
};

/// Reads a settings file. A value that is missing keeps its default, one of a wrong type reads as
/// empty, 0 or false.
/// @return the state; NotFound, NotRegular, CannotOpen, TooLarge (above 4 MiB), ReadFailed;
/// BadValue
///         for one that holds a stream of Qt ("@Variant(") that is no list of one number or text:
///         reading it could allocate any amount of memory
files::Result<SavedState> readSettings(const QString &path);

/// Writes the state whole or not at all, readable by its owner only. Keys that this version has no
/// form for stay as they are, but nothing stays of a file that `readSettings` finds a BadValue in.
/// @return CannotOpen for a file that may not be changed, WriteFailed
files::Result<void> writeSettings(const QString &path, const SavedState &state);

}  // namespace app
