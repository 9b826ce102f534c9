#include "workbench/widgets/SelectedRow.h"

#include "workbench/widgets/Contrast.h"

#include <QApplication>
#include <QPainter>

namespace workbench
{

namespace
{

constexpr int kDarkest = 40;  // lightness; below, a darker shade can't be seen

/// Darker, and dark enough for a light text.
QColor shaded(const QColor &ground, const QColor &text, bool hasFocus)
{
    const QColor towards = ground.lightness() > kDarkest ? Qt::black : Qt::white;
    double share = hasFocus ? 0.3 : 0.15;
    QColor shade = mixed(ground, towards, share);
    while (text.lightness() > ground.lightness() && towards == Qt::black && share < 0.6 &&
           contrast(text, shade) < kLegible) {
        share += 0.02;
        shade = mixed(ground, towards, share);
    }
    return shade;
}

}  // namespace

SelectedLook selectedLook(const QStyleOptionViewItem &option, const QColor &ground,
                          const QColor &text)
{
    const bool hasFocus = option.state.testFlag(QStyle::State_Active) && option.widget != nullptr &&
                          option.widget->hasFocus();
    const QColor shade = shaded(ground, text, hasFocus);
    const QColor frame = mixed(option.palette.color(QPalette::Base),
                               option.palette.color(QPalette::Text), hasFocus ? 0.85 : 0.45);
    return {shade, legible(text, shade, inkOn(shade)), QPen(frame, hasFocus ? 2 : 1)};
}

void SelectedRowDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                                const QModelIndex &index) const
{
    QStyleOptionViewItem cell = option;
    initStyleOption(&cell, index);
    if (!cell.state.testFlag(QStyle::State_Selected)) {
        QStyledItemDelegate::paint(painter, option, index);
        return;
    }
    const QColor ground = cell.backgroundBrush.style() == Qt::NoBrush
                              ? cell.palette.color(QPalette::Base)
                              : cell.backgroundBrush.color();
    const SelectedLook look = selectedLook(option, ground, cell.palette.color(QPalette::Text));
    cell.state &= ~(QStyle::State_Selected | QStyle::State_HasFocus);
    cell.backgroundBrush = look.shade;
    cell.palette.setColor(QPalette::Text, look.text);
    const QStyle *style = cell.widget != nullptr ? cell.widget->style() : QApplication::style();
    style->drawControl(QStyle::CE_ItemViewItem, &cell, painter, cell.widget);

    const double inset = look.frame.widthF() / 2;
    const QRectF edge = QRectF(option.rect).adjusted(inset, inset, -inset, -inset);
    painter->save();
    painter->setPen(look.frame);
    painter->drawLine(QLineF(option.rect.left(), edge.top(), option.rect.right() + 1, edge.top()));
    painter->drawLine(
        QLineF(option.rect.left(), edge.bottom(), option.rect.right() + 1, edge.bottom()));
    if (index.column() == 0) {
        painter->drawLine(edge.topLeft(), edge.bottomLeft());
    }
    if (index.column() + 1 == index.model()->columnCount(index.parent())) {
        painter->drawLine(edge.topRight(), edge.bottomRight());
    }
    painter->restore();
}

}  // namespace workbench
