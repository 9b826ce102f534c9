#include "workbench/CentralWidget.h"
#include "workbench/TabNotice.h"

void CentralWidget::InitSfixTab()
{
    workbench::layTabNotice(sfixPage,
                            tr("This tab makes secure firmware install images for internal and "
                               "external memory (SFIx). Its form isn't part of this version."));
}
