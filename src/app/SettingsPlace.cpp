#include "app/SettingsPlace.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>

namespace app
{

namespace
{

/// A folder of the environment; relative paths are to be ignored.
QString folderOf(const char *variable)
{
    const QString folder = QFile::decodeName(qgetenv(variable));
    return QDir::isAbsolutePath(folder) ? folder : QString();
}

QString configurationFolder()
{
    QString told = folderOf("XDG_CONFIG_HOME");
    if (!told.isEmpty()) {
        return told;
    }
    const QString home = folderOf("HOME");
    return home.isEmpty() ? QString() : home + QLatin1String("/.config");
}

}  // namespace

QString settingsPlace(const QString &folder)
{
    QString beside = folder + QLatin1String("/Settings.ini");
    if (QFileInfo(folder).isWritable()) {
        return beside;
    }
    const QString ownFolder = configurationFolder();
    return ownFolder.isEmpty() ? QString()
                               : ownFolder + QLatin1String("/sealed-package-builder/Settings.ini");
}

void makeSettingsFolder(const QString &path)
{
    const QString folder = QFileInfo(path).absolutePath();
    if (QFileInfo::exists(folder)) {
        return;
    }
    // The configuration folder itself is asked for as owner-only, too, by the XDG rules.
    const QString parent = QFileInfo(folder).absolutePath();
    ::mkdir(QFile::encodeName(parent).constData(), S_IRWXU);
    ::mkdir(QFile::encodeName(folder).constData(), S_IRWXU);
}

}  // namespace app
