#include "files/base/SizeText.h"

namespace files
{

QString sizeText(std::uint64_t bytes, const char *byteUnit)
{
    if (bytes < 1024) {
        return QString::number(bytes) + QLatin1String(byteUnit);
    }
    // QString::number has a point whatever the locale says, unlike printf.
    if (bytes < 0x100000) {
        return QString::number(static_cast<double>(bytes) / 1024, 'g', 3) + QLatin1String(" KB");
    }
    return QString::number(static_cast<double>(bytes) / 0x100000, 'g', 3) + QLatin1String(" MB");
}

}  // namespace files
