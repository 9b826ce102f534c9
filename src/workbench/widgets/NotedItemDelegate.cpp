#include "workbench/widgets/NotedItemDelegate.h"

#include "workbench/widgets/FileRows.h"

#include <QApplication>
#include <QPainter>

namespace workbench
{

namespace
{

constexpr int kGap = 12;  // between name and note
constexpr int kLeastNote = 60;

/// Between two colours, `share` percent of the second.
QColor between(const QColor &one, const QColor &other, int share)
{
    const auto mix = [share](int a, int b) { return a + (b - a) * share / 100; };
    return {mix(one.red(), other.red()), mix(one.green(), other.green()),
            mix(one.blue(), other.blue())};
}

void paintSelection(QPainter *painter, const QStyleOptionViewItem &option)
{
    const bool hasFocus = option.state.testFlag(QStyle::State_Active) && option.widget != nullptr &&
                          option.widget->hasFocus();
    const QColor base = option.palette.color(QPalette::Base);
    const QColor text = option.palette.color(QPalette::Text);
    painter->fillRect(option.rect, between(base, text, hasFocus ? 22 : 12));
    painter->setPen(QPen(between(base, text, hasFocus ? 85 : 45), hasFocus ? 2 : 1));
    painter->drawRect(QRectF(option.rect).adjusted(1, 1, -1, -1));
}

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
    painter->save();
    row.text.clear();
    row.state &= ~(QStyle::State_Selected | QStyle::State_HasFocus);
    style->drawControl(QStyle::CE_ItemViewItem, &row, painter, row.widget);
    if (isSelected) {
        paintSelection(painter, option);
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
    painter->setPen(row.palette.color(QPalette::Text));
    painter->drawText(room, Qt::AlignLeft | Qt::AlignVCenter, shownName);
    room.setLeft(room.left() + metrics.horizontalAdvance(shownName) + kGap);
    if (room.width() >= kLeastNote) {
        // Two thirds of the way to the text keep 4.5:1 on light and dark desktops.
        painter->setPen(
            between(row.palette.color(QPalette::Base), row.palette.color(QPalette::Text), 68));
        painter->drawText(room, Qt::AlignLeft | Qt::AlignVCenter,
                          metrics.elidedText(note, Qt::ElideLeft, room.width()));
    }
    painter->restore();
}

}  // namespace workbench
