#include "workbench/frame/CentralWidget.h"
#include "workbench/widgets/TabNotice.h"

void CentralWidget::InitSfiObTab()
{
    workbench::layTabNotice(sfiObPage,
                            tr("This tab edits option bytes and writes them to the CSV file that "
                               "the SFI tabs read; its form isn't part of this version."));
}
