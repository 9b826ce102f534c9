#include "workbench/tabs/hsm/HsmTab.h"
#include "workbench/frame/CentralWidget.h"

void CentralWidget::setHsmMcuSelectComponent(bool mcu)
{
    m_hsmMcu = mcu;
    for (workbench::Tab *const tab : builtTabs()) {
        if (auto *const hsm = qobject_cast<workbench::HsmTab *>(tab)) {
            hsm->setDevices(mcu);
        }
    }
}
