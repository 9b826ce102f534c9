#pragma once
#include "report/DisplayMng.h"

namespace crypto
{

/// Reports a finished text as it stands; it may hold percent signs.
inline void report(int level, const wchar_t *text)
{
    DisplayMng::getInstance().logMessage(level, L"%ls", text);
}

/// Reports a failure at level 5. @return `code`, so that a refusal is one line
inline int refuse(const wchar_t *text, int code = -1)
{
    report(5, text);
    return code;
}

}  // namespace crypto
