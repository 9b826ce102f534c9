#pragma once
#include "files/base/Result.h"
#include "report/DisplayMng.h"

#include <QString>

namespace obk
{

/// Reports a finished text as it stands; it may hold percent signs.
inline void report(int level, const QString &text)
{
    DisplayMng::getInstance().logMessage(level, L"%s", text.toUtf8().constData());
}

/// Reports a refusal at level 5. @return false for one, true otherwise
template <typename T>
bool isGood(const files::Result<T> &result)
{
    if (!result) {
        report(5, QString::fromStdString(result.error().text));
    }
    return result.has_value();
}

}  // namespace obk
