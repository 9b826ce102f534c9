#include "report/DisplayMng.h"
#include "workbench/frame/CentralWidget.h"

void CentralWidget::InitOBkeyTab()
{
    buildTab(QStringLiteral("obk"));
}

void CentralWidget::OpenOBkeyKey()
{
    DisplayMng::getInstance().logMessage(
        5, L"OBkey templates can't be opened in this version: %ls",
        QString::fromStdString(templatePath).toStdWString().c_str());
}
