#include "app/SelectionKeeper.h"

#include <QFocusEvent>

namespace app
{

bool SelectionKeeper::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::FocusIn && event->type() != QEvent::FocusOut) {
        return false;
    }
    auto *edit = qobject_cast<QLineEdit *>(watched);
    if (edit == nullptr || static_cast<QFocusEvent *>(event)->reason() != Qt::MenuBarFocusReason) {
        return false;
    }
    if (event->type() == QEvent::FocusOut) {
        m_edit = edit;
        m_start = edit->selectionStart();
        m_length = edit->selectionLength();
    } else if (edit == m_edit && m_start >= 0) {
        edit->setSelection(m_start, m_length);
    }
    return false;
}

}  // namespace app
