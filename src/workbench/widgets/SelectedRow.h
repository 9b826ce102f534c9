#pragma once
#include <QColor>
#include <QPen>
#include <QStyledItemDelegate>

namespace workbench
{

/// How a selected row is told from its neighbours, whatever colours they have.
struct SelectedLook {
    QColor shade;  ///< its ground
    QColor text;   ///< legible on the shade
    QPen frame;
};

/// @param ground  of the row when it isn't selected
/// @param text    of the row when it isn't selected
SelectedLook selectedLook(const QStyleOptionViewItem &option, const QColor &ground,
                          const QColor &text);

/// Draws table rows. A selected one keeps its own colours, a shade darker and in a frame; both are
/// fainter while the table isn't in focus.
class SelectedRowDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
};

}  // namespace workbench
