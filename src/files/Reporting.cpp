#include "files/Reporting.h"

#include <QFileInfo>

namespace files
{

std::wstring pathAsGiven(const QFile &file)
{
    return file.fileName().toStdWString();
}

std::wstring nameWithoutFolder(const QFile &file)
{
    return QFileInfo(file.fileName()).fileName().toStdWString();
}

void reportText(const Error &error, report::Level level)
{
    if (error.code != ErrorCode::Reported) {
        report::message(level, L"%s", error.text.c_str());
    }
}

}  // namespace files
