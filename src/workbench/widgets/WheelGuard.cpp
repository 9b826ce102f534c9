#include "workbench/widgets/WheelGuard.h"

#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QEvent>
#include <QSlider>

namespace workbench
{

namespace
{

/// The box that a wheel over this widget would change, or null. The list that a combo box opens is
/// a window of its own and scrolls as ever.
QWidget *boxUnder(QWidget *widget)
{
    for (; widget != nullptr; widget = widget->parentWidget()) {
        if (qobject_cast<QComboBox *>(widget) != nullptr ||
            qobject_cast<QAbstractSpinBox *>(widget) != nullptr ||
            qobject_cast<QSlider *>(widget) != nullptr) {
            return widget;
        }
        if (widget->isWindow()) {
            return nullptr;
        }
    }
    return nullptr;
}

}  // namespace

WheelGuard::WheelGuard(QObject *parent) : QObject(parent)
{
    qApp->installEventFilter(this);
}

bool WheelGuard::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::Wheel && event->type() != QEvent::Polish) {
        return false;
    }
    auto *widget = qobject_cast<QWidget *>(watched);
    QWidget *box = boxUnder(widget);
    if (box == nullptr) {
        return false;
    }
    if (event->type() == QEvent::Polish) {
        if (widget->focusPolicy() == Qt::WheelFocus) {
            widget->setFocusPolicy(Qt::StrongFocus);  // or the wheel would give it the focus first
        }
        return false;
    }
    if (box->hasFocus() || box->isAncestorOf(QApplication::focusWidget())) {
        return false;
    }
    event->ignore();  // so that it goes on to the form behind the box
    return true;
}

}  // namespace workbench
