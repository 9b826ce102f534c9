#include "workbench/widgets/WrappingLabel.h"

#include <QPainter>

namespace workbench
{

namespace
{

constexpr int kFlags = Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap | Qt::TextWrapAnywhere;

}  // namespace

WrappingLabel::WrappingLabel(const QString &text, QWidget *parent, int widest)
    : QLabel(text, parent), m_widest(widest)
{
    setTextFormat(Qt::PlainText);
}

QSize WrappingLabel::sizeHint() const
{
    return fontMetrics().boundingRect(0, 0, m_widest, QWIDGETSIZE_MAX, kFlags, text()).size();
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
