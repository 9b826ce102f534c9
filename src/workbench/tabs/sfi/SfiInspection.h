#pragma once
#include "files/base/Records.h"
#include "workbench/widgets/InfoContents.h"

#include <QString>

#include <cstdint>

/// @file
/// From records to the tables of the info panes. No widget, no file access.

namespace workbench
{

/// The panes before their first use: headings, no values.
PaneContents emptyFirmwarePane();
PaneContents emptyExternalPane();  ///< with the three rows that external firmware adds
PaneContents emptyImagePane();

/// A file of a firmware, SMI or OBKey list.
PaneContents describeFirmware(const QString &path, const FileData &record);

/// A file of the external list.
/// @param info  what the user told about it; null when there is no such record
PaneContents describeExternal(const QString &path, const FileData &record, const ExtBinInfo *info);

/// A protected image.
/// @param fileBytes  size of the file
/// @param version    text of the "Protocol version" cell
PaneContents describeImage(const QString &path, std::uint64_t fileBytes, const FileSFI &image,
                           const QString &version);

/// A modules list.
PaneContents describeModules(const QString &path, std::uint64_t fileBytes, const FileMCSV &list);

}  // namespace workbench
