#pragma once
#include <QString>

namespace app
{

/// What a file is that no tab shows, told from its bytes as the companion program for the console
/// tells it: the kind of package and its fields, not checked against any key; or why it is none.
/// @return lines without a line feed at the end
QString describePackage(const QString &path);

}  // namespace app
