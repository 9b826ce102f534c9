#pragma once
#include <string>
#include <vector>

namespace console
{

using Row = std::vector<std::string>;

/// Columns as wide as their widest cell, two blanks between them, none at the end of a line.
/// @param rows  UTF-8; a row may have fewer cells than others
/// @return one line for each row, each with its line feed
std::string alignedTable(const std::vector<Row> &rows);

}  // namespace console
