#pragma once
#include "files/base/Result.h"

#include <QString>

#include <cstdint>
#include <vector>

namespace obk
{

template <typename T>
using Result = files::Result<T>;

/// A refusal whose text is shown as it stands.
tl::unexpected<files::Error> refuse(const QString &text);

/// "0x" or "0X" and at least one hexadecimal digit, nothing else.
bool isHex(const QString &text);

/// Decimal digits (ASCII) alone; an empty text is decimal.
bool isDecimal(const QString &text);

/// "0x" and the upper-case hexadecimal form of an unsigned 64-bit decimal. A text that is none, or
/// doesn't fit, reads as 0.
QString convDecToHex(const QString &text);

/// The low 32 bits of a number: hexadecimal when isHex, otherwise decimal (a text that is neither,
/// or a decimal beyond 64 bits, reads as 0).
std::uint32_t lowWord(const QString &text);

/// The low 64 bits of a number; the rest is as in lowWord.
std::uint64_t lowLong(const QString &text);

bool widthValid(std::int64_t width);  ///< 1 to 8 bytes

/// A password's length against both bounds, all in bytes.
bool widthValidText(std::int64_t length, std::int64_t maximum, std::int64_t minimum);

/// The rule of every number field: a hexadecimal value is measured by its written length, a decimal
/// one by its value.
/// @return the sentence for the user
Result<void> checkNumber(const QString &value, const QString &name, std::int32_t width);

/// The rule of a password: bytes of UTF-8 between `minimum` and `maximum`.
Result<void> checkPassword(const QString &password, std::int32_t maximum, std::int32_t minimum);

/// A number as `width` bytes, lowest first.
/// @return a refusal for hexadecimal digits of more than `width` bytes (leading zeros count), and
///         for what checkNumber refuses; never 0 for a text that isn't a number
Result<std::vector<std::uint8_t>> numberBytes(const QString &value, const QString &name,
                                              std::int32_t width);

}  // namespace obk
