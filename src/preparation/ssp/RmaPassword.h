#pragma once
#include "files/base/Result.h"

#include <QString>

#include <cstdint>

namespace preparation
{

/// Joins the two passwords that open and close a device for failure analysis.
/// @param unlock  "0x" (either case) and hexadecimal digits, below 0x8000
/// @param relock  likewise
/// @return bits 0 to 14 the unlock value, bits 16 to 30 the relock value; BadValue without any of
///         the text, which is a secret
files::Result<std::uint32_t> joinRmaPasswords(const QString &unlock, const QString &relock);

}  // namespace preparation
