#include "workbench/forms/ListGrip.h"

#include <QMouseEvent>
#include <QPainter>

namespace workbench
{

namespace
{

constexpr int kHeight = 4;
constexpr int kMarkWidth = 28;
constexpr int kTallest = 2000;

}  // namespace

ListGrip::ListGrip(QWidget *list, QWidget *parent) : QWidget(parent), m_list(list)
{
    setFixedHeight(kHeight);
    setCursor(Qt::SizeVerCursor);
    setToolTip(tr("Drag to change the list's height; a double click gives it back"));
}

void ListGrip::mousePressEvent(QMouseEvent *event)
{
    m_pressedAt = event->globalPos().y();
    m_heightThen = m_list->height();
}

void ListGrip::mouseMoveEvent(QMouseEvent *event)
{
    const int wanted = m_heightThen + event->globalPos().y() - m_pressedAt;
    m_list->setFixedHeight(qBound(m_list->minimumSizeHint().height(), wanted, kTallest));
}

void ListGrip::mouseDoubleClickEvent(QMouseEvent * /*event*/)
{
    m_list->setMinimumHeight(0);
    m_list->setMaximumHeight(QWIDGETSIZE_MAX);
}

void ListGrip::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.fillRect((width() - kMarkWidth) / 2, 1, kMarkWidth, kHeight - 2,
                     palette().brush(QPalette::Mid));
}

}  // namespace workbench
