#pragma once
#include "files/base/Records.h"
#include "files/base/Result.h"

#include <string_view>

namespace files
{

/// The two dialects of an option-bytes file.
enum class ValueTable {
    Pairs,       ///< `.csv`: address and value in turns, values by the C prefixes
    BareValues,  ///< `.kcsv`: values alone, hexadecimal
};

/// Reads a table of 32-bit values into one segment at address 0, each value lowest byte first, with
/// a zero byte behind the last.
/// @return BadValue for a line without a comma, with half a pair or with a field that is no number:
///         the message names the file, the text the line from 1; NoMemory with the message
Result<RecordOwner<FileData>> readValues(std::string_view text, ValueTable table);

}  // namespace files
