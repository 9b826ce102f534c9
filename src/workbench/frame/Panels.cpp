#include "workbench/frame/CentralWidget.h"
#include "workbench/frame/PanelTable.h"
#include "workbench/frame/TabSet.h"

#include <QCoreApplication>
#include <QFrame>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>

#include <algorithm>

using workbench::DeviceBoxes;
using workbench::HsmDevices;
using workbench::Panel;

namespace
{

constexpr int kClosedWidth = 50;
constexpr int kOpenWidth = 320;
constexpr int kAboutLength = 68;  // of its label, with the blanks behind it

const char *const kGradient =
    "background-color: qlineargradient(x1: 0, x2: 0, y1: 0, y2: 1, stop: 0 #03234B, stop: 1 "
    "#3CB4E6)";
// Without a rule for the focus "border:none" would hide it.
const char *const kHoverRule =
    "QPushButton:hover{background-color: qlineargradient(x1: 0, x2: 0, y1: 0, y2: 1, stop: 0 "
    "#03234B, stop: 1 #3CB4E6)}"
    "QPushButton:focus{border: 2px solid #8FD3F4; border-radius: 4px}"
    // A tool tip takes the panel's navy with it, and would show the desktop's black text on it.
    "QToolTip{color: white; border: 1px solid #8FD3F4}";

QPushButton *makeIconButton(QWidget *parent, const char *name, const char *icon,
                            const QString &label)
{
    auto *button = new QPushButton(parent);
    button->setObjectName(QLatin1String(name));
    button->setIcon(QIcon(QLatin1String(icon)));
    button->setIconSize(QSize(32, 32));
    button->setFixedSize(44, 40);
    button->setAccessibleName(label);
    button->setToolTip(label);
    return button;
}

QLabel *makeLabel(QWidget *parent, const QString &name)
{
    auto *label = new QLabel(parent);
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText);
    label->hide();
    return label;
}

QFrame *makeSeparator(QWidget *parent, int height)
{
    auto *line = new QFrame(parent);
    line->setFixedHeight(height);
    line->setStyleSheet(QStringLiteral("background-color: #3F5575;"));
    return line;
}

QHBoxLayout *makeRow(QPushButton *button, QLabel *label)
{
    auto *row = new QHBoxLayout;
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    row->addWidget(button);
    if (label != nullptr) {
        row->addWidget(label, 1);
    }
    row->addStretch(0);
    return row;
}

}  // namespace

void CentralWidget::initPanelIcons()
{
    panelFrame = new QGroupBox(this);
    panelFrame->setStyleSheet(
        QStringLiteral("background-color: #03234B; border-radius: 4px; border-width: 0px;"));
    panelFrame->setFixedWidth(kClosedWidth);
    hamburgerButton =
        makeIconButton(panelFrame, "hamburgerIcon", ":/hamburger.png", tr("Panel names"));
    for (const Panel &panel : workbench::panels()) {
        m_panelButtons.push_back(
            {&panel, makeIconButton(panelFrame, panel.button, panel.icon, tr(panel.caption)),
             nullptr});
    }
    helpButton = makeIconButton(panelFrame, "helpIcon", ":/helpIcon.png", tr("About"));
    for (PanelButton &entry : m_panelButtons) {
        entry.label = makeLabel(panelFrame, entry.panel->button + QStringLiteral("Label"));
    }
    helpLabel = makeLabel(panelFrame, QStringLiteral("helpIconLabel"));

    auto *top = new QVBoxLayout;
    top->setContentsMargins(0, 0, 0, 0);
    top->setSpacing(0);
    top->addLayout(makeRow(hamburgerButton, nullptr));
    for (const PanelButton &entry : m_panelButtons) {
        if (&entry != &m_panelButtons.front()) {
            top->addWidget(makeSeparator(panelFrame, 1));
        }
        top->addLayout(makeRow(entry.button, entry.label));
    }
    auto *bottom = new QVBoxLayout;
    bottom->setContentsMargins(0, 0, 0, 0);
    bottom->setSpacing(2);
    bottom->addWidget(makeSeparator(panelFrame, 2));
    bottom->addLayout(makeRow(helpButton, helpLabel));
    auto *column = new QVBoxLayout(panelFrame);
    column->setContentsMargins(0, 0, 0, 0);
    column->addLayout(top);
    column->addStretch(1);
    column->addLayout(bottom);
    sfiButton = panelButton("sfi").button;
    sfiLabel = panelButton("sfi").label;
    sspButton = panelButton("ssp").button;
    sspLabel = panelButton("ssp").label;
    wbButton = panelButton("wb").button;
    wbLabel = panelButton("wb").label;
    h5Button = panelButton("h5").button;
    h5Label = panelButton("h5").label;
    displaySFI_Tabs();
}

void CentralWidget::connectPanel()
{
    connect(hamburgerButton, &QPushButton::clicked, this, &CentralWidget::displayHamburger);
    for (const PanelButton &entry : m_panelButtons) {
        connect(entry.button, &QPushButton::clicked, this,
                [this, panel = entry.panel] { showPanel(*panel); });
    }
    connect(helpButton, &QPushButton::clicked, this, &CentralWidget::displayHelp);
}

void CentralWidget::showPanel(const Panel &panel)
{
    tabWidget->clear();
    for (const char *key : panel.tabs) {
        addPanelTab(QLatin1String(key));
    }
    if (panel.deviceBoxes != DeviceBoxes::Unchanged) {
        m_tabs->lockDevices(panel.deviceBoxes == DeviceBoxes::LockedH5);
    }
    if (panel.hsmDevices != HsmDevices::Unchanged) {
        setHsmMcuSelectComponent(panel.hsmDevices == HsmDevices::Microcontrollers);
    }
    highlightCurrentIcon(QLatin1String(panel.name));
    update();  // or the upper edge of tabs that are gone would stay behind
}

void CentralWidget::addPanelTab(const QString &key)
{
    const workbench::TabEntry &entry = workbench::tabEntry(key);
    const bool madeOften = entry.built == workbench::TabEntry::Built::ManyTimes;
    if (madeOften) {
        appendImageGenPage();
    }
    QWidget *page = madeOften ? currentImageGenPage() : pageOf(key);
    if (page == nullptr) {
        return;
    }
    const auto index = static_cast<std::uint8_t>(addTab(page, tr(entry.name.title)));
    if (page == obkeyPage) {
        obkeyTabIndex = index;
    } else if (madeOften) {
        imageGenTabIndex = index;
    }
}

const CentralWidget::PanelButton &CentralWidget::panelButton(const char *name) const
{
    return *std::ranges::find_if(m_panelButtons, [name](const PanelButton &entry) {
        return entry.panel == workbench::findPanel(QLatin1String(name));
    });
}

void CentralWidget::displaySFI_Tabs()
{
    showPanel(*panelButton("sfi").panel);
}

void CentralWidget::displaySSP_Tabs()
{
    showPanel(*panelButton("ssp").panel);
}

void CentralWidget::displayWB_Tabs()
{
    showPanel(*panelButton("wb").panel);
}

void CentralWidget::displayH5_Tabs()
{
    showPanel(*panelButton("h5").panel);
}

int CentralWidget::addTab(QWidget *page, const QString &title)
{
    const int index = tabWidget->addTab(page, title);
    tabWidget->setTabToolTip(index, title);
    return index;
}

void CentralWidget::displayHamburger()
{
    isHamburgerOpen = !isHamburgerOpen;
    panelFrame->setFixedWidth(isHamburgerOpen ? kOpenWidth : kClosedWidth);
    update();  // at a scale such as 104 % a row of the moved tabs would stay behind
    hamburgerButton->setIcon(QIcon(isHamburgerOpen ? QStringLiteral(":/rotateHamburger.png")
                                                   : QStringLiteral(":/hamburger.png")));
    static const QFont fontLabel(QStringLiteral("Segoe UI"), 11);
    // The blanks carry the label's background to the edge of the open panel.
    const auto caption = [this](QLabel *label, const QString &text, int length) {
        if (isHamburgerOpen) {
            label->setText(text.leftJustified(length));
            label->setFont(fontLabel);
        }
        label->setVisible(isHamburgerOpen);
    };
    for (const PanelButton &entry : m_panelButtons) {
        caption(entry.label, tr(entry.panel->caption), entry.panel->captionLength);
    }
    caption(helpLabel, tr("About"), kAboutLength);
}

void CentralWidget::highlightCurrentIcon(const QString &name)
{
    const QString hover = QLatin1String(kHoverRule);
    const Panel *const inUse = workbench::findPanel(name);
    for (const PanelButton &entry : m_panelButtons) {
        const bool chosen = entry.panel == inUse;
        // Bare declarations and a rule in one sheet don't parse, so the declarations get a
        // selector. The panel's round corners would leave a notch between button and label.
        entry.button->setStyleSheet(
            chosen ? QLatin1String("QPushButton{border:none;border-radius:0px;") +
                         QLatin1String(kGradient) + QLatin1Char('}') + hover
                   : QLatin1String("QPushButton{background: transparent; border:none;}") + hover);
        entry.label->setStyleSheet(
            chosen ? QLatin1String("QLabel{color: white;border-radius:0px;") +
                         QLatin1String(kGradient) + QLatin1Char('}')
                   : QStringLiteral("QLabel{color: white;background: transparent;}"));
    }
    helpButton->setStyleSheet(QLatin1String("QPushButton{border:none;}") + hover);
    hamburgerButton->setStyleSheet(QLatin1String("QPushButton{border:none;}") + hover);
    helpLabel->setStyleSheet(QStringLiteral("QLabel{color: white;background: transparent;}"));
}

void CentralWidget::displayHelp()
{
    // The box closes on its own time. It stays the form's then, for the next look.
    if (m_aboutBox == nullptr) {
        m_aboutBox = new QMessageBox(this);
        m_aboutBox->setWindowTitle(tr("About"));
        m_aboutBox->setTextFormat(Qt::PlainText);
        m_aboutBox->setIconPixmap(QPixmap(QStringLiteral(":/Vendrelis.png")));
        m_aboutBox->setText(QLatin1Char('\n') + QCoreApplication::applicationName() +
                            QLatin1String("\n v") + QCoreApplication::applicationVersion() +
                            QLatin1Char('\n') + QCoreApplication::organizationName());
        m_aboutBox->setModal(false);
    }
    m_aboutBox->show();
    m_aboutBox->raise();
    m_aboutBox->activateWindow();
}
