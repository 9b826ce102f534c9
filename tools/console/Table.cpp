#include "tools/console/Table.h"

#include <algorithm>

namespace console
{

namespace
{

/// Characters, not bytes: those that continue one in UTF-8 take no room.
std::size_t widthOf(const std::string &cell)
{
    return static_cast<std::size_t>(
        std::count_if(cell.begin(), cell.end(), [](char byte) { return (byte & 0xC0) != 0x80; }));
}

}  // namespace

std::string alignedTable(const std::vector<Row> &rows)
{
    std::vector<std::size_t> widths;
    for (const Row &row : rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (std::size_t i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], widthOf(row[i]));
        }
    }
    std::string text;
    for (const Row &row : rows) {
        std::string line;
        for (std::size_t i = 0; i < row.size(); ++i) {
            line += row[i] + std::string(widths[i] - widthOf(row[i]) + 2, ' ');
        }
        line.erase(line.find_last_not_of(' ') + 1);
        text += line + "\n";
    }
    return text;
}

}  // namespace console
