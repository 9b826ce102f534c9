#pragma once
#include <QString>

#include <cstdint>
#include <optional>

namespace workbench
{

/// Converts a number that the user typed: "0x" hexadecimal, a leading 0 octal, else decimal; white
/// space around it is ignored.
/// @return nothing for text that isn't an unsigned 32-bit number
inline std::optional<std::uint32_t> unsignedFromText(const QString &text)
{
    bool ok = false;
    const std::uint32_t value = text.trimmed().toUInt(&ok, 0);
    return ok ? std::optional(value) : std::nullopt;
}

}  // namespace workbench
