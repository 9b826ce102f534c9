#include "workbench/widgets/VerticalTextDelegate.h"

#include <QApplication>
#include <QPainter>

void VerticalTextDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                                 const QModelIndex &index) const
{
    QStyleOptionViewItem cell = option;
    initStyleOption(&cell, index);
    const QStyle *style = cell.widget == nullptr ? QApplication::style() : cell.widget->style();
    style->drawPrimitive(QStyle::PE_PanelItemViewItem, &cell, painter, cell.widget);

    constexpr int kMargin = 3;
    const QRect &rect = cell.rect;
    const bool chosen = cell.state.testFlag(QStyle::State_Selected);
    painter->save();
    painter->translate(rect.topLeft());
    painter->rotate(-90);
    painter->translate(-rect.height(), 0);
    painter->setFont(cell.font);
    painter->setPen(cell.palette.color(chosen ? QPalette::HighlightedText : QPalette::Text));
    painter->drawText(QRect(kMargin, 0, rect.height() - kMargin, rect.width()),
                      Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, cell.text);
    painter->restore();
}

QSize VerticalTextDelegate::sizeHint(const QStyleOptionViewItem &option,
                                     const QModelIndex &index) const
{
    return QStyledItemDelegate::sizeHint(option, index).transposed();
}
