#include "workbench/forms/DeviceLock.h"

#include <QComboBox>

namespace workbench
{

void DeviceLock::set(QComboBox *box, int entry, bool lock)
{
    // The disabled state is the lock, whatever the box's page is.
    const bool isLocked = !box->isEnabledTo(box->parentWidget());
    if (lock) {
        m_chosen = isLocked ? m_chosen : box->currentIndex();
        box->setCurrentIndex(entry);
        box->setEnabled(false);
    } else if (isLocked) {
        box->setEnabled(true);
        box->setCurrentIndex(m_chosen);
    }
}

}  // namespace workbench
