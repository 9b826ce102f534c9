#include "workbench/frame/CentralWidget.h"
#include "workbench/widgets/TabNotice.h"

void CentralWidget::InitSmiTab()
{
    workbench::layTabNotice(smiPage, tr("This tab makes secure module images (SMI) from ELF files; "
                                        "its form isn't part of this version."));
}
