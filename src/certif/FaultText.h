#pragma once
#include "files/base/Result.h"

#include <QFileInfo>
#include <QString>

namespace certif
{

/// "path: reason". Reasons of the system begin with the file's name, which isn't said twice.
inline std::string faultText(const QString &path, const files::Error &error)
{
    const std::string name = QFileInfo(path).fileName().toStdString() + ": ";
    const bool isNamed = error.text.starts_with(name);
    return path.toStdString() + ": " + (isNamed ? error.text.substr(name.size()) : error.text);
}

}  // namespace certif
