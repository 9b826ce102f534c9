#include "workbench/CentralWidget.h"
#include "workbench/TabNotice.h"

void CentralWidget::InitSfiTab()
{
    workbench::layTabNotice(sfiPage, tr("This tab makes secure firmware install images (SFI). Its "
                                        "form isn't part of this version."));
}

void CentralWidget::clearSfiForm() {}
