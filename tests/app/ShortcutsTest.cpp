#include "app/WindowSize.h"
#include "app/WindowUnderTest.h"
#include "support/DialogAnswers.h"
#include "support/QtPrinters.h"

#include <QMessageBox>
#include <QPushButton>
#include <QShortcut>
#include <QSignalSpy>
#include <QTabWidget>
#include <QTest>
#include <QToolBar>

#include <gtest/gtest.h>

namespace
{

class WindowKeys : public ::testing::Test
{
protected:
    WindowKeys() { EXPECT_TRUE(QTest::qWaitForWindowActive(&*window)); }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        ASSERT_NE(QApplication::focusWidget(), nullptr);
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    }
    QString inFront() { return window.tabs().tabText(window.tabs().currentIndex()); }

    WindowUnderTest window;
};

TEST_F(WindowKeys, FocusStartsInTheDeviceBox)
{
    EXPECT_EQ(QApplication::focusWidget()->objectName(), "sfi_mcu_combo");
}

TEST_F(WindowKeys, TabsAndPanels)
{
    press(Qt::Key_PageUp, Qt::ControlModifier);
    EXPECT_EQ(inFront(), "HSM");
    press(Qt::Key_PageDown, Qt::ControlModifier);
    press(Qt::Key_PageDown, Qt::ControlModifier);
    EXPECT_EQ(inFront(), "SFIx");
    const char *const first[] = {"SFI", "SSP", "VDR32WB Sign", "OBkey"};
    for (const int panel : {2, 4, 3, 1}) {
        press(static_cast<Qt::Key>(Qt::Key_0 + panel), Qt::AltModifier);
        EXPECT_EQ(inFront(), first[panel - 1]);
    }
}

// A template's tab is all that there is then, and nothing would bring it back.
TEST(WindowKeysOfATemplate, LeaveItsTab)
{
    DialogAnswers boxes({QMessageBox::Ok});
    const WindowUnderTest window({"-obk"});
    QApplication::setActiveWindow(&*window);
    QTest::keyClick(&*window, Qt::Key_2, Qt::AltModifier);
    EXPECT_EQ(window.titles(), QStringList{"OBkey"});
}

TEST_F(WindowKeys, GenerateIsTheButtonOfTheTabInFront)
{
    window.tabs().setCurrentIndex(1);
    const auto *sfi = window->findChild<QPushButton *>("sfi_generate_ok");
    auto *sfix = window->findChild<QPushButton *>("sfix_generate_ok");
    QSignalSpy ofSfi(sfi, &QPushButton::clicked);
    QSignalSpy ofSfix(sfix, &QPushButton::clicked);
    window->setFocus();
    press(Qt::Key_Return, Qt::ControlModifier);
    EXPECT_EQ(ofSfix.size(), 0) << "the button is disabled";
    sfix->setEnabled(true);
    DialogAnswers boxes({QMessageBox::Ok});  // nothing is filled in
    press(Qt::Key_Return, Qt::ControlModifier);
    EXPECT_EQ(ofSfix.size(), 1);
    EXPECT_EQ(ofSfi.size(), 0);
}

TEST_F(WindowKeys, CheckAboutAndLeave)
{
    {
        DialogAnswers boxes({""});
        press(Qt::Key_O, Qt::ControlModifier);
        EXPECT_EQ(boxes.seen().size(), 1u);
    }
    QApplication::setActiveWindow(&*window);
    QTest::keyClick(&*window, Qt::Key_F1);
    auto *about = window->findChild<QMessageBox *>();
    ASSERT_NE(about, nullptr);
    EXPECT_TRUE(about->isVisible());
    about->close();
    QApplication::setActiveWindow(&*window);
    QTest::keyClick(&*window, Qt::Key_Q, Qt::ControlModifier);
    EXPECT_TRUE(window->isHidden());
}

// A key that two shortcuts want does nothing.
TEST_F(WindowKeys, EachKeyHasOneMeaningAndATip)
{
    QStringList keys;
    for (const QShortcut *shortcut : window->findChildren<QShortcut *>()) {
        keys << shortcut->key().toString();
    }
    EXPECT_EQ(keys.removeDuplicates(), 0) << keys.join(' ').toStdString();
    QStringList tips{window->docAction->toolTip()};
    for (const QAction *action : window->toolBar->actions()) {
        tips << action->toolTip();
    }
    for (const QPushButton *button : window->findChildren<QPushButton *>()) {
        tips << button->toolTip();
    }
    const QString all = tips.join('|');
    for (const char *key :
         {"(F1)", "(Ctrl+Q)", "(Ctrl+O)", "(Ctrl+Return)", "(Alt+1)", "(Alt+4)"}) {
        EXPECT_TRUE(all.contains(key)) << key << " in " << all.toStdString();
    }
}

TEST_F(WindowKeys, ToolBarHasWordsWhereTheyFit)
{
    EXPECT_EQ(window->toolBar->toolButtonStyle(), Qt::ToolButtonTextBesideIcon);
    window->setMinimumSize(100, 100);
    window->resize(300, 700);
    QCoreApplication::processEvents();
    EXPECT_EQ(window->toolBar->toolButtonStyle(), Qt::ToolButtonIconOnly);
    window->resize(1420, 800);
    QCoreApplication::processEvents();
    EXPECT_EQ(window->toolBar->toolButtonStyle(), Qt::ToolButtonTextBesideIcon);
}

TEST(LeastWindowSize, IsTheFreeAreaOfASmallScreen)
{
    EXPECT_EQ(app::leastWindowSize(QSize(1920, 1050)), QSize(1420, 800));
    EXPECT_EQ(app::leastWindowSize(QSize(1366, 740)), QSize(1366, 740));
    EXPECT_EQ(app::leastWindowSize(QSize(1920, 700)), QSize(1420, 700));
    EXPECT_EQ(app::leastWindowSize(QSize()), QSize(1420, 800));
}

}  // namespace
