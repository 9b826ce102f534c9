#pragma once
#include <QString>

namespace obk
{

/// Whether two paths lead to one file, also by links; a file that doesn't exist yet counts by its
/// folder and name.
bool isSameFile(const QString &one, const QString &other);

}  // namespace obk
