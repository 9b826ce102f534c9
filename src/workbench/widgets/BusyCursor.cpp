#include "workbench/widgets/BusyCursor.h"

#include <QApplication>
#include <QDialog>
#include <QEvent>

namespace workbench
{

BusyCursor::BusyCursor()
{
    QApplication::setOverrideCursor(Qt::WaitCursor);
    qApp->installEventFilter(this);
}

BusyCursor::~BusyCursor()
{
    qApp->removeEventFilter(this);
    for (int left = m_dialogs; left >= 0; --left) {
        QApplication::restoreOverrideCursor();
    }
}

bool BusyCursor::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Show && qobject_cast<QDialog *>(watched) != nullptr) {
        QApplication::setOverrideCursor(Qt::ArrowCursor);
        ++m_dialogs;
    } else if (event->type() == QEvent::Hide && m_dialogs > 0 &&
               qobject_cast<QDialog *>(watched) != nullptr) {
        QApplication::restoreOverrideCursor();
        --m_dialogs;
    }
    return false;
}

}  // namespace workbench
