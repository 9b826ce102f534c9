#pragma once
#include <QString>

#include <cstdint>
#include <string>

namespace device
{

/// A name such as "Sector12", split for counting on.
struct NumberedName {
    std::string stem;         ///< UTF-8
    std::uint32_t start = 0;  ///< the number behind the stem; 0 without one
};

/// Splits letters (a to z in both cases) and blanks from the decimal digits behind them. Any other
/// name is a stem as a whole.
/// @throw std::invalid_argument for digits other than 0 to 9 (every script's count as such),
///        std::out_of_range for a number beyond 64 bits
NumberedName splitNumberedName(const QString &name);

/// A text's number as the database writes it, with or without "0x": leading blanks, a sign and
/// rubbish behind the digits are accepted, the value has 64 bits.
/// @throw std::invalid_argument without a digit, std::out_of_range beyond 64 bits
std::uint64_t hexadecimalNumber(const QString &text);
std::uint64_t decimalNumber(const QString &text);

}  // namespace device
