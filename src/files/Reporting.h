#pragma once
#include "files/base/Result.h"
#include "report/Level.h"

#include <QFile>

#include <string>

namespace files
{

/// The two ways in which messages name a file, as `%ls` arguments.
std::wstring pathAsGiven(const QFile &file);
std::wstring nameWithoutFolder(const QFile &file);

/// Reports an error whose text is the whole message; one that was Reported already says nothing.
void reportText(const Error &error, report::Level level = report::Level::Error);

}  // namespace files
