#include "workbench/widgets/ItemDelegate.h"

QSize ItemDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    QSize hint = QItemDelegate::sizeHint(option, index);
    if (hint.width() != 0 && hint.height() <= 29) {
        hint.setHeight(330);
    }
    return hint;
}
