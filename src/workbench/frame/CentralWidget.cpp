#include "workbench/frame/CentralWidget.h"

#include "report/DisplayMng.h"
#include "workbench/frame/TabRegistry.h"
#include "workbench/widgets/DisplayMessage.h"
#include "workbench/widgets/ResizeFilter.h"
#include "workbench/widgets/WheelGuard.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTabBar>
#include <QTabWidget>
#include <QVBoxLayout>

#include <algorithm>

using workbench::Tab;
using workbench::TabEntry;
using workbench::tabRegistry;

CentralWidget::CentralWidget(unsigned char buildForm, QWidget *parent) : QWidget(parent)
{
    if (buildForm == 0) {
        return;
    }
    m_displayBefore = DisplayMng::getInstance().displayCallback;
    preparation.setDisplayCallback(displayMessage);
    fileManager.setDisplayCallback(displayMessage);
    DisplayMng::getInstance().displayCallback = displayMessage;
    new workbench::WheelGuard(this);
    lendContext();
    createPages();
    auto *right = new QVBoxLayout;
    right->addWidget(tabWidget);
    initPanelIcons();
    auto *layout = new QHBoxLayout(this);
    layout->setSpacing(2);
    layout->setContentsMargins(2, 4, 4, 2);
    layout->addWidget(panelFrame);
    layout->addLayout(right);
    for (const TabEntry &entry : tabRegistry()) {
        if (entry.built == TabEntry::Built::WithTheForm) {
            buildTab(QLatin1String(entry.name.key));
        }
    }
    connectPanel();
    // The tab bar stands between panel and pages. The tab widget passes the focus to it and comes
    // behind all pages, so Tab would find the bar a second time there.
    tabWidget->setFocusProxy(nullptr);
    tabWidget->setFocusPolicy(Qt::NoFocus);
    setTabOrder(helpButton, tabWidget->tabBar());
}

CentralWidget::~CentralWidget()
{
    if (m_context != nullptr) {  // or a box would come up for a window that is gone
        DisplayMng::getInstance().displayCallback = m_displayBefore;
    }
}

void CentralWidget::lendContext()
{
    m_context.reset(new workbench::FormContext{
        this, fileManager, preparation, lastFolder, lastOutputFolder, templatePath, {}, {}});
    m_context->share = [this](workbench::SharedField field, const QString &path) {
        for (Tab *tab : m_tabs) {
            tab->takeShared(field, path);
        }
    };
    m_context->tab = [this](const QString &key) { return tab(key); };
    m_context->obkey = [this]() -> Obkey & {
        ensureObkey();
        return *obkey;
    };
}

void CentralWidget::createPages()
{
    tabWidget = new QTabWidget(this);
    tabWidget->setElideMode(Qt::ElideRight);  // the whole title is its tool tip
    tabWidget->setObjectName(QStringLiteral("workbench_tabs"));
    tabWidget->setAccessibleName(tr("Workbench tabs"));
    tabWidget->installEventFilter(new ResizeFilter(tabWidget));
    for (const TabEntry &entry : tabRegistry()) {
        if (entry.built != TabEntry::Built::ManyTimes) {
            auto *page = new QWidget(this);
            page->setObjectName(QLatin1String(entry.name.key) + QLatin1String("_page"));
            page->hide();  // or a page without a tab would be drawn over the form
        }
    }
    sfiPage = pageOf(QStringLiteral("sfi"));
    sfixPage = pageOf(QStringLiteral("sfix"));
    sfiObPage = pageOf(QStringLiteral("ob"));
    hsmPage = pageOf(QStringLiteral("hsm"));
    smiPage = pageOf(QStringLiteral("smi"));
    sspPage = pageOf(QStringLiteral("ssp"));
    signPage = pageOf(QStringLiteral("sign"));
    licensePage = pageOf(QStringLiteral("lic"));
    daPage = pageOf(QStringLiteral("da"));
    obkeyPage = pageOf(QStringLiteral("obk"));
}

QWidget *CentralWidget::pageOf(const QString &key)
{
    return findChild<QWidget *>(key + QLatin1String("_page"));
}

void CentralWidget::buildTab(const QString &key)
{
    if (tab(key) == nullptr) {
        buildTab(key, pageOf(key));
    }
}

void CentralWidget::buildTab(const QString &key, QWidget *page)
{
    m_tabs.push_back(workbench::makeTab(workbench::tabEntry(key), page, *m_context));
}

Tab *CentralWidget::tab(const QString &key) const
{
    const auto hit =
        std::ranges::find_if(m_tabs, [&key](const Tab *each) { return each->key() == key; });
    return hit == m_tabs.end() ? nullptr : *hit;
}

void CentralWidget::lockDevice(const QString &key, bool lock)
{
    if (Tab *found = tab(key)) {
        found->lockDevice(lock);
    }
}

void CentralWidget::clearForms()
{
    for (Tab *tab : m_tabs) {
        tab->clear();
    }
}

void CentralWidget::clearParsePanes()
{
    for (Tab *tab : m_tabs) {
        tab->clearPanes();
    }
}

bool CentralWidget::showChecked(const QString &path, const FileType &record)
{
    return std::ranges::any_of(m_tabs, [&](Tab *tab) { return tab->showChecked(path, record); });
}

void CentralWidget::ensureObkey()
{
    if (obkey == nullptr) {
        m_obkey = std::make_unique<Obkey>();
        obkey = m_obkey.get();
    }
}

void CentralWidget::appendImageGenPage()
{
    auto *page = new QWidget(this);
    page->setObjectName(QStringLiteral("img_page"));
    page->hide();  // as all pages without a tab
    imageGenPages.push_back(page);
}
