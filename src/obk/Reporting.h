#pragma once
#include "files/base/Result.h"
#include "report/Level.h"

#include <QString>

namespace obk
{

/// Reports a finished text as it stands; it may hold percent signs.
inline void tell(report::Level level, const QString &text)
{
    report::message(level, L"%s", text.toUtf8().constData());
}

/// Reports a refusal at level 5. @return false for one, true otherwise
template <typename T>
bool isGood(const files::Result<T> &result)
{
    if (!result) {
        tell(report::Level::Error, QString::fromStdString(result.error().text));
    }
    return result.has_value();
}

}  // namespace obk
