#pragma once
#include "files/base/Records.h"
#include "workbench/widgets/InfoContents.h"

#include <QList>
#include <QStringList>

#include <functional>

/// @file
/// From records to the maps of the info panes. No widget, no file access.

namespace workbench
{

/// The memory that the files of a list fill, all together.
/// @param selected  the file whose segments stand in the table
MapContents mapOfFiles(const QStringList &paths, const QList<FileData *> &records, int selected);

/// The memory that the areas of an image fill.
/// @param coloursOf  of the table's row of an area, by its letter
MapContents mapOfImage(const FileSFI &image,
                       const std::function<std::optional<RowColours>(std::uint8_t)> &coloursOf);

}  // namespace workbench
