#include "workbench/frame/CentralWidget.h"
#include "workbench/frame/TabSet.h"
#include "workbench/tabs/img/ImgTab.h"

#include <algorithm>

void CentralWidget::InitMCUbootTab()
{
    if (obkey == nullptr || obkey->imageGenCount == 0) {
        return;
    }
    obkey->imgTools.resize(std::max<std::size_t>(obkey->imgTools.size(), obkey->imageGenCount));
    QWidget *const page = currentImageGenPage();
    if (page == nullptr || m_tabs->findOn(page) != nullptr) {
        return;
    }
    m_tabs->promise(workbench::tabEntry(QStringLiteral("img")), page, *m_context,
                    [number = obkey->imageGenCount - 1U,
                     savesOnly = launchMode == NoGeneration](workbench::Tab *tab) {
                        static_cast<workbench::ImgTab *>(tab)->setRole(number, savesOnly);
                    });
}

workbench::ImgTab *CentralWidget::currentImageGenTab() const
{
    const QWidget *const page = currentImageGenPage();
    return page == nullptr ? nullptr : static_cast<workbench::ImgTab *>(m_tabs->findOn(page));
}

void CentralWidget::OpenMCUboot()
{
    if (workbench::ImgTab *const tab = currentImageGenTab()) {
        tab->openTemplate();
    }
}

void CentralWidget::saveMCUbootConfPinBench()
{
    if (workbench::ImgTab *const tab = currentImageGenTab()) {
        tab->saveConfiguration();
    }
}

QWidget *CentralWidget::currentImageGenPage() const
{
    const std::size_t count = obkey == nullptr ? 0 : obkey->imageGenCount;
    return count == 0 || count > imageGenPages.size() ? nullptr : imageGenPages[count - 1];
}
