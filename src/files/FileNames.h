#pragma once
#include <QFile>

#include <string>

namespace files
{

/// The two ways in which messages name a file, as `%ls` arguments.
std::wstring pathAsGiven(const QFile &file);
std::wstring nameWithoutFolder(const QFile &file);

}  // namespace files
