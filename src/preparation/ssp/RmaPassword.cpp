#include "preparation/ssp/RmaPassword.h"

#include <algorithm>
#include <optional>

namespace preparation
{

namespace
{

constexpr std::uint32_t kLimit = 0x8000;

std::optional<std::uint32_t> valueOf(const QString &text)
{
    if (text.size() < 3 || !text.startsWith(QLatin1String("0x"), Qt::CaseInsensitive)) {
        return std::nullopt;
    }
    std::uint32_t value = 0;
    for (int i = 2; i < text.size(); ++i) {
        const ushort unit = text[i].unicode();
        const ushort lower = unit | 0x20;
        const bool isDigit = unit >= '0' && unit <= '9';
        if (!isDigit && (unit > 0x7F || lower < 'a' || lower > 'f')) {
            return std::nullopt;
        }
        value = value * 16 + static_cast<std::uint32_t>(isDigit ? unit - '0' : lower - 'a' + 10);
        if (value >= kLimit) {
            return std::nullopt;
        }
    }
    return value;
}

}  // namespace

files::Result<std::uint32_t> joinRmaPasswords(const QString &unlock, const QString &relock)
{
    const auto low = valueOf(unlock);
    const auto high = valueOf(relock);
    if (!low || !high) {
        return files::fail(files::ErrorCode::BadValue,
                           std::string("The RMA ") + (low ? "relock" : "unlock") +
                               " password must be 0x and hexadecimal digits, below 0x8000");
    }
    return *low | *high << 16;
}

}  // namespace preparation
