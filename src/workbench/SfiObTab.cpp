#include "workbench/CentralWidget.h"
#include "workbench/TabNotice.h"

void CentralWidget::InitSfiObTab()
{
    workbench::layTabNotice(sfiObPage,
                            tr("This tab edits option bytes and writes them to the CSV file that "
                               "the SFI tabs read; its form isn't part of this version."));
}
