#pragma once
#include <QMimeData>
#include <QStringList>

namespace workbench
{

/// Paths of the local files in a drag; folders, which no file dialog would offer, are left out.
QStringList droppedFiles(const QMimeData &data);

}  // namespace workbench
