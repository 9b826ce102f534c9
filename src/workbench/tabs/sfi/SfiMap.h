#pragma once
#include "files/base/Records.h"
#include "workbench/widgets/InfoContents.h"

#include <functional>
#include <optional>

/// @file
/// From images to the maps of the info panes. No widget, no file access.

namespace workbench
{

/// The memory that the areas of an image fill.
/// @param coloursOf  of the table's row of an area, by its letter
MapContents mapOfImage(const FileSFI &image,
                       const std::function<std::optional<RowColours>(std::uint8_t)> &coloursOf);

}  // namespace workbench
