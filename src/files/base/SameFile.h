#pragma once
#include <QString>

namespace files
{

/// Whether two paths lead to one file, also by links; a file that doesn't exist yet counts by its
/// folder and name. A path without a name is no file.
bool isSameFile(const QString &one, const QString &other);

}  // namespace files
