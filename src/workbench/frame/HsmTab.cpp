#include "workbench/tabs/hsm/HsmTab.h"
#include "workbench/frame/CentralWidget.h"

void CentralWidget::setHsmMcuSelectComponent(bool mcu)
{
    if (auto *const hsm = qobject_cast<workbench::HsmTab *>(tab(QStringLiteral("hsm")))) {
        hsm->setDevices(mcu);
    }
}
