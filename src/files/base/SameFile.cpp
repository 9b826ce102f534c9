#include "files/base/SameFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>

namespace files
{

namespace
{

QString resolved(const QString &path)
{
    const QFileInfo info(path);
    const QString folder = QFileInfo(info.absolutePath()).canonicalFilePath();
    return QDir::cleanPath((folder.isEmpty() ? info.absolutePath() : folder) + QLatin1Char('/') +
                           info.fileName());
}

}  // namespace

bool isSameFile(const QString &one, const QString &other)
{
    if (one.isEmpty() || other.isEmpty()) {
        return false;
    }
    struct stat a = {};
    struct stat b = {};
    if (::stat(QFile::encodeName(one).constData(), &a) == 0 &&
        ::stat(QFile::encodeName(other).constData(), &b) == 0) {
        return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
    }
    return resolved(one) == resolved(other);
}

}  // namespace files
