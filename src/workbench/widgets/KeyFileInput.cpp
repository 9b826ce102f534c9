#include "workbench/widgets/KeyFileInput.h"

#include "files/base/KeyFile.h"
#include "workbench/widgets/Boxes.h"
#include "workbench/widgets/FileChoice.h"

#include <QFileInfo>

#include <cstring>

namespace workbench
{

namespace
{

QString refusalText(files::ErrorCode code, const QString &name, unsigned char expectedSize)
{
    if (code == files::ErrorCode::NotFound) {
        return QStringLiteral("The file ") + name +
               QStringLiteral(" does not exist, please check the file's path");
    }
    if (code == files::ErrorCode::WrongSize && expectedSize != 0) {
        return QStringLiteral("Size of ") + name + QStringLiteral(" is expected to be ") +
               QString::number(expectedSize) + QStringLiteral(" bytes");
    }
    return QStringLiteral("Unable to open the file ") + name;
}

}  // namespace

files::Result<QByteArray> readKeyInput(const QString &path, unsigned char expectedSize)
{
    const auto secret = files::readKeyFile(path, expectedSize);
    if (!secret) {
        const QString name = QFileInfo(path).fileName();
        traceIfMissing(path);
        return files::fail(secret.error().code,
                           refusalText(secret.error().code, name, expectedSize).toStdString());
    }
    QByteArray bytes(static_cast<int>(secret->size()), Qt::Uninitialized);
    if (!bytes.isEmpty()) {
        std::memcpy(bytes.data(), secret->data(), secret->size());
    }
    return bytes;
}

bool openFile(QWidget *parent, const QString &path, QByteArray &out, unsigned char expectedSize)
{
    out.clear();
    auto bytes = readKeyInput(path, expectedSize);
    if (!bytes) {
        showBox(parent, BoxKind::Error, QString::fromStdString(bytes.error().text));
        return false;
    }
    out = std::move(*bytes);
    return true;
}

}  // namespace workbench
