#include "workbench/forms/DeviceLock.h"

#include <QComboBox>
#include <QCoreApplication>

namespace workbench
{

void DeviceLock::set(QComboBox *box, int entry, bool lock)
{
    // The disabled state is the lock, whatever the box's page is.
    const bool isLocked = !box->isEnabledTo(box->parentWidget());
    if (lock) {
        m_chosen = isLocked ? m_chosen : box->currentIndex();
        m_toolTip = isLocked ? m_toolTip : box->toolTip();
        box->setToolTip(QCoreApplication::translate(
            "workbench::DeviceLock", "The H5 panel is for this device; other panels free the box"));
        box->setCurrentIndex(entry);
        box->setEnabled(false);
    } else if (isLocked) {
        box->setEnabled(true);
        box->setToolTip(m_toolTip);
        box->setCurrentIndex(m_chosen);
    }
}

}  // namespace workbench
