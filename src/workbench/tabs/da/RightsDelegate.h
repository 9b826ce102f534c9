#pragma once
#include <QStyledItemDelegate>

namespace workbench
{

/// Draws the bits of a mask: 8 rows of 16 little squares would be the permission table's picture;
/// here a row is 32 bits, the highest first, so that it fits a line of a table. Granted bits are
/// filled, rights named in vain are crossed out.
class RightsDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    enum Role {
        Granted = Qt::UserRole,  ///< QByteArray, 16 bytes, bit 0 in the lowest bit of the first
        InVain,                  ///< likewise
    };

    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
};

}  // namespace workbench
