#pragma once
#include "files/base/Records.h"
#include "files/base/Result.h"

#include <QByteArray>

#include <string_view>

namespace files
{

/// A flash layout: its rows, and its text without the binary column and the comments.
struct Layout {
    RecordOwner<FileTSV> record;  ///< with rows, still without text
    QByteArray filtered;
};

/// Reads a flash layout: lines of seven columns with tabs between them, `#` begins a comment. Lines
/// of more than 1,023 bytes count as several.
/// @return BadCount for a line without seven columns, or no row at all; BadValue for an offset that
///         begins with "0x" and isn't hexadecimal, the text being that offset; NoMemory with the
///         message
Result<Layout> readLayout(std::string_view text);

}  // namespace files
