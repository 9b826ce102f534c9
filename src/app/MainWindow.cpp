#include "app/MainWindow.h"

#include "app/SelectionKeeper.h"
#include "app/SettingsPlace.h"
#include "app/Shortcuts.h"
#include "app/WindowSize.h"
#include "report/DisplayMng.h"
#include "workbench/forms/Tab.h"
#include "workbench/frame/CentralWidget.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QCoreApplication>
#include <QFileInfo>
#include <QGroupBox>
#include <QPushButton>
#include <QScrollArea>
#include <QTabWidget>

#include <algorithm>

MainWindow::MainWindow(int argc, char **argv, QWidget *parent, workbench::Building building)
    : QMainWindow(parent)
{
    setWindowTitle(tr("VDR32 Sealed Package Builder"));
    setMinimumSize(app::leastWindowSize(app::freeScreenArea()));
    setContextMenuPolicy(Qt::NoContextMenu);  // it would offer to hide the tool bar
    show();  // a box raised by the command line needs a window behind it
    InitMenuBar();
    InitToolsBar();
    QCoreApplication::instance()->installEventFilter(new app::SelectionKeeper(this));
    centralWidget = new CentralWidget(1, this, building);
    centralWidget->obkeyScrollArea = new QScrollArea(centralWidget->obkeyPage);
    centralWidget->obkeyScrollArea->hide();
    setCentralWidget(centralWidget);
    centralWidget->buildTabInFront();
    connect(centralWidget, &CentralWidget::tabBuilt, this, &MainWindow::restoreLate);
    connectActions();
    app::addShortcuts(*this);
    settingsPath = app::settingsPlace(QCoreApplication::applicationDirPath());
    if (settingsPath.isEmpty()) {
        DisplayMng::getInstance().logMessage(
            7, L"Settings are not kept: the program's folder can't be written to, HOME isn't set");
    } else if (QFileInfo::exists(settingsPath)) {
        LoadSettings();
    }
    centralWidget->launchMode = CentralWidget::Interactive;
    if (argc < 2) {
        startWithoutArguments();
    } else {
        QStringList arguments;
        for (int i = 0; i < argc; ++i) {
            arguments << QString::fromLocal8Bit(argv[i]);
        }
        startWithArguments(arguments);
    }
    focusDeviceBox();
    m_isStarting = false;
    centralWidget->buildTheRestInTime();
}

void MainWindow::focusDeviceBox() const
{
    const QWidget *page = centralWidget->tabWidget->currentWidget();
    if (page == nullptr) {
        return;
    }
    const auto boxes = page->findChildren<QComboBox *>();
    for (QComboBox *box : boxes) {
        if (box->objectName().endsWith(QLatin1String("_mcu_combo")) ||
            box->objectName().endsWith(QLatin1String("_device_combo"))) {
            box->setFocus();
        }
    }
}

void MainWindow::startWithoutArguments()
{
    centralWidget->ensureObkey();
    ++centralWidget->obkey->imageGenCount;
    centralWidget->appendImageGenPage();
    centralWidget->InitOBkeyTab();
    centralWidget->InitMCUbootTab();
}

void MainWindow::startWithArguments(const QStringList &arguments)
{
    centralWidget->ensureObkey();
    centralWidget->InitOBkeyTab();
    if (app::startsWithoutTabs(arguments)) {
        centralWidget->tabWidget->clear();
    } else {
        ++centralWidget->obkey->imageGenCount;
        centralWidget->appendImageGenPage();
        centralWidget->InitMCUbootTab();
    }
    for (const app::Step &step : app::parseCommandLine(arguments)) {
        // A window that was closed behind a box wants nothing more.
        if (m_closedStatus || !perform(step)) {
            return;
        }
    }
}

bool MainWindow::perform(const app::Step &step)
{
    switch (step.kind) {
    case app::Step::Kind::NoGeneration:
        centralWidget->launchMode = CentralWidget::NoGeneration;
        return true;
    case app::Step::Kind::ObkTemplate:
        return openObkTemplate(step);
    case app::Step::Kind::ImageTemplate:
        return openImageTemplate(step);
    case app::Step::Kind::ShowTab:
        return showTab(step);
    case app::Step::Kind::Complaint:
        break;
    }
    DisplayMng::getInstance().logMessage(5, L"%ls", step.complaint);
    return false;
}

bool MainWindow::openObkTemplate(const app::Step &step)
{
    CentralWidget &form = *centralWidget;
    form.panelFrame->hide();
    form.hamburgerButton->hide();
    form.obkeyTabIndex = static_cast<std::uint8_t>(form.addTab(form.obkeyPage, tr("OBkey")));
    const std::size_t next = form.obkey->imageGenCount;
    if (step.hidesNextImagePage && next < form.imageGenPages.size()) {
        form.imageGenPages[next]->hide();
    }
    if (!step.path) {
        form.tabWidget->setCurrentIndex(form.obkeyTabIndex);
        DisplayMng::getInstance().logMessage(5, L"Please Check input XML obkey");
        return false;
    }
    takeTemplatePath(*step.path);
    form.OpenOBkeyKey();
    form.tabWidget->setCurrentIndex(form.obkeyTabIndex);
    form.obkeyScrollArea->setMinimumWidth(width() * 98 / 100);
    form.obkeyScrollArea->setMinimumHeight(height() * 3 / 4);
    return true;
}

bool MainWindow::openImageTemplate(const app::Step &step)
{
    CentralWidget &form = *centralWidget;
    ++form.obkey->imageGenCount;
    form.appendImageGenPage();
    form.imageGenTabIndex = static_cast<std::uint8_t>(form.addTab(
        form.currentImageGenPage(), tr("H5-Image Gen %1").arg(form.obkey->imageGenCount)));
    form.InitMCUbootTab();
    form.panelFrame->hide();
    form.hamburgerButton->hide();
    if (form.launchMode == CentralWidget::NoGeneration) {
        form.obkey->imgTools.back().saveStatus = 2;
    }
    if (!step.path) {
        form.tabWidget->setCurrentIndex(form.imageGenTabIndex);
        DisplayMng::getInstance().logMessage(5, L"Please Check input XML Imgtool");
        return false;
    }
    takeTemplatePath(*step.path);
    form.OpenMCUboot();
    form.tabWidget->setCurrentIndex(form.imageGenTabIndex);
    return true;
}

void MainWindow::takeTemplatePath(const QString &path)
{
    centralWidget->templatePath = path.toStdString();
    if (centralWidget->launchMode != CentralWidget::NoGeneration) {
        centralWidget->launchMode = CentralWidget::FromCommandLine;
    }
}

bool MainWindow::showTab(const app::Step &step)
{
    centralWidget->showPanel(*step.panel);
    if (step.index < 0 || step.index >= centralWidget->tabWidget->count()) {
        DisplayMng::getInstance().logMessage(
            5, L"%ls", app::rangeComplaint(*step.panel).toStdWString().c_str());
        return false;
    }
    centralWidget->tabWidget->setCurrentIndex(step.index);
    return true;
}

int MainWindow::statusOnClose() const
{
    if (centralWidget == nullptr || centralWidget->launchMode != CentralWidget::NoGeneration) {
        return 0;
    }
    const Obkey &obkey = *centralWidget->obkey;
    // A single tab isn't looked at, saved or not.
    if (obkey.imageGenCount < 2) {
        return 2;
    }
    const bool saved = std::any_of(obkey.imgTools.begin(), obkey.imgTools.end(),
                                   [](const ImgTool &tool) { return tool.saveStatus == 1; });
    return saved ? 1 : 2;
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    SaveSettings();
    event->accept();
    if (m_updateWindow != nullptr) {
        m_updateWindow->close();
    }
    m_closedStatus = statusOnClose();
    const bool noGeneration =
        centralWidget != nullptr && centralWidget->launchMode == CentralWidget::NoGeneration;
    // During start-up only the loop of a box is running; it must not outlive its window.
    if (noGeneration || m_isStarting) {
        QCoreApplication::exit(*m_closedStatus);
    }
}

void MainWindow::resizeEvent(QResizeEvent *event)
{
    QMainWindow::resizeEvent(event);
    fitToolBar();
    // The window is shown, and so resized, before it has a form.
    if (centralWidget == nullptr || centralWidget->obkeyScrollArea == nullptr) {
        return;
    }
    const QSize page = centralWidget->obkeyPage->size();
    centralWidget->obkeyScrollArea->setMinimumSize(page);
    centralWidget->obkeyScrollArea->resize(page);
}
