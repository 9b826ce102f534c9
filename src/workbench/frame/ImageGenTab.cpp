#include "report/DisplayMng.h"
#include "workbench/forms/Tab.h"
#include "workbench/frame/CentralWidget.h"

void CentralWidget::InitMCUbootTab()
{
    if (obkey == nullptr || obkey->imageGenCount == 0) {
        return;
    }
    obkey->imgTools.resize(std::max<std::size_t>(obkey->imgTools.size(), obkey->imageGenCount));
    QWidget *const page = currentImageGenPage();
    if (page != nullptr && page->findChild<workbench::Tab *>() == nullptr) {
        buildTab(QStringLiteral("img"), page);
    }
}

void CentralWidget::OpenMCUboot()
{
    DisplayMng::getInstance().logMessage(
        5, L"MCUboot templates can't be opened in this version: %ls",
        QString::fromStdString(templatePath).toStdWString().c_str());
}

QWidget *CentralWidget::currentImageGenPage() const
{
    const std::size_t count = obkey == nullptr ? 0 : obkey->imageGenCount;
    return count == 0 || count > imageGenPages.size() ? nullptr : imageGenPages[count - 1];
}
