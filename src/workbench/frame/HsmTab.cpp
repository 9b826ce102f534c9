#include "workbench/frame/CentralWidget.h"
#include "workbench/widgets/TabNotice.h"

void CentralWidget::InitHSMTab()
{
    workbench::layTabNotice(hsmPage, tr("This tab programs hardware security modules for licensed "
                                        "production; its form isn't part of this version."));
}
