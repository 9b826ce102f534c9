#include "workbench/frame/CentralWidget.h"
#include "workbench/widgets/TabNotice.h"

void CentralWidget::InitSspTab()
{
    workbench::layTabNotice(sspPage, tr("This tab makes secret-provisioning images (SSP) for "
                                        "microprocessors; its form isn't part of this version."));
}
