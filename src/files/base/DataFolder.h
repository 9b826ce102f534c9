#pragma once
#include <QString>

namespace files
{

/// Where a file or folder lies that came with the program: beside the executable, or else in the
/// installation's data folder, `share/sealed-package-builder` one or two folders above it.
/// @param name relative to either place, such as "Template/OBkeyPrototype.xsd"
/// @return an absolute path; the one beside the executable when neither exists
QString installedPath(const QString &name);

/// The same for an executable in `folder`.
QString installedPath(const QString &folder, const QString &name);

}  // namespace files
