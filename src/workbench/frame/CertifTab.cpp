#include "workbench/frame/CentralWidget.h"
#include "workbench/widgets/TabNotice.h"

void CentralWidget::InitCertifTab()
{
    workbench::layTabNotice(daPage, tr("This tab makes and chains certificates for debug "
                                       "authentication; its form isn't part of this version."));
}
