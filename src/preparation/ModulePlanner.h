#pragma once
#include "preparation/Plan.h"

namespace preparation
{

/// Appends the areas `M` and `m` of a modules list; null is an empty list.
/// @return BadValue when the record isn't a modules list, counts more than it holds, has an entry
///         without bytes or an identifier longer than 16 bytes
files::Result<void> addModules(Plan &plan, const FileMCSV *modules);

/// Appends an area `M` for each secure module image, whole.
/// @return BadValue when one isn't a readable module image of version 1 and the size it tells
files::Result<void> addSmiFiles(Plan &plan, const std::vector<const FileData *> &smiFiles);

}  // namespace preparation
