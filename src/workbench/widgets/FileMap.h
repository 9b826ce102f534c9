#pragma once
#include "files/base/Records.h"
#include "workbench/widgets/MemoryMapContents.h"

#include <QList>
#include <QStringList>

/// @file
/// From firmware records to the maps of the info panes. No widget, no file access.

namespace workbench
{

/// The memory that the files of a list fill, all together.
/// @param selected  the file whose segments stand in the table, one a row
MapContents mapOfFiles(const QStringList &paths, const QList<FileData *> &records, int selected);

/// The memory that one file fills whose segments stand in the table.
MapContents mapOfFile(const QString &path, const FileData &record);

}  // namespace workbench
