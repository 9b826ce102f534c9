#include "report/DisplayMng.h"
#include "workbench/frame/CentralWidget.h"
#include "workbench/widgets/TabNotice.h"

void CentralWidget::InitOBkeyTab()
{
    workbench::layTabNotice(obkeyPage, tr("This tab makes provisioning files (OBK) from XML "
                                          "templates; its form isn't part of this version."));
}

void CentralWidget::OpenOBkeyKey()
{
    DisplayMng::getInstance().logMessage(
        5, L"OBkey templates can't be opened in this version: %ls",
        QString::fromStdString(templatePath).toStdWString().c_str());
}
