#include "workbench/widgets/Boxes.h"

#include <QFileInfo>
#include <QMessageBox>

namespace workbench
{

namespace
{

QMessageBox::Icon iconOf(BoxKind kind)
{
    switch (kind) {
    case BoxKind::Warning:
        return QMessageBox::Warning;
    case BoxKind::Error:
        return QMessageBox::Critical;
    case BoxKind::Information:
    case BoxKind::Success:
        break;
    }
    return QMessageBox::Information;
}

QString titleOf(BoxKind kind)
{
    switch (kind) {
    case BoxKind::Success:
        return QStringLiteral("Success");
    case BoxKind::Warning:
        return QStringLiteral("Warning");
    case BoxKind::Error:
        return QStringLiteral("Error");
    case BoxKind::Information:
        break;
    }
    return QStringLiteral("Information");
}

}  // namespace

void showBox(QWidget *parent, BoxKind kind, const QString &text)
{
    QMessageBox box(iconOf(kind), titleOf(kind), text, QMessageBox::Ok, parent);
    box.setTextFormat(Qt::PlainText);
    box.exec();
}

bool askYesNo(QWidget *parent, BoxKind kind, const QString &title, const QString &text)
{
    const auto icon = kind == BoxKind::Warning ? QMessageBox::Warning : QMessageBox::Question;
    QMessageBox box(icon, title, text, QMessageBox::Yes | QMessageBox::No, parent);
    box.setTextFormat(Qt::PlainText);
    box.setDefaultButton(QMessageBox::No);
    box.setEscapeButton(QMessageBox::No);
    return box.exec() == QMessageBox::Yes;
}

bool confirmOverwrite(QWidget *parent, const QString &path)
{
    const QFileInfo file(path);
    if (!file.exists()) {
        return true;
    }
    return askYesNo(parent, BoxKind::Information, QStringLiteral("File exists"),
                    QStringLiteral("The file ") + file.fileName() +
                        QStringLiteral(" already exists, do you want to overwrite it ?"));
}

}  // namespace workbench
