#include "workbench/frame/CentralWidget.h"

#include "report/DisplayMng.h"
#include "workbench/frame/TabSet.h"
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

CentralWidget::CentralWidget(unsigned char buildForm, QWidget *parent, workbench::Building building)
    : QWidget(parent), m_tabs(std::make_unique<workbench::TabSet>(building))
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
    connect(m_tabs.get(), &workbench::TabSet::tabBuilt, this, &CentralWidget::greetTab);
    connect(tabWidget, &QTabWidget::currentChanged, m_tabs.get(),
            [this](int index) { m_tabs->findOn(tabWidget->widget(index)); });
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
        for (Tab *tab : tabs()) {
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
        m_tabs->promise(workbench::tabEntry(key), pageOf(key), *m_context);
    }
}

void CentralWidget::greetTab(Tab *tab)
{
    if (m_hsmMcu && tab->key() == QLatin1String("hsm")) {
        setHsmMcuSelectComponent(*m_hsmMcu);
    }
    // Qt changes nothing as long as no page has anything for the focus.
    setTabOrder(helpButton, tabWidget->tabBar());
    emit tabBuilt(tab);
}

void CentralWidget::buildTabInFront()
{
    // The sheet of the tabs goes by the width, and styles all that is in them whenever it changes.
    window()->layout()->activate();
    show();
    m_tabs->findOn(tabWidget->currentWidget());
}

void CentralWidget::buildTheRestInTime()
{
    m_tabs->buildTheRestInTime();
}

const std::vector<Tab *> &CentralWidget::tabs() const
{
    return m_tabs->all();
}

const std::vector<Tab *> &CentralWidget::builtTabs() const
{
    return m_tabs->built();
}

Tab *CentralWidget::tab(const QString &key) const
{
    return m_tabs->find(key);
}

void CentralWidget::lockDevice(const QString &key, bool lock)
{
    if (Tab *found = tab(key)) {
        found->lockDevice(lock);
    }
}

void CentralWidget::clearForms()
{
    for (Tab *tab : tabs()) {
        tab->clear();
    }
}

void CentralWidget::clearParsePanes()
{
    for (Tab *tab : builtTabs()) {
        tab->clearPanes();
    }
}

bool CentralWidget::showChecked(const QString &path, const FileType &record)
{
    return std::ranges::any_of(tabs(), [&](Tab *tab) { return tab->showChecked(path, record); });
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
