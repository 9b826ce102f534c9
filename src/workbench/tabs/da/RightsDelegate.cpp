#include "workbench/tabs/da/RightsDelegate.h"

#include <QApplication>
#include <QPainter>

namespace workbench
{

namespace
{

constexpr int kBits = 128;
constexpr int kPerRow = 32;
constexpr int kRows = kBits / kPerRow;
constexpr int kByteGap = 2;  // every 8 bits
constexpr int kMargin = 4;

constexpr int kGaps = (kPerRow / 8 - 1) * kByteGap + 2 * kMargin;

/// Of a square, with its gap.
int leastSide(const QStyleOptionViewItem &option)
{
    return qMax(4, option.fontMetrics.height() / 4);
}

/// As large as the cell has room for, within reason.
int sideFor(const QStyleOptionViewItem &option)
{
    const int least = leastSide(option);
    return qBound(least, (option.rect.width() - kGaps) / kPerRow, 2 * least);
}

bool isSet(const QByteArray &mask, int bit)
{
    return bit / 8 < mask.size() && (static_cast<unsigned char>(mask[bit / 8]) >> bit % 8 & 1) != 0;
}

}  // namespace

void RightsDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                           const QModelIndex &index) const
{
    QStyleOptionViewItem empty = option;
    initStyleOption(&empty, index);
    empty.text.clear();
    const QStyle *style = empty.widget != nullptr ? empty.widget->style() : QApplication::style();
    style->drawControl(QStyle::CE_ItemViewItem, &empty, painter, empty.widget);

    const QByteArray granted = index.data(Granted).toByteArray();
    const QByteArray inVain = index.data(InVain).toByteArray();
    const bool isSelected = option.state.testFlag(QStyle::State_Selected);
    const QColor ink =
        option.palette.color(isSelected ? QPalette::HighlightedText : QPalette::Text);
    QColor pale = ink;
    pale.setAlphaF(0.25);
    const int side = qMin(sideFor(option), (option.rect.height() - 2) / kRows);
    const int top = option.rect.center().y() - kRows * side / 2;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing, false);
    for (int bit = 0; bit < kBits; ++bit) {
        const int column = kPerRow - 1 - bit % kPerRow;
        const int row = kRows - 1 - bit / kPerRow;
        const QRect square(option.rect.left() + kMargin + column * side + column / 8 * kByteGap,
                           top + row * side, side - 1, side - 1);
        painter->fillRect(square, isSet(granted, bit) ? ink : pale);
        if (isSet(inVain, bit)) {
            painter->fillRect(square, QColor(0xD0, 0x3B, 0x3B));
            painter->setPen(Qt::white);
            painter->drawLine(square.topLeft(), square.bottomRight());
        }
    }
    painter->restore();
}

QSize RightsDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &) const
{
    const int side = leastSide(option);
    return {kGaps + kPerRow * side, 2 * kMargin + kRows * (side + 1)};
}

}  // namespace workbench
