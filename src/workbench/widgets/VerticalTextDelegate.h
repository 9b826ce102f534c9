#pragma once
#include <QStyledItemDelegate>

/// Draws a cell's text turned by 90 degrees counter-clockwise, from the lower edge upwards.
class VerticalTextDelegate : public QStyledItemDelegate
{
    Q_OBJECT
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    /// The usual hint with width and height exchanged.
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
};
