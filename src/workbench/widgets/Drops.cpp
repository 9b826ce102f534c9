#include "workbench/widgets/Drops.h"

#include <QFileInfo>
#include <QUrl>

namespace workbench
{

QStringList droppedFiles(const QMimeData &data)
{
    QStringList paths;
    const QList<QUrl> urls = data.urls();
    for (const QUrl &url : urls) {
        if (url.isLocalFile() && !QFileInfo(url.toLocalFile()).isDir()) {
            paths.append(url.toLocalFile());
        }
    }
    return paths;
}

}  // namespace workbench
