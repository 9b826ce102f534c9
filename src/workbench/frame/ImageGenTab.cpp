#include "workbench/frame/CentralWidget.h"
#include "workbench/tabs/img/ImgTab.h"

#include <algorithm>

void CentralWidget::InitMCUbootTab()
{
    if (obkey == nullptr || obkey->imageGenCount == 0) {
        return;
    }
    obkey->imgTools.resize(std::max<std::size_t>(obkey->imgTools.size(), obkey->imageGenCount));
    QWidget *const page = currentImageGenPage();
    if (page == nullptr || page->findChild<workbench::Tab *>() != nullptr) {
        return;
    }
    buildTab(QStringLiteral("img"), page);
    page->findChild<workbench::ImgTab *>()->setRole(obkey->imageGenCount - 1U,
                                                    launchMode == NoGeneration);
}

void CentralWidget::OpenMCUboot()
{
    const QWidget *const page = currentImageGenPage();
    auto *const tab = page == nullptr ? nullptr : page->findChild<workbench::ImgTab *>();
    if (tab != nullptr) {
        tab->openTemplate();
    }
}

void CentralWidget::saveMCUbootConfPinBench()
{
    const QWidget *const page = currentImageGenPage();
    auto *const tab = page == nullptr ? nullptr : page->findChild<workbench::ImgTab *>();
    if (tab != nullptr) {
        tab->saveConfiguration();
    }
}

QWidget *CentralWidget::currentImageGenPage() const
{
    const std::size_t count = obkey == nullptr ? 0 : obkey->imageGenCount;
    return count == 0 || count > imageGenPages.size() ? nullptr : imageGenPages[count - 1];
}
