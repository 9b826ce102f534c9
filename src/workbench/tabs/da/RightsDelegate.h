#pragma once
#include <QStyledItemDelegate>

namespace workbench
{

/// Draws the bits of a mask as little squares, one row for each group of the permission table: 32
/// bits, the highest first. Granted bits are filled, rights named in vain are crossed out.
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
