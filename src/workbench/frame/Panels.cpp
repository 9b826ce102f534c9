#include "workbench/frame/CentralWidget.h"

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

namespace
{

constexpr int kClosedWidth = 50;
constexpr int kOpenWidth = 320;

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

QLabel *makeLabel(QWidget *parent, const char *name)
{
    auto *label = new QLabel(parent);
    label->setObjectName(QLatin1String(name));
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
    sfiButton =
        makeIconButton(panelFrame, "sfiIcon", ":/sfiIcon.png", tr("Secure Firmware Install"));
    sspButton = makeIconButton(panelFrame, "sspIcon", ":/sspIcon.png", tr("MPU SSP"));
    wbButton = makeIconButton(panelFrame, "wbIcon", ":/wbIcon.png", tr("WB Sign"));
    h5Button = makeIconButton(panelFrame, "h5Icon", ":/h5Icon.png", tr("H5 Secure Firmware"));
    helpButton = makeIconButton(panelFrame, "helpIcon", ":/helpIcon.png", tr("About"));
    sfiLabel = makeLabel(panelFrame, "sfiIconLabel");
    sspLabel = makeLabel(panelFrame, "sspIconLabel");
    wbLabel = makeLabel(panelFrame, "wbIconLabel");
    h5Label = makeLabel(panelFrame, "h5IconLabel");
    helpLabel = makeLabel(panelFrame, "helpIconLabel");

    auto *top = new QVBoxLayout;
    top->setContentsMargins(0, 0, 0, 0);
    top->setSpacing(0);
    top->addLayout(makeRow(hamburgerButton, nullptr));
    top->addLayout(makeRow(sfiButton, sfiLabel));
    top->addWidget(makeSeparator(panelFrame, 1));
    top->addLayout(makeRow(sspButton, sspLabel));
    top->addWidget(makeSeparator(panelFrame, 1));
    top->addLayout(makeRow(wbButton, wbLabel));
    top->addWidget(makeSeparator(panelFrame, 1));
    top->addLayout(makeRow(h5Button, h5Label));
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
    displaySFI_Tabs();
}

void CentralWidget::connectPanel()
{
    connect(hamburgerButton, &QPushButton::clicked, this, &CentralWidget::displayHamburger);
    connect(sfiButton, &QPushButton::clicked, this, &CentralWidget::displaySFI_Tabs);
    connect(sspButton, &QPushButton::clicked, this, &CentralWidget::displaySSP_Tabs);
    connect(wbButton, &QPushButton::clicked, this, &CentralWidget::displayWB_Tabs);
    connect(h5Button, &QPushButton::clicked, this, &CentralWidget::displayH5_Tabs);
    connect(helpButton, &QPushButton::clicked, this, &CentralWidget::displayHelp);
}

void CentralWidget::displaySFI_Tabs()
{
    tabWidget->clear();
    addTab(sfiPage, tr("SFI"));
    addTab(sfixPage, tr("SFIx"));
    addTab(sfiObPage, tr("SFI Option Bytes"));
    addTab(smiPage, tr("SMI"));
    addTab(hsmPage, tr("HSM"));
    setSFImcuComboBoxH5(false);
    setSFIOBmcuComboBoxH5(false);
    setSFIxmcuComboBoxH5(false);
    highlightCurrentIcon(QStringLiteral("sfi"));
}

void CentralWidget::displaySSP_Tabs()
{
    tabWidget->clear();
    addTab(sspPage, tr("SSP"));
    addTab(hsmPage, tr("HSM"));
    highlightCurrentIcon(QStringLiteral("ssp"));
}

void CentralWidget::displayWB_Tabs()
{
    tabWidget->clear();
    addTab(signPage, tr("VDR32WB Sign"));
    highlightCurrentIcon(QStringLiteral("wb"));
}

void CentralWidget::displayH5_Tabs()
{
    tabWidget->clear();
    obkeyTabIndex = static_cast<std::uint8_t>(addTab(obkeyPage, tr("OBkey")));
    appendImageGenPage();
    if (QWidget *page = currentImageGenPage(); page != nullptr) {
        imageGenTabIndex = static_cast<std::uint8_t>(addTab(page, tr("Image Gen")));
    }
    addTab(licensePage, tr("License Gen"));
    addTab(daPage, tr("DA CertifGen"));
    addTab(sfiPage, tr("SFI"));
    addTab(sfixPage, tr("SFIx"));
    addTab(hsmPage, tr("HSM"));
    addTab(sfiObPage, tr("SFI Option Bytes"));
    setSFImcuComboBoxH5(true);
    setSFIxmcuComboBoxH5(true);
    setSFIOBmcuComboBoxH5(true);
    highlightCurrentIcon(QStringLiteral("h5"));
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
    struct Caption {
        QLabel *label;
        QString text;
        int length;
    };
    // The blanks carry the label's background to the edge of the open panel.
    const Caption captions[] = {{sfiLabel, tr("Secure Firmware Install"), 69},
                                {sspLabel, tr("MPU SSP"), 69},
                                {wbLabel, tr("WB Sign"), 70},
                                {h5Label, tr("H5 Secure Firmware"), 70},
                                {helpLabel, tr("About"), 68}};
    for (const Caption &caption : captions) {
        if (isHamburgerOpen) {
            caption.label->setText(caption.text.leftJustified(caption.length));
            caption.label->setFont(fontLabel);
        }
        caption.label->setVisible(isHamburgerOpen);
    }
}

void CentralWidget::highlightCurrentIcon(const QString &name)
{
    struct Row {
        const char *name;
        QPushButton *button;
        QLabel *label;
    };
    const Row rows[] = {{"sfi", sfiButton, sfiLabel},
                        {"ssp", sspButton, sspLabel},
                        {"wb", wbButton, wbLabel},
                        {"h5", h5Button, h5Label}};
    const QString hover = QLatin1String(kHoverRule);
    for (const Row &row : rows) {
        const bool chosen = name.compare(QLatin1String(row.name), Qt::CaseInsensitive) == 0;
        // Bare declarations and a rule in one sheet don't parse, so the declarations get a
        // selector. The panel's round corners would leave a notch between button and label.
        row.button->setStyleSheet(
            chosen ? QLatin1String("QPushButton{border:none;border-radius:0px;") +
                         QLatin1String(kGradient) + QLatin1Char('}') + hover
                   : QLatin1String("QPushButton{background: transparent; border:none;}") + hover);
        row.label->setStyleSheet(
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
