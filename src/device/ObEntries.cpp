#include "device/ObEntries.h"

namespace device
{

QString proposedCsvPath(const QString &folder, int index)
{
    QString start = folder + QLatin1Char('\\');
    if (index < 1 || index >= static_cast<int>(kObEntries.size())) {
        return start;
    }
    const ObEntry &entry = kObEntries[static_cast<std::size_t>(index)];
    const bool keepsSlash = entry.id == 0x462 || entry.id == 0x492;
    return start + QLatin1String(entry.fileName + (keepsSlash ? 0 : 1));
}

int failedCsvLevel(int index)
{
    return index == 4 || index == 5 ? 0 : 5;
}

}  // namespace device
