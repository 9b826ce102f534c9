#include "app/WindowUnderTest.h"
#include "support/DialogAnswers.h"
#include "support/ScratchFolder.h"
#include "support/SfiBytes.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QDesktopServices>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QScrollArea>
#include <QTabBar>
#include <QTableWidget>
#include <QTest>
#include <QToolBar>

#include <gtest/gtest.h>

#include <algorithm>

namespace
{

TEST(MainWindow, MenusAndToolBarStandInOrder)
{
    const WindowUnderTest window;
    const auto texts = [](const QList<QAction *> &actions) {
        QStringList all;
        for (const QAction *action : actions) {
            all << (action->isSeparator() ? QString("-") : action->text().remove('&'));
        }
        return all.join('|');
    };
    const auto entries = [&](const char *menu) {
        return texts(window->findChild<QMenu *>(menu)->actions());
    };
    EXPECT_EQ(texts(window->menus->actions()), "File|Edit|Options|Info|Doc");
    EXPECT_EQ(entries("file"), "Check SFI/SMI|-|Clear|Secure update (SFU)|-|Exit");
    EXPECT_EQ(entries("edit"), "Undo|Redo|-|Copy|Cut|Paste");
    EXPECT_EQ(entries("options"), "Log|Settings");
    EXPECT_EQ(entries("help"), "About");
    EXPECT_EQ(entries("doc"), "UM4100 Sealed Package Builder User Manual|"
                              "AN4100 Secure programming using VDR32FlashBench");
    EXPECT_EQ(texts(window->toolBar->actions()), "check SFI/SMI|-|clear|-|settings|-|logs|-|close");
    EXPECT_FALSE(window->toolBar->isFloatable() || window->toolBar->isMovable());
    for (const QAction *action : window->findChildren<QAction *>()) {
        EXPECT_TRUE(action->shortcut().isEmpty()) << action->text().toStdString();
    }
}

TEST(MainWindow, EventsBeforeTheFormAreHarmless)
{
    const WindowUnderTest window;
    CentralWidget *const form = std::exchange(window->centralWidget, nullptr);
    QResizeEvent resize(QSize(1500, 900), QSize(1420, 800));
    QCoreApplication::sendEvent(&*window, &resize);
    QCloseEvent close;
    QCoreApplication::sendEvent(&*window, &close);
    EXPECT_TRUE(close.isAccepted());
    EXPECT_EQ(window->closedStatus(), 0);
    window->centralWidget = form;
}

TEST(MainWindow, TemplateAreaFollowsItsPage)
{
    const WindowUnderTest window({"-tab", "h5", "0"});
    window->resize(1600, 1000);
    QCoreApplication::processEvents();
    window->resize(1700, 1000);
    EXPECT_EQ(window.form().obkeyScrollArea->minimumSize(), window.form().obkeyScrollArea->size());
    EXPECT_GT(window.form().obkeyScrollArea->width(), 1000);
}

TEST(MainWindow, EditActionsActOnTheWidgetWithTheFocus)
{
    const WindowUnderTest window;
    window->Paste();  // whatever has the focus, or nothing
    auto *edit = new QLineEdit(&*window);
    edit->show();
    QApplication::setActiveWindow(&*window);
    edit->setFocus();
    ASSERT_EQ(QApplication::focusWidget(), edit);
    const auto run = [&window](void (MainWindow::*slot)()) {
        (*window.operator->().*slot)();
        QCoreApplication::processEvents();
    };
    QApplication::clipboard()->setText("abc");
    run(&MainWindow::Paste);
    EXPECT_EQ(edit->text(), "abc");
    run(&MainWindow::Undo);
    EXPECT_EQ(edit->text(), "");
    run(&MainWindow::Redo);
    EXPECT_EQ(edit->text(), "abc");
    edit->setSelection(0, 2);
    run(&MainWindow::Cut);
    EXPECT_EQ(edit->text(), "c");
    edit->selectAll();
    run(&MainWindow::Copy);
    EXPECT_EQ(QApplication::clipboard()->text(), "c");
}

/// Presses a key until the focus is back where it was, at most 60 times.
/// @return the object names on the way; of a tab bar, its tab widget's
QStringList focusRound(int key)
{
    QStringList names;
    const QWidget *const start = QApplication::focusWidget();
    do {
        QTest::keyClick(QApplication::focusWidget(), static_cast<Qt::Key>(key));
        const QWidget *at = QApplication::focusWidget();
        const auto name =
            (qobject_cast<const QTabBar *>(at) ? at->parentWidget() : at)->objectName();
        // Tab goes through the links of a label one by one.
        if (names.isEmpty() || names.last() != name) {
            names << name;
        }
    } while (QApplication::focusWidget() != start && names.size() < 60);
    return names;
}

TEST(MainWindow, TabGoesFromTopToBottomAndBack)
{
    const WindowUnderTest window;
    ASSERT_TRUE(QTest::qWaitForWindowActive(&*window));
    window.form().hamburgerButton->setFocus();
    const QStringList forward = focusRound(Qt::Key_Tab);
    const QStringList panel{"sfiIcon",  "sspIcon",        "wbIcon",       "h5Icon",
                            "helpIcon", "workbench_tabs", "sfi_mcu_combo"};
    EXPECT_EQ(forward.mid(0, 7), panel);
    EXPECT_EQ(forward.mid(forward.indexOf("sfi_output_folder")),
              (QStringList{"sfi_output_folder", "sfi_missing_label", "sfi_info_tabs",
                           "sfi_firmwareInfo_table", "sfi_firmwareInfo_segments", "hamburgerIcon"}))
        << forward.join(' ').toStdString();
    QStringList backward = focusRound(Qt::Key_Backtab);
    backward.prepend(backward.takeLast());
    std::reverse(backward.begin(), backward.end());
    EXPECT_EQ(backward, forward) << backward.join(' ').toStdString();
    window.form().h5Button->click();
    window.form().sfiButton->click();
    window.form().hamburgerButton->setFocus();
    EXPECT_EQ(focusRound(Qt::Key_Tab), forward);
}

TEST(MainWindow, CopyByTheKeyboardFindsTheSelection)
{
    const WindowUnderTest window;
    auto *edit = window->findChild<QLineEdit *>("sfi_key_edit");
    ASSERT_TRUE(QTest::qWaitForWindowActive(&*window));
    edit->setFocus();
    ASSERT_EQ(QApplication::focusWidget(), edit);
    edit->setText("0x08000000");
    edit->setSelection(2, 3);
    QApplication::clipboard()->setText("before");
    QTest::keyClick(edit, Qt::Key_E, Qt::AltModifier);
    ASSERT_TRUE(QTest::qWaitFor([] { return QApplication::activePopupWidget() != nullptr; }));
    QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_C);
    QCoreApplication::processEvents();
    EXPECT_EQ(QApplication::clipboard()->text(), "080");
    EXPECT_EQ(edit->selectedText(), "080");
}

TEST(MainWindow, NothingOffersToHideTheToolBar)
{
    const WindowUnderTest window;
    for (QWidget *widget :
         {static_cast<QWidget *>(window->menus), static_cast<QWidget *>(window->toolBar)}) {
        QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(3, 3));
        bool hasMenu = false;
        QTimer::singleShot(0, [&hasMenu] {
            if (QWidget *popup = QApplication::activePopupWidget()) {
                hasMenu = true;
                popup->close();
            }
        });
        QApplication::sendEvent(widget, &event);
        QCoreApplication::processEvents();
        EXPECT_FALSE(hasMenu) << widget->objectName().toStdString();
    }
}

/// Asks the window to check files of a folder.
class CheckImage : public ::testing::Test
{
protected:
    ScratchFolder folder;
    WindowUnderTest window;
};

TEST_F(CheckImage, EndingsAreComparedWithCase)
{
    const QString path = folder.file("A.SFI", "x");
    DialogAnswers boxes({path, QMessageBox::Ok});
    window.form().lastFolder = folder.path("");
    window->Check();
    ASSERT_EQ(boxes.seen().size(), 2u);
    EXPECT_EQ(boxes.seen()[0].title, "Open file");
    EXPECT_EQ(boxes.seen()[0].folder, folder.path(""));
    EXPECT_EQ(boxes.seen()[0].nameFilters[0], "Secure firmwares (*.sfi *.smi)");
    EXPECT_EQ(boxes.texts()[1], "Error|It is neither an SFI nor an SMI file");
    EXPECT_EQ(window.form().lastFolder, path);
}

TEST_F(CheckImage, RefusedFileGetsTheReadersBoxAlone)
{
    DialogAnswers boxes({folder.file("a.sfi", "nothing of that kind, and long enough for a head"),
                         QMessageBox::Ok});
    window->Check();
    ASSERT_EQ(boxes.seen().size(), 2u);
    EXPECT_TRUE(boxes.seen()[1].text.startsWith("Error: ")) << boxes.seen()[1].text.toStdString();
}

TEST_F(CheckImage, ValidImageFillsThePaneAndClearEmptiesIt)
{
    const auto bytes = sfiBytes({{'F', 0x08000000, 1024}, {'C', 0, 36}}).done();
    const QString path = folder.file("a.sfi", bytes);
    const auto cell = [this](const char *table, int row, int column) {
        const QTableWidgetItem *item = window->findChild<QTableWidget *>(table)->item(row, column);
        return item == nullptr ? QString() : item->text();
    };
    {
        DialogAnswers boxes({path, QMessageBox::Ok});
        window.form().displayWB_Tabs();
        window->Check();
        EXPECT_EQ(boxes.texts()[1], "Success|Valid SFI file");
    }
    EXPECT_EQ(cell("sfi_imageInfo_table", 0, 0), "a.sfi");
    EXPECT_EQ(cell("sfi_imageInfo_table", 0, 2), "01");
    EXPECT_EQ(cell("sfi_imageInfo_segments", 0, 1), "Firmware");
    EXPECT_EQ(cell("sfi_imageInfo_segments", 1, 1), "Configuration");
    {
        DialogAnswers boxes({folder.file("b.smi", "SMIMAGIC and more"), QMessageBox::Ok});
        window->Check();
        EXPECT_EQ(boxes.texts()[1], "Information|Valid SMI file");
    }
    EXPECT_EQ(cell("sfi_imageInfo_table", 0, 0), "") << "an earlier image is still shown";

    DialogAnswers boxes({path, QMessageBox::Ok});
    window->Check();
    auto *key = window->findChild<QLineEdit *>("sfi_key_edit");
    key->setText("key.bin");
    window->findChild<QComboBox *>("sfi_mcu_combo")->setCurrentIndex(3);
    window->Clear();
    EXPECT_EQ(cell("sfi_imageInfo_table", 0, 0), "");
    EXPECT_EQ(window->findChild<QTableWidget *>("sfi_imageInfo_segments")->rowCount(), 0);
    EXPECT_EQ(key->text(), "");
    EXPECT_EQ(window->findChild<QComboBox *>("sfi_mcu_combo")->currentIndex(), 3);
    EXPECT_FALSE(window->findChild<QPushButton *>("sfi_generate_ok")->isEnabled());
}

TEST_F(CheckImage, OtherPackagesAreTold)
{
    std::string ssp("SSPIMAGE\1\0\2\0\x98\0\0\0", 16);
    ssp.resize(232);
    for (const auto &[path, told] :
         {std::pair(folder.file("a.ssp", ssp), "Kind: SSP\nFormat version: 1\nOEM key kind: 2\n"),
          std::pair(folder.file("a.sfuh", "SFUH"), "It is no known package: the body of this"),
          std::pair(folder.file("a.txt", "text"), "It is no known package: no SFI, ")}) {
        QString more;
        const DialogAnswer read([&more](QDialog &box) {
            more = static_cast<QMessageBox &>(box).informativeText();
            box.accept();
        });
        const DialogAnswers boxes({path, read});
        window->Check();
        EXPECT_EQ(boxes.texts().last(), "Error|It is neither an SFI nor an SMI file");
        EXPECT_TRUE(more.startsWith(told)) << more.toStdString();
    }
}

TEST_F(CheckImage, ModuleImagesOfBothKindsGoToTheSmiTab)
{
    // Head of 28 bytes, 4 bytes of image, one block with one value.
    std::string smu(48, '\0');
    smu.replace(8, 1, "\x1C").replace(12, 1, "\4").replace(32, 2, "\x07\x69");
    smu.replace(34, 1, "\x0A").replace(36, 1, "\x50").replace(38, 1, "\2");
    DialogAnswers boxes({folder.file("a.smu", smu), QMessageBox::Ok});
    window->Check();
    EXPECT_EQ(boxes.texts()[1], "Information|Valid SMU file");
    const auto *values = window->findChild<QTableWidget *>("smi_imageInfo_segments");
    ASSERT_EQ(values->rowCount(), 1);
    EXPECT_EQ(values->item(0, 1)->text() + values->item(0, 3)->text(), "SEC_CNT2");
}

TEST(UpdateWindow, IsOneAndGoesWithTheMainWindow)
{
    const WindowUnderTest window;
    window->updateAction->trigger();
    window->updateAction->trigger();
    const auto found = window->findChildren<QWidget *>("update_window");
    ASSERT_EQ(found.size(), 1);
    EXPECT_TRUE(found[0]->isWindow() && found[0]->isVisible());
    EXPECT_FALSE(found[0]->isModal());
    DialogAnswers noBoxes;
    QTest::keyClick(found[0]->findChild<QLineEdit *>("sfu_key_edit"), Qt::Key_Return);
    window->close();
    EXPECT_FALSE(found[0]->isVisible());
}

TEST_F(CheckImage, CancelDoesNothing)
{
    window.form().lastFolder = folder.path("");
    DialogAnswers boxes({""});
    window->Check();
    EXPECT_EQ(window.form().lastFolder, folder.path(""));
}

TEST(Documents, FailureIsReportedInABox)
{
    const WindowUnderTest window;
    DialogAnswers boxes({QMessageBox::Ok, QMessageBox::Ok});  // no browser on this platform
    window->OpenDoc();
    window->OpenRef();
    EXPECT_EQ(boxes.texts(),
              (QStringList{"Error|User Manual not found", "Error|Application note not found"}));
}

/// Takes the place of the desktop's browser and viewer.
class Browser : public QObject
{
    Q_OBJECT
public:
    Browser()
    {
        for (const char *scheme : {"https", "file"}) {
            QDesktopServices::setUrlHandler(scheme, this, "open");
        }
    }
    ~Browser() override
    {
        for (const char *scheme : {"https", "file"}) {
            QDesktopServices::unsetUrlHandler(scheme);
        }
    }
    QStringList opened;

public slots:
    void open(const QUrl &url) { opened << url.scheme(); }
};

TEST(Documents, MissingLocalManualIsNotTried)
{
    const WindowUnderTest window;
    DialogAnswers boxes;
    const Browser browser;
    window->OpenDoc();
    window->OpenRef();
    EXPECT_EQ(browser.opened, (QStringList{"https", "https"}));
}

}  // namespace

#include "MainWindowTest.moc"
