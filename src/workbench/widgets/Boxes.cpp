#include "workbench/widgets/Boxes.h"

#include "workbench/widgets/WrappingLabel.h"

#include <QFileInfo>
#include <QGridLayout>
#include <QGuiApplication>
#include <QLabel>
#include <QMessageBox>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>

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
    case BoxKind::CriticalInformation:
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
    case BoxKind::CriticalInformation:
        break;
    }
    return QStringLiteral("Information");
}

/// Room for a text: what is left of the screen beside icon, buttons and the window's frame.
QSize roomForText(const QMessageBox &box)
{
    const QScreen *screen = box.parentWidget() != nullptr ? box.parentWidget()->screen()
                                                          : QGuiApplication::primaryScreen();
    const QSize free = screen->availableSize();
    return {qMin(700, free.width() * 2 / 3), free.height() * 3 / 5};
}

bool fits(const QString &text, const QFontMetrics &metrics, const QSize &room)
{
    // Without breaks inside words a word may stand out to the right.
    const QRect area(QPoint(), room);
    const QRect needed = metrics.boundingRect(area, Qt::TextWordWrap, text);
    return needed.width() <= room.width() && needed.height() <= room.height();
}

}  // namespace

void fitToScreen(QMessageBox &box)
{
    auto *label = box.findChild<QLabel *>(QStringLiteral("qt_msgbox_label"));
    auto *grid = qobject_cast<QGridLayout *>(box.layout());
    const QSize room = roomForText(box);
    if (label == nullptr || grid == nullptr || fits(box.text(), box.fontMetrics(), room)) {
        return;
    }
    int row = 0;
    int column = 0;
    int rows = 1;
    int columns = 1;
    grid->getItemPosition(grid->indexOf(label), &row, &column, &rows, &columns);
    label->hide();  // it keeps the text that the box tells
    auto *area = new QScrollArea(&box);
    area->setObjectName(QStringLiteral("box_text_area"));
    area->setAccessibleName(box.text());
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    auto *text = new WrappingLabel(box.text(), area, room.width());
    area->setWidget(text);
    const int width = room.width() + area->verticalScrollBar()->sizeHint().width();
    area->setFixedSize(width, qMin(room.height(), text->sizeHint().height()));
    grid->addWidget(area, row, column, rows, columns);
}

void showBox(QWidget *parent, BoxKind kind, const QString &text, const QString &more)
{
    QMessageBox box(iconOf(kind), titleOf(kind), text, QMessageBox::Ok, parent);
    box.setTextFormat(Qt::PlainText);
    box.setInformativeText(more);
    if (auto *label = box.findChild<QLabel *>(QStringLiteral("qt_msgbox_informativelabel"))) {
        label->setTextFormat(Qt::PlainText);
    }
    fitToScreen(box);
    box.exec();
}

bool askYesNo(QWidget *parent, BoxKind kind, const QString &title, const QString &text)
{
    const auto icon = kind == BoxKind::Warning ? QMessageBox::Warning : QMessageBox::Question;
    QMessageBox box(icon, title, text, QMessageBox::Yes | QMessageBox::No, parent);
    box.setTextFormat(Qt::PlainText);
    box.setDefaultButton(QMessageBox::No);
    box.setEscapeButton(QMessageBox::No);
    fitToScreen(box);
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
