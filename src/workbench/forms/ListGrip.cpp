#include "workbench/forms/ListGrip.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollArea>
#include <QTimer>

namespace workbench
{

namespace
{

constexpr int kHeight = 4;
constexpr int kMarkWidth = 28;
constexpr int kTallest = 2000;
constexpr int kPageLines = 5;
const QColor kFocus(0x2C, 0x8A, 0xBF);  // the ring of all fields

}  // namespace

ListGrip::ListGrip(const QString &label, QWidget *list, QWidget *parent)
    : QWidget(parent), m_list(list)
{
    setFixedHeight(kHeight);
    setCursor(Qt::SizeVerCursor);
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(tr("%1 height").arg(label));
    setToolTip(tr("Drag, or press Up and Down, to change the list's height; a double click or "
                  "Enter gives it back"));
}

void ListGrip::setHeight(int wanted)
{
    m_list->setFixedHeight(qBound(m_list->minimumSizeHint().height(), wanted, kTallest));
    setAccessibleDescription(tr("%1 pixels").arg(m_list->minimumHeight()));
}

void ListGrip::giveBack()
{
    m_list->setMinimumHeight(0);
    m_list->setMaximumHeight(QWIDGETSIZE_MAX);
    setAccessibleDescription({});
}

/// A list that grows would push the grip out of the form, and the next key would act unseen.
void ListGrip::stayInSight()
{
    QWidget *above = parentWidget();
    while (above != nullptr && qobject_cast<QScrollArea *>(above) == nullptr) {
        above = above->parentWidget();
    }
    if (auto *area = qobject_cast<QScrollArea *>(above)) {
        QTimer::singleShot(0, this, [this, area] { area->ensureWidgetVisible(this); });
    }
}

void ListGrip::mousePressEvent(QMouseEvent *event)
{
    m_pressedAt = event->globalPos().y();
    m_heightThen = m_list->height();
}

void ListGrip::mouseMoveEvent(QMouseEvent *event)
{
    setHeight(m_heightThen + event->globalPos().y() - m_pressedAt);
}

void ListGrip::mouseDoubleClickEvent(QMouseEvent * /*event*/)
{
    giveBack();
}

void ListGrip::keyPressEvent(QKeyEvent *event)
{
    const int line = m_list->fontMetrics().lineSpacing();
    switch (event->key()) {
    case Qt::Key_Up:
        setHeight(m_list->height() - line);
        break;
    case Qt::Key_Down:
        setHeight(m_list->height() + line);
        break;
    case Qt::Key_PageUp:
        setHeight(m_list->height() - kPageLines * line);
        break;
    case Qt::Key_PageDown:
        setHeight(m_list->height() + kPageLines * line);
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        giveBack();
        break;
    default:
        QWidget::keyPressEvent(event);
        return;
    }
    stayInSight();
}

void ListGrip::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    if (hasFocus()) {
        painter.fillRect(rect(), kFocus);
        return;
    }
    painter.fillRect((width() - kMarkWidth) / 2, 1, kMarkWidth, kHeight - 2,
                     palette().brush(QPalette::Mid));
}

}  // namespace workbench
