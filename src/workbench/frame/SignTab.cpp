#include "workbench/frame/CentralWidget.h"
#include "workbench/widgets/TabNotice.h"

void CentralWidget::InitSignTab()
{
    workbench::layTabNotice(signPage, tr("This tab signs firmware images of wireless devices; its "
                                         "form isn't part of this version."));
}
