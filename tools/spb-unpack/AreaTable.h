#pragma once
#include "preparation/ImageOpener.h"

#include <string>

namespace unpack
{

/// The areas as a table for people; after it, for an authentic image, one table for each kind of
/// area whose plain bytes begin or end with fields of their own.
std::string areaTable(const preparation::OpenedImage &image);

/// The same as one JSON object, with a line feed at the end.
std::string areaJson(const preparation::OpenedImage &image);

}  // namespace unpack
