#include "workbench/frame/CentralWidget.h"

#include "report/DisplayMng.h"
#include "workbench/widgets/DisplayMessage.h"
#include "workbench/widgets/ResizeFilter.h"

#include <QComboBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTabBar>
#include <QTabWidget>
#include <QVBoxLayout>

namespace
{

// Entry "VDR32H5" of the three MCU boxes; each tab has its own list.
constexpr int kSfiH5Index = 9;
constexpr int kSfixH5Index = 7;
constexpr int kSfiObH5Index = 12;

// The disabled state is the lock: storing twice would lose the user's choice, and restoring
// without a lock would bring back a stale one.
void lockToH5(QComboBox *box, int h5Index, int &storedIndex, bool lock)
{
    if (box == nullptr) {
        return;
    }
    const bool isLocked = !box->isEnabledTo(box->parentWidget());  // whatever its page is
    if (lock) {
        storedIndex = isLocked ? storedIndex : box->currentIndex();
        box->setCurrentIndex(h5Index);
        box->setEnabled(false);
    } else if (isLocked) {
        box->setEnabled(true);
        box->setCurrentIndex(storedIndex);
    }
}

}  // namespace

CentralWidget::CentralWidget(unsigned char buildForm, QWidget *parent) : QWidget(parent)
{
    if (buildForm == 0) {
        return;
    }
    preparation.setDisplayCallback(displayMessage);
    fileManager.setDisplayCallback(displayMessage);
    DisplayMng::getInstance().displayCallback = displayMessage;
    createPages();
    m_rightLayout = new QVBoxLayout;
    m_rightLayout->addWidget(tabWidget);
    initPanelIcons();
    m_topLayout = new QHBoxLayout(this);
    m_topLayout->setSpacing(2);
    m_topLayout->setContentsMargins(2, 4, 4, 2);
    m_topLayout->addWidget(panelFrame);
    m_topLayout->addLayout(m_rightLayout);
    buildTabs();
    connectPanel();
    // The tab bar stands between panel and pages. The tab widget passes the focus to it and comes
    // behind all pages, so Tab would find the bar a second time there.
    tabWidget->setFocusProxy(nullptr);
    tabWidget->setFocusPolicy(Qt::NoFocus);
    setTabOrder(helpButton, tabWidget->tabBar());
}

CentralWidget::~CentralWidget()
{
    // Pages that a tab showed belong to the tab widget, the others still to nobody.
    for (QWidget *page : imageGenPages) {
        if (page->parent() == nullptr) {
            delete page;
        }
    }
    delete obkey;
}

void CentralWidget::createPages()
{
    const auto makePage = [this](const char *name) {
        auto *page = new QWidget(this);
        page->setObjectName(QLatin1String(name) + QLatin1String("_page"));
        page->hide();  // or a page without a tab would be drawn over the form
        return page;
    };
    tabWidget = new QTabWidget(this);
    tabWidget->setElideMode(Qt::ElideRight);  // the whole title is its tool tip
    tabWidget->setObjectName(QStringLiteral("workbench_tabs"));
    tabWidget->setAccessibleName(tr("Workbench tabs"));
    tabWidget->installEventFilter(new ResizeFilter(tabWidget));
    sfiPage = makePage("sfi");
    sfixPage = makePage("sfix");
    sfiObPage = makePage("ob");
    hsmPage = makePage("hsm");
    smiPage = makePage("smi");
    sspPage = makePage("ssp");
    signPage = makePage("sign");
    licensePage = makePage("lic");
    daPage = makePage("da");
    obkeyPage = makePage("obk");
}

void CentralWidget::buildTabs()
{
    InitSfiTab();
    InitSmiTab();
    InitSfixTab();
    InitSspTab();
    InitSignTab();
    InitHSMTab();
    InitSfiObTab();
    InitLicenseTab();
    InitCertifTab();
}

void CentralWidget::ensureObkey()
{
    if (obkey == nullptr) {
        obkey = new Obkey;
    }
}

void CentralWidget::appendImageGenPage()
{
    auto *page = new QWidget;
    page->setObjectName(QStringLiteral("img_page"));
    imageGenPages.push_back(page);
}

void CentralWidget::setSFImcuComboBoxH5(bool lock)
{
    lockToH5(sfiMcuCombo, kSfiH5Index, currentSfiSelection, lock);
}

void CentralWidget::setSFIxmcuComboBoxH5(bool lock)
{
    lockToH5(sfixMcuCombo, kSfixH5Index, currentSfixSelection, lock);
}

void CentralWidget::setSFIOBmcuComboBoxH5(bool lock)
{
    lockToH5(sfiObMcuCombo, kSfiObH5Index, currentSfiObSelection, lock);
}
