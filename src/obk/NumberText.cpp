#include "obk/NumberText.h"

#include <QByteArray>

#include <algorithm>

namespace obk
{

namespace
{

bool hasHexPrefix(const QString &text)
{
    return text.startsWith(QLatin1String("0x"), Qt::CaseInsensitive);
}

int hexDigit(QChar c)
{
    const auto u = c.unicode();
    if (u >= '0' && u <= '9') {
        return u - '0';
    }
    const auto lower = u | 0x20;
    return u < 0x80 && lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

}  // namespace

tl::unexpected<files::Error> refuse(const QString &text)
{
    return files::fail(files::ErrorCode::Refused, text.toStdString());
}

bool isHex(const QString &text)
{
    return text.size() >= 3 && hasHexPrefix(text) &&
           std::all_of(text.begin() + 2, text.end(), [](QChar c) { return hexDigit(c) >= 0; });
}

bool isDecimal(const QString &text)
{
    return std::all_of(text.begin(), text.end(),
                       [](QChar c) { return c.unicode() >= '0' && c.unicode() <= '9'; });
}

QString convDecToHex(const QString &text)
{
    return QLatin1String("0x") + QString::number(text.toULongLong(), 16).toUpper();
}

std::uint64_t lowLong(const QString &text)
{
    if (!isHex(text)) {
        return text.toULongLong();
    }
    std::uint64_t value = 0;
    for (int at = 2; at < text.size(); ++at) {
        value = value << 4 | static_cast<std::uint64_t>(hexDigit(text[at]));
    }
    return value;
}

std::uint32_t lowWord(const QString &text)
{
    return static_cast<std::uint32_t>(lowLong(text) & 0xFFFFFFFF);
}

bool widthValid(std::int64_t width)
{
    return width >= 1 && width <= 8;
}

bool widthValidText(std::int64_t length, std::int64_t maximum, std::int64_t minimum)
{
    return minimum <= length && length <= maximum;
}

Result<void> checkNumber(const QString &value, const QString &name, std::int32_t width)
{
    if (!widthValid(width)) {
        return refuse(QStringLiteral(" \"%1\" : is Wrong width value ").arg(width));
    }
    const QString start =
        QStringLiteral(" \"%1\" value for \"%2\" is incorrect, ").arg(value, name);
    const int limit = width * 2 + 2;
    if (!isDecimal(value)) {
        if (value.size() < 3 || value.size() > limit) {
            return refuse(
                start +
                QStringLiteral("the value should be written on max : \"%1\" Bytes.").arg(width));
        }
        if (!isHex(value)) {
            return refuse(start + QLatin1String("values should be hexadecimal or decimal."));
        }
        return {};
    }
    bool fits = true;
    if (!value.isEmpty()) {
        value.toULongLong(&fits);
    }
    if (!fits || convDecToHex(value).size() > limit) {
        return refuse(start + QStringLiteral("max width value is : \"%1\" Bytes.").arg(width));
    }
    return {};
}

Result<void> checkPassword(const QString &password, std::int32_t maximum, std::int32_t minimum)
{
    const int length = password.toUtf8().size();
    if (!widthValidText(length, maximum, minimum)) {
        return refuse(QStringLiteral("  \" %1 \" : is Wrong width value ").arg(length));
    }
    return {};
}

Result<std::vector<std::uint8_t>> numberBytes(const QString &value, const QString &name,
                                              std::int32_t width)
{
    // Digits count by the pair, so a leading zero that fills no byte is still too much.
    if (widthValid(width) && isHex(value) && (value.size() - 1) / 2 > width) {
        return refuse(
            QStringLiteral("Fail OBkey Generation Wrong Data Size %1 for %2 \n").arg(value, name));
    }
    if (auto checked = checkNumber(value, name, width); !checked) {
        return tl::unexpected<files::Error>(std::move(checked).error());
    }
    const std::uint64_t number = lowLong(value);
    std::vector<std::uint8_t> bytes;
    for (int shift = 0; shift < 8 * width; shift += 8) {
        bytes.push_back(static_cast<std::uint8_t>(number >> shift));
    }
    return bytes;
}

}  // namespace obk
