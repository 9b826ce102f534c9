#pragma once
#include <QItemDelegate>

/// Gives the low rows of the option-bytes table room for the widgets laid into them.
class ItemDelegate : public QItemDelegate
{
    Q_OBJECT
public:
    using QItemDelegate::QItemDelegate;

    /// The usual hint; one of a width other than 0 and of at most 29 pixels in height gets 330.
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
};
