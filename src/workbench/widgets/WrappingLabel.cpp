#include "workbench/widgets/WrappingLabel.h"

#include <QPainter>

namespace workbench
{

namespace
{

constexpr int kWidest = 480;  // pixels, for a usual sentence with a usual name
constexpr int kFlags = Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap | Qt::TextWrapAnywhere;

}  // namespace

WrappingLabel::WrappingLabel(const QString &text, QWidget *parent) : QLabel(text, parent)
{
    setTextFormat(Qt::PlainText);
}

QSize WrappingLabel::sizeHint() const
{
    return fontMetrics().boundingRect(0, 0, kWidest, QWIDGETSIZE_MAX, kFlags, text()).size();
}

QSize WrappingLabel::minimumSizeHint() const
{
    return sizeHint();
}

void WrappingLabel::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.drawText(contentsRect(), kFlags, text());
}

}  // namespace workbench
