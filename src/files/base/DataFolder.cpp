#include "files/base/DataFolder.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace files
{

QString installedPath(const QString &name)
{
    return installedPath(QCoreApplication::applicationDirPath(), name);
}

QString installedPath(const QString &folder, const QString &name)
{
    QString beside = folder + QLatin1Char('/') + name;
    if (QFileInfo::exists(beside)) {
        return beside;
    }
    for (const char *up : {"/../share/", "/../../share/"}) {
        QString shared = QDir::cleanPath(folder + QLatin1String(up) +
                                         QLatin1String("sealed-package-builder/") + name);
        if (QFileInfo::exists(shared)) {
            return shared;
        }
    }
    return beside;
}

}  // namespace files
