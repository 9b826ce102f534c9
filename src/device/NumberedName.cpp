#include "device/NumberedName.h"

#include <algorithm>

namespace device
{

namespace
{

bool isStemCharacter(QChar c)
{
    const ushort code = c.unicode();
    return code == ' ' || (code >= 'a' && code <= 'z') || (code >= 'A' && code <= 'Z');
}

bool isDigit(QChar c)
{
    return c.isDigit();
}

}  // namespace

NumberedName splitNumberedName(const QString &name)
{
    const QChar *const digits = std::find_if_not(name.begin(), name.end(), isStemCharacter);
    if (digits == name.begin() || digits == name.end() ||
        !std::all_of(digits, name.end(), isDigit)) {
        return {name.toStdString(), 0};
    }
    const int stemLength = static_cast<int>(digits - name.begin());
    return {name.left(stemLength).toStdString(),
            static_cast<std::uint32_t>(decimalNumber(name.mid(stemLength)))};
}

std::uint64_t hexadecimalNumber(const QString &text)
{
    return std::stoul(text.toStdString(), nullptr, 16);
}

std::uint64_t decimalNumber(const QString &text)
{
    return std::stoul(text.toStdString(), nullptr, 10);
}

}  // namespace device
