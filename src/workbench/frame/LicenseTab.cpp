#include "workbench/frame/CentralWidget.h"
#include "workbench/widgets/TabNotice.h"

void CentralWidget::InitLicenseTab()
{
    workbench::layTabNotice(
        licensePage,
        tr("This tab makes licence files for devices; its form isn't part of this version."));
}
