#include "report/DisplayMng.h"
#include "support/DialogAnswers.h"
#include "support/MessageLog.h"
#include "support/ScratchFolder.h"
#include "workbench/forms/Tab.h"
#include "workbench/frame/CentralWidget.h"
#include "workbench/widgets/ResizeFilter.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>
#include <QToolTip>

#include <gtest/gtest.h>

namespace
{

QStringList qtMessages;

void recordMessage(QtMsgType /*type*/, const QMessageLogContext & /*context*/, const QString &text)
{
    // Only the platform of the tests says this.
    if (!text.contains("propagateSizeHints")) {
        qtMessages << text;
    }
}

class Panels : public ::testing::Test
{
protected:
    QStringList titles() const
    {
        QStringList all;
        for (int i = 0; i < form.tabWidget->count(); ++i) {
            all << form.tabWidget->tabText(i);
        }
        return all;
    }
    /// Device boxes of the tabs that have one.
    QList<QComboBox *> boxes() const
    {
        QList<QComboBox *> all;
        for (const workbench::Tab *tab : form.tabs()) {
            if (auto *box = tab->page()->findChild<QComboBox *>(tab->key() + "_mcu_combo")) {
                all << box;
            }
        }
        return all;
    }
    /// Text of each box, in brackets while it is locked.
    QStringList devices() const
    {
        QStringList all;
        for (const QComboBox *box : boxes()) {
            all << (box->isEnabled() ? box->currentText() : '[' + box->currentText() + ']');
        }
        return all;
    }
    QStringList toolTips() const
    {
        QStringList all;
        for (const QComboBox *box : boxes()) {
            all << box->toolTip();
        }
        return all;
    }
    static QStringList same(const QString &text, int count)
    {
        QStringList all;
        while (all.size() < count) {
            all << text;
        }
        return all;
    }

    CentralWidget form{1};
};

TEST_F(Panels, ButtonsShowTheirTabsAndTheFirstOne)
{
    EXPECT_EQ(titles(), (QStringList{"SFI", "SFIx", "SFI Option Bytes", "SMI", "HSM"}));
    form.tabWidget->setCurrentIndex(3);
    form.sfiButton->click();
    EXPECT_EQ(form.tabWidget->currentIndex(), 0);
    EXPECT_EQ(form.tabWidget->count(), 5);
    form.sspButton->click();
    EXPECT_EQ(titles(), (QStringList{"SSP", "HSM"}));
    form.wbButton->click();
    EXPECT_EQ(titles(), QStringList("VDR32WB Sign"));
    form.h5Button->click();  // no template tab was started, so there is no image page either
    EXPECT_EQ(titles(), (QStringList{"OBkey", "License Gen", "DA CertifGen", "SFI", "SFIx", "HSM",
                                     "SFI Option Bytes"}));
    for (int i = 0; i < form.tabWidget->count(); ++i) {
        EXPECT_EQ(form.tabWidget->tabToolTip(i), form.tabWidget->tabText(i));
        EXPECT_TRUE(form.tabWidget->widget(i)->objectName().endsWith("_page"));
    }
}

TEST_F(Panels, H5LocksTheBoxesAndGivesTheChoiceBack)
{
    const QList<QComboBox *> all = boxes();
    ASSERT_GE(all.size(), 2);
    for (int i = 0; i < all.size(); ++i) {
        all[i]->setCurrentIndex(2 + i);
    }
    const QStringList chosen = devices();
    const QStringList tips = toolTips();
    QStringList locked;
    for (const QComboBox *box : all) {
        locked << (box->objectName() == "ob_mcu_combo" ? "[VDR32H5xx]" : "[VDR32H5]");
    }
    form.h5Button->click();
    form.h5Button->click();  // a second click must not store the locked entry
    EXPECT_EQ(devices(), locked);
    all[0]->setCurrentIndex(1);  // as code may do; the panel has its own entry
    form.h5Button->click();
    EXPECT_EQ(devices(), locked);
    form.sspButton->click();  // leaves the lock alone
    EXPECT_EQ(devices(), locked);
    form.sfiButton->click();
    EXPECT_EQ(devices(), chosen);
    EXPECT_EQ(toolTips(), tips) << "not why it was locked";
    all[0]->setCurrentIndex(5);
    const QStringList later = devices();
    form.wbButton->click();
    form.sfiButton->click();
    EXPECT_EQ(devices(), later) << "other panels lose no choice";
}

TEST_F(Panels, TheWheelGivesNoDeviceBoxTheFocus)
{
    for (QComboBox *box : boxes()) {
        box->ensurePolished();
        EXPECT_EQ(box->focusPolicy(), Qt::StrongFocus) << box->objectName().toStdString();
    }
}

TEST_F(Panels, ATabIsBuiltOnce)
{
    form.InitSfiTab();
    form.InitOBkeyTab();
    form.InitOBkeyTab();
    QStringList keys;
    for (const workbench::Tab *tab : form.tabs()) {
        keys << tab->key();
    }
    EXPECT_EQ(keys.removeDuplicates(), 0) << keys.join(' ').toStdString();
}

TEST_F(Panels, DisabledPagesAreNoLock)
{
    boxes()[0]->setCurrentIndex(2);
    form.setEnabled(false);
    form.displayH5_Tabs();
    form.setEnabled(true);
    form.displaySFI_Tabs();
    EXPECT_EQ(boxes()[0]->currentIndex(), 2);
    EXPECT_TRUE(boxes()[0]->isEnabled());
}

TEST(EmptyForm, HasNothingAndLocksNothing)
{
    CentralWidget empty(0);
    EXPECT_EQ(empty.tabWidget, nullptr);
    EXPECT_TRUE(empty.children().isEmpty());
    empty.setSFImcuComboBoxH5(true);
    empty.clearForms();
}

// Other programs and the panel call them by name; a slip would fill the neighbour's field.
TEST_F(Panels, OperationsReachTheFieldOfTheirName)
{
    const struct {
        void (CentralWidget::*operation)();
        const char *field;
        qint64 bytes;  ///< of the file that it makes; 0: it opens one
    } rows[] = {
        {&CentralWidget::OpenSfiKey, "sfi_key", 0},
        {&CentralWidget::OpenSfiNonce, "sfi_nonce", 0},
        {&CentralWidget::OpenOb, "sfi_optionBytes", 0},
        {&CentralWidget::OpenAreaK_SFI, "sfi_areaKey", 0},
        {&CentralWidget::OpenSfiSsfi, "sfi_ssfi", 0},
        {&CentralWidget::OpenH5Modules, "sfi_modules", 0},
        {&CentralWidget::OpenAreaK, "sfix_areaKey", 0},
        {&CentralWidget::OpenSfixSsfi, "sfix_ssfi", 0},
        {&CentralWidget::OpenH5Modules_SFIx, "sfix_modules", 0},
        {&CentralWidget::GenerateEncryptionKey, "sfi_key", 16},
        {&CentralWidget::GenerateNonceKey, "sfi_nonce", 12},
    };
    for (const auto &[operation, field, bytes] : rows) {
        const ScratchFolder folder;
        const QString path = bytes == 0 ? folder.file("in.bin", "x") : folder.path("made.bin");
        form.clearForms();
        DialogAnswers dialogs({path});
        if (bytes != 0) {
            dialogs.expect(QMessageBox::Ok);
        }
        (form.*operation)();
        EXPECT_EQ(form.findChild<QLineEdit *>(field + QString("_edit"))->text(), path) << field;
        EXPECT_EQ(QFileInfo(path).size(), bytes == 0 ? 1 : bytes) << field;
    }
    const ScratchFolder folder;
    form.findChild<QLineEdit *>("ssp_key_edit")->setText(folder.path("key.bin"));
    form.findChild<QLineEdit *>("ssp_nonce_edit")->setText(folder.path("nonce.bin"));
    DialogAnswers boxes({QMessageBox::Ok, QMessageBox::Ok});
    form.generateKeySSP();
    EXPECT_EQ(QDir(folder.path("")).entryList(QDir::Files), QStringList("key.bin"));
    form.generateNonceSSP();
    EXPECT_EQ(QFileInfo(folder.path("nonce.bin")).size(), 16);
}

TEST(EndOfAForm, GivesTheMessagesBack)
{
    MessageLog log;
    {
        const CentralWidget form(1);
        const CentralWidget empty(0);
    }
    DisplayMng::getInstance().logMessage(5, L"late");
    EXPECT_EQ(log.all(), (Messages{{5, "Error: late"}}));
}

TEST_F(Panels, HamburgerOpensAndCloses)
{
    form.show();
    struct Caption {
        const char *name;
        const char *text;
        int length;
    };
    const Caption captions[] = {{"sfiIconLabel", "Secure Firmware Install", 69},
                                {"sspIconLabel", "MPU SSP", 69},
                                {"wbIconLabel", "WB Sign", 70},
                                {"h5IconLabel", "H5 Secure Firmware", 70},
                                {"helpIconLabel", "About", 68}};
    for (const bool open : {true, false, true}) {
        form.hamburgerButton->click();
        EXPECT_EQ(form.isHamburgerOpen, open);
        EXPECT_EQ(form.panelFrame->width(), open ? 320 : 50);
        for (const Caption &caption : captions) {
            const auto *label = form.findChild<QLabel *>(caption.name);
            ASSERT_NE(label, nullptr);
            EXPECT_EQ(label->isVisible(), open);
            EXPECT_EQ(label->text(), QString(caption.text).leftJustified(caption.length));
            EXPECT_EQ(label->font().pointSize(), 11) << caption.name;
        }
        for (QPushButton *button : {form.sfiButton, form.helpButton, form.hamburgerButton}) {
            EXPECT_EQ(button->size(), QSize(44, 40));
        }
    }
}

TEST_F(Panels, StylesParseAndMarkOnlyThePanelInUse)
{
    const auto previous = qInstallMessageHandler(recordMessage);
    qtMessages.clear();
    form.show();
    for (QPushButton *button :
         {form.h5Button, form.sspButton, form.wbButton, form.sfiButton, form.hamburgerButton}) {
        button->click();
        form.grab();
    }
    form.highlightCurrentIcon("SSP");
    qInstallMessageHandler(previous);
    EXPECT_EQ(qtMessages, QStringList());

    const QImage chosen = form.sspButton->grab().toImage();
    const QImage other = form.h5Button->grab().toImage();
    EXPECT_NE(chosen.pixelColor(22, 1), chosen.pixelColor(22, 38)) << "no gradient";
    EXPECT_EQ(other.pixelColor(22, 1), other.pixelColor(22, 38));
}

TEST(TabStyle, WidthIsAFixedShare)
{
    struct Case {
        int width;
        void (*style)(QTabWidget *);
        const char *expected;
    };
    for (const Case &c : {Case{1420, expandingTabsStyleSheet, "width: 117px;"},
                          Case{1421, expandingTabsStyleSheet, "width: 117px;"},
                          Case{1423, expandingTabsStyleSheet, "width: 118px;"},
                          Case{501, expandingTabsStyleSheetInf, "width: 249px;"},
                          Case{502, expandingTabsStyleSheetInf, "width: 250px;"}}) {
        QTabWidget tabs;
        tabs.resize(c.width, 100);
        c.style(&tabs);
        EXPECT_TRUE(tabs.styleSheet().contains(c.expected)) << tabs.styleSheet().toStdString();
        EXPECT_TRUE(
            tabs.styleSheet().startsWith("QTabBar::tab {color: white;font: bold;height: 30px;"));
        EXPECT_TRUE(tabs.styleSheet().endsWith(
            "QTabBar::tab:disabled {width: 2px;background: transparent;color: transparent;}"));
    }
}

TEST(TabStyle, FollowsTheSizeOfTheWidget)
{
    QTabWidget tabs;
    tabs.installEventFilter(new ResizeFilter(&tabs));
    QTabWidget info;
    info.installEventFilter(new ResizeFilterInf(&info));
    for (QTabWidget *widget : {&tabs, &info}) {
        widget->show();
        widget->resize(607, 300);
        QCoreApplication::processEvents();
    }
    EXPECT_TRUE(tabs.styleSheet().contains("width: 50px;"));
    EXPECT_TRUE(info.styleSheet().contains("width: 302px;"));
}

TEST_F(Panels, ToolTipsAreLegibleOnTheNavyOfThePanel)
{
    form.show();
    QToolTip::showText(QPoint(5, 5), "WB Sign", form.wbButton);
    QImage tip;
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (widget->objectName() == "qtooltip_label") {
            tip = widget->grab(widget->rect().adjusted(3, 3, -3, -3)).toImage();
        }
    }
    QToolTip::hideText();
    ASSERT_FALSE(tip.isNull());
    int darkest = 255;
    int brightest = 0;
    for (int y = 0; y < tip.height(); ++y) {
        for (int x = 0; x < tip.width(); ++x) {
            darkest = qMin(darkest, qGray(tip.pixel(x, y)));
            brightest = qMax(brightest, qGray(tip.pixel(x, y)));
        }
    }
    EXPECT_GT(brightest - darkest, 150);
}

TEST_F(Panels, HelpBoxStaysBesideTheForm)
{
    QCoreApplication::setApplicationName("Name <b>");
    QCoreApplication::setApplicationVersion("1.2");
    QCoreApplication::setOrganizationName("Maker");
    form.helpButton->click();
    auto *box = form.findChild<QMessageBox *>();
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->text(), "\nName <b>\n v1.2\nMaker");
    EXPECT_EQ(box->textFormat(), Qt::PlainText);
    EXPECT_TRUE(box->isVisible());
    EXPECT_FALSE(box->isModal());
    EXPECT_FALSE(box->iconPixmap().isNull());
    QTest::keyClick(box, Qt::Key_Escape);
    EXPECT_FALSE(box->isVisible());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    form.displayHelp();
    EXPECT_EQ(form.findChildren<QMessageBox *>().size(), 1);
    EXPECT_TRUE(box->isVisible());
}

}  // namespace
