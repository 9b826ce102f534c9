#pragma once
#include "report/Level.h"

namespace crypto
{

/// Reports a finished text as it stands; it may hold percent signs.
inline void tell(report::Level level, const wchar_t *text)
{
    report::message(level, L"%ls", text);
}

/// Reports a failure at level 5. @return `code`, so that a refusal is one line
inline int refuse(const wchar_t *text, int code = -1)
{
    tell(report::Level::Error, text);
    return code;
}

}  // namespace crypto
