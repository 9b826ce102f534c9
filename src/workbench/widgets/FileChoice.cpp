#include "workbench/widgets/FileChoice.h"

#include "report/Level.h"

#include <QDesktopServices>
#include <QFileDialog>
#include <QFileInfo>
#include <QUrl>

namespace workbench
{

QString chooseFile(QWidget *parent, QString &lastFolder, const QString &filter)
{
    QString path =
        QFileDialog::getOpenFileName(parent, QObject::tr("Open file"), lastFolder, filter);
    if (!path.isEmpty()) {
        lastFolder = path;
    }
    return path;
}

QStringList chooseFiles(QWidget *parent, QString &lastFolder, const QString &filter)
{
    QStringList paths =
        QFileDialog::getOpenFileNames(parent, QObject::tr("Open file"), lastFolder, filter);
    if (!paths.isEmpty()) {
        lastFolder = paths.last();
    }
    return paths;
}

void traceIfMissing(const QString &path)
{
    const QFileInfo file(path);
    if (!file.exists()) {
        report::message(report::Level::Notice, L"There is no such file: %ls",
                        file.absoluteFilePath().toStdWString().c_str());
    }
}

bool showInFolder(const QString &path)
{
    return QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(path).absolutePath()));
}

}  // namespace workbench
