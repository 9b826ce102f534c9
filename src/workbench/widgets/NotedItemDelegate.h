#pragma once
#include <QStyledItemDelegate>

namespace workbench
{

/// Draws a row of a file list: icon and name, and the row's note in muted text behind it. A
/// selected row has a frame and a darker shade, fainter while the list hasn't got the focus.
class NotedItemDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
};

}  // namespace workbench
