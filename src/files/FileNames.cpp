#include "files/FileNames.h"

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

}  // namespace files
