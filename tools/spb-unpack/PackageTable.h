#pragma once
#include "preparation/listing/PackageReport.h"

namespace unpack
{

/// A package's kind and fields as a table for people, then one table for each of its lists.
std::string reportTable(const preparation::PackageReport &report);

}  // namespace unpack
