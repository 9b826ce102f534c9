#include "workbench/widgets/NotedItemDelegate.h"

#include "workbench/widgets/Contrast.h"
#include "workbench/widgets/FileRows.h"
#include "workbench/widgets/SelectedRow.h"

#include <QApplication>
#include <QPainter>

namespace workbench
{

namespace
{

constexpr int kGap = 12;  // between name and note
constexpr int kLeastNote = 60;
constexpr double kNoteShare = 0.68;  // of the way from the row's ground to its text

}  // namespace

void NotedItemDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                              const QModelIndex &index) const
{
    QStyleOptionViewItem row = option;
    initStyleOption(&row, index);
    const QStyle *style = row.widget != nullptr ? row.widget->style() : QApplication::style();
    const QString name = row.text;
    const QString note = index.data(FileRows::kMutedRole).toString();
    const bool isSelected = row.state.testFlag(QStyle::State_Selected);
    QColor ground = row.palette.color(QPalette::Base);
    QColor text = row.palette.color(QPalette::Text);
    painter->save();
    row.text.clear();
    row.state &= ~(QStyle::State_Selected | QStyle::State_HasFocus);
    style->drawControl(QStyle::CE_ItemViewItem, &row, painter, row.widget);
    if (isSelected) {
        const SelectedLook look = selectedLook(option, ground, text);
        painter->fillRect(option.rect, look.shade);
        painter->setPen(look.frame);
        painter->drawRect(QRectF(option.rect).adjusted(1, 1, -1, -1));
        ground = look.shade;
        text = look.text;
        row.icon.paint(painter,
                       style->subElementRect(QStyle::SE_ItemViewItemDecoration, &row, row.widget));
    }
    row.text = name;
    QRect room =
        style->subElementRect(QStyle::SE_ItemViewItemText, &row, row.widget).adjusted(2, 0, -2, 0);
    room.setRight(option.rect.right() - 4);
    const QFontMetrics &metrics = row.fontMetrics;
    const int noteWidth = note.isEmpty() ? 0 : metrics.horizontalAdvance(note) + kGap;
    const int nameRoom = qMax(room.width() / 2, room.width() - noteWidth);
    const QString shownName = metrics.elidedText(name, Qt::ElideMiddle, nameRoom);
    painter->setPen(text);
    painter->drawText(room, Qt::AlignLeft | Qt::AlignVCenter, shownName);
    room.setLeft(room.left() + metrics.horizontalAdvance(shownName) + kGap);
    if (room.width() >= kLeastNote) {
        painter->setPen(legible(mixed(ground, text, kNoteShare), ground, text));
        painter->drawText(room, Qt::AlignLeft | Qt::AlignVCenter,
                          metrics.elidedText(note, Qt::ElideLeft, room.width()));
    }
    painter->restore();
}

}  // namespace workbench
