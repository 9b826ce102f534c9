#include "PackageTable.h"

#include "tools/console/Table.h"

namespace unpack
{

std::string reportTable(const preparation::PackageReport &report)
{
    std::string text = report.kind() + "\n" + console::alignedTable(report.fields());
    for (const auto &[heading, rows] : report.lists()) {
        text += "\n" + heading + "\n" + console::alignedTable(rows);
    }
    return text;
}

}  // namespace unpack
