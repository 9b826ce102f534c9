#pragma once
#include <QString>

#include <cstdint>

namespace files
{

/// A size for a table: below 1024 the number and `byteUnit`, below 0x100000 " KB", above " MB",
/// the latter two with three significant digits (`%.3g`) and a point in every locale.
QString sizeText(std::uint64_t bytes, const char *byteUnit = " B");

}  // namespace files
