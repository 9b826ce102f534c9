#include "workbench/tabs/obk/ObkTab.h"
#include "support/DialogAnswers.h"
#include "support/ScratchFolder.h"
#include "workbench/frame/CentralWidget.h"
#include "workbench/templates/TemplatePage.h"
#include "workbench/widgets/ToolProgress.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QDir>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPushButton>
#include <QTableWidget>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <QUrl>

#include <gtest/gtest.h>

namespace
{

class ObkTabTest : public ::testing::Test
{
protected:
    ObkTabTest()
    {
        // The remembered folder is in the user's home.
        qputenv("HOME", folder.path("home").toUtf8());
        form.ensureObkey();
        form.InitOBkeyTab();
        form.show();
        form.addTab(form.obkeyPage, "OBkey");
        form.tabWidget->setCurrentWidget(form.obkeyPage);
    }

    ~ObkTabTest() override { qputenv("HOME", home); }

    template <typename Widget>
    Widget *find(const QString &name)
    {
        auto *found = form.findChild<Widget *>(name);
        EXPECT_NE(found, nullptr) << name.toStdString();
        return found;
    }
    void click(const QString &name) { QTest::mouseClick(find<QPushButton>(name), Qt::LeftButton); }
    QLineEdit *edit(const QString &name) { return find<QLineEdit>(name); }
    QString cell(int row) { return find<QTableWidget>("obk_info_table")->item(row, 0)->text(); }
    QTableWidget *memory() { return find<QTableWidget>("obk_slot_table"); }

    /// A copy of a template that ships.
    QString shipped(const QString &name)
    {
        QFile file(QCoreApplication::applicationDirPath() + "/Template/OBkey/" + name + ".xml");
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return folder.file(name + ".xml", file.readAll().toStdString());
    }
    void open(const QString &path, const QStringList &boxes = {})
    {
        DialogAnswers answers({path});
        for (int i = 0; i < boxes.size(); ++i) {
            answers.expect(QMessageBox::Ok);
        }
        click("obk_xml_open");
        EXPECT_EQ(answers.texts().mid(1), boxes);
        EXPECT_EQ(answers.seen()[0].nameFilters, QStringList("XML files (*.xml)"));
    }

    const QByteArray home = qgetenv("HOME");
    ScratchFolder folder;
    CentralWidget form{1};
};

TEST_F(ObkTabTest, SelectorsSwitchFieldsAndTheMemoryTable)
{
    open(shipped("memory-layout"));
    QLineEdit *const dependent = edit("obk_nonSecureImageOffset_edit");
    EXPECT_TRUE(dependent->isEnabled());
    EXPECT_EQ(memory()->rowCount(), 4);
    EXPECT_EQ(memory()->item(0, 2)->text(), "0x8020000");
    find<QComboBox>("Images")->setCurrentIndex(0);
    EXPECT_FALSE(dependent->isEnabled());
    EXPECT_EQ(dependent->echoMode(), QLineEdit::NoEcho);
    EXPECT_TRUE(dependent->toolTip().contains("Images") && dependent->toolTip().contains("0x02"));
    EXPECT_EQ(memory()->rowCount(), 2);
    find<QCheckBox>("Data slot")->setChecked(true);
    EXPECT_EQ(memory()->rowCount(), 3);
    EXPECT_EQ(find<QLabel>("obk_warning_label")->text(), "Encryption option is disabled!");
    EXPECT_EQ(cell(0), "disable");
    EXPECT_EQ(cell(3), "");
}

TEST_F(ObkTabTest, TemplatesAndFilesOfRowsCanBeDropped)
{
    const auto drop = [](QWidget *on, const QString &path) {
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(path)});
        QDragEnterEvent enter(QPoint(2, 2), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(on, &enter);
        QDropEvent dropped(QPointF(2, 2), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(on, &dropped);
        QApplication::processEvents();
        return enter.isAccepted();
    };
    auto *const page = form.obkeyPage->findChild<workbench::TemplatePage *>();
    EXPECT_FALSE(drop(page, folder.file("a.bin", "x")));
    EXPECT_TRUE(drop(page, shipped("all-fields")));
    QLineEdit *const key = edit("obk_signingKey_edit");
    ASSERT_NE(key, nullptr);
    EXPECT_TRUE(key->toolTip().contains('\n')) << "it says why nothing can be typed";
    EXPECT_TRUE(drop(key->parentWidget(), folder.file("k.pem", "x")));
    EXPECT_EQ(key->text(), folder.path("k.pem"));
    EXPECT_TRUE(find<QLabel>("obk_missing_label")->isHidden());
    edit("obk_output_edit")->clear();
    EXPECT_TRUE(find<QLabel>("obk_missing_label")->text().contains("output file"));
}

TEST_F(ObkTabTest, GeneratesWhatTheFormShowsAndKeepsIt)
{
    const QString path = shipped("memory-layout");
    open(path);
    edit("obk_secureImageSize_edit")->setText("0x20000");
    DialogAnswers answers({QMessageBox::Ok});
    click("obk_generate_ok");
    EXPECT_EQ(answers.texts(), QStringList("Success|OBKey File Generation \n"));
    const std::string bytes = ScratchFolder::contents(folder.path("Memory_Layout.obk"));
    EXPECT_EQ(bytes.size(), 12u + 32u + 48u);
    EXPECT_EQ(cell(1), "80");
    EXPECT_EQ(cell(2), "12");
    EXPECT_EQ(memory()->item(0, 3)->text(), "0x20000");
    EXPECT_NE(ScratchFolder::contents(path).find("<Value>0x20000</Value>"), std::string::npos);
    edit("obk_secureImageSize_edit")->setText("0x1");
    click("OBkeyRefresh");
    EXPECT_EQ(edit("obk_secureImageSize_edit")->text(), "0x20000");
}

TEST_F(ObkTabTest, AFaultIsSaidBesideTheFieldAndRefusedLater)
{
    open(shipped("headerless-settings"));
    EXPECT_TRUE(edit("obk_output_edit")->text().endsWith("Settings.bin"));
    EXPECT_FALSE(find<QLabel>("obk_warning_label")->isVisible());
    QLabel *const note = find<QLabel>("obk_minimumVersion_note");
    EXPECT_EQ(note->text(), "");
    edit("obk_minimumVersion_edit")->setText("65536");
    const QString fault =
        "\"65536\" value for \"Minimum version\" is incorrect, max width value is "
        ": \"2\" Bytes.";
    EXPECT_TRUE(note->text().endsWith(fault)) << note->text().toStdString();
    DialogAnswers answers({QMessageBox::Ok});
    click("obk_generate_ok");
    EXPECT_EQ(answers.texts(), QStringList("Error|Error:  " + fault));
    EXPECT_FALSE(QFile::exists(folder.path("Settings.bin")));
}

TEST_F(ObkTabTest, WrongSlotsAreSaidBesideAllTheirFields)
{
    open(shipped("key-area-layout"));
    const auto note = [this](const QString &field) {
        return find<QLabel>("obk_" + field + "_note")->text();
    };
    edit("obk_serviceKeysOffset_edit")->setText("0xB00");
    const QString overlap = "Overlap between : \"Boot keys \" and \"Service keys \".";
    EXPECT_TRUE(note("serviceKeysOffset").endsWith(overlap));
    EXPECT_TRUE(note("serviceKeysSize").endsWith(overlap));
    EXPECT_EQ(note("customerDataSize"), "");
    edit("obk_bootKeysSize_edit")->setText("0x300");
    EXPECT_EQ(note("bootKeysSize") + note("serviceKeysOffset") + note("serviceKeysSize"), "");
    edit("obk_bootKeysSize_edit")->setText("");
    EXPECT_TRUE(note("bootKeysOffset").endsWith("size cannot be equal to 0."));
    edit("obk_bootKeysSize_edit")->setText("0x3g");
    EXPECT_EQ(note("bootKeysOffset"), "") << "only the wrong number is named";
    open(shipped("memory-layout"));
    edit("obk_secureImageOffset_edit")->setText("0x20001");
    EXPECT_TRUE(note("secureImageSize").endsWith("does not respect the alignment constraint."));
    edit("obk_secureImageOffset_edit")->setText("0");
    EXPECT_EQ(note("secureImageSize"), "");
}

TEST_F(ObkTabTest, AFailedOpeningLeavesTheOldTemplate)
{
    {
        DialogAnswers answers({QMessageBox::Ok});
        click("OBkeyRefresh");  // nothing is loaded
        click("obk_generate_ok");
        EXPECT_EQ(answers.texts(), QStringList("Error|Error: Upload a valid input XML File"));
    }
    open(shipped("headerless-settings"));
    open({});
    open(folder.file("bad.xml", std::string_view("<a/>")),
         {"Error|Error: XML document is invalid! xml version is wrong or missing"});
    EXPECT_TRUE(edit("obk_xml_edit")->text().endsWith("headerless-settings.xml"));
    DialogAnswers answers({QMessageBox::Ok});
    click("obk_generate_ok");
    EXPECT_TRUE(QFile::exists(folder.path("Settings.bin")));
}

TEST_F(ObkTabTest, PermissionsAreSetByBit)
{
    open(shipped("debug-authentication-password"));
    QLineEdit *const word = edit("obk_permissions_edit");
    const auto bit = [this](int n) {
        return find<QToolButton>(QString("obk_permissions_bit%1_check").arg(n));
    };
    EXPECT_TRUE(bit(14)->isChecked() && bit(0)->isChecked());
    EXPECT_FALSE(bit(8)->isEnabled() || bit(11)->isEnabled());
    QTest::mouseClick(bit(15), Qt::LeftButton);
    EXPECT_EQ(word->text(), "0x0000D077");
    EXPECT_NE(bit(15)->text(), "15") << "a mark beside the colour";
    word->clear();
    QTest::keyClicks(word, "0xF01");
    EXPECT_TRUE(bit(0)->isChecked());
    EXPECT_FALSE(bit(9)->isChecked());
    EXPECT_FALSE(find<QLabel>("obk_permissions_note")->text().isEmpty());
    DialogAnswers answers({QMessageBox::Ok, QMessageBox::Ok});
    click("obk_generate_ok");
    EXPECT_TRUE(answers.texts()[0].startsWith("Information|Password file Generated successfully"));
    const std::string bytes = ScratchFolder::contents(folder.path("DA_Password.obk"));
    EXPECT_EQ(bytes.substr(12 + 32, 8), std::string("\x01\0\0\0\0\0\0\0", 8));
}

TEST_F(ObkTabTest, KeysAreMadeAndAnOldOneComesBack)
{
    open(shipped("debug-authentication-certificate"));
    const auto regenerate = [this](const QString &box) {
        DialogAnswers answers({QMessageBox::Ok});
        click("Root key");
        EXPECT_EQ(answers.texts(), QStringList(box));
    };
    regenerate("Information|SUCCESS Key Generation \n");
    const std::string first = ScratchFolder::contents(folder.path("keys/root_key.pem"));
    EXPECT_TRUE(QFile::exists(folder.path("keys/root_key_pub.pem")));
    QComboBox *const type = find<QComboBox>("obk_rootKey_combo");
    type->setItemText(0, "unknown");
    regenerate("Error|Error: Fail Key Generation Check Input Param\n");
    regenerate("Error|Error: Fail Key Generation Check Input Param\n");
    EXPECT_FALSE(QFile::exists(folder.path("keys/root_key.pem")));
    EXPECT_TRUE(find<QLabel>("obk_rootKey_note")->text().contains(".bak"));
    click("obk_rootKey_restore");
    EXPECT_EQ(ScratchFolder::contents(folder.path("keys/root_key.pem")), first);
    DialogAnswers answers({QMessageBox::Ok});
    click("obk_generate_ok");
    EXPECT_EQ(answers.texts(), QStringList("Success|OBKey File Generation \n"));
}

TEST_F(ObkTabTest, TheCommandLinesTemplateIsOpenedWithoutADialog)
{
    form.templatePath = shipped("headerless-settings").toStdString();
    DialogAnswers answers({QMessageBox::Ok});
    form.OpenOBkeyKey();
    EXPECT_FALSE(edit("obk_xml_edit")->isEnabled());
    form.generateOBkey();
    EXPECT_EQ(answers.texts(), QStringList("Information|SUCCESS OBKey File Generation \n"));
}

TEST_F(ObkTabTest, ANewKeyIsSeenByEveryRowThatNamesIt)
{
    open(shipped("key-provisioning"));
    const QString name = "obk_authenticationKey%1Image_note";
    QLabel *const other = find<QLabel>(name.arg("NonSecure"));
    EXPECT_FALSE(other->text().isEmpty());
    DialogAnswers answers({QMessageBox::Ok});
    click("Authentication key, secure image");
    EXPECT_TRUE(other->text().isEmpty()) << "its file is the public half";
    EXPECT_TRUE(find<QLabel>(name.arg("Secure"))->text().isEmpty());
}

TEST_F(ObkTabTest, ClosingTheBoxOfAToolEndsTheTool)
{
    workbench::ToolProgress progress(&form);
    QTimer::singleShot(100, &form, [this] {
        for (QWidget *const window : QApplication::topLevelWidgets()) {
            if (window->objectName() == "progress_box") {
                window->close();
            }
        }
    });
    auto watch = progress.watch();
    watch.limitMs = 20000;
    EXPECT_EQ(process::runTool("sleep", {"30"}, watch).ending, process::Ending::Cancelled);
}

TEST_F(ObkTabTest, KeysWithoutNamesAreMadeOneByOne)
{
    std::string files;
    for (const char *path : {"one.pem", "two.pem"}) {
        files += std::string("<File><Align>1</Align><KeyType>ed25519</KeyType><Default>") + path +
                 "</Default></File>";
    }
    open(folder.file("keys.xml", "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Root><Obdata><Info>"
                                 "<GlobalAlign>1</GlobalAlign></Info>" +
                                     files +
                                     "<Output><Default>o.bin</Default></Output></Obdata></Root>"));
    for (auto *button : form.obkeyPage->findChildren<QPushButton *>()) {
        if (button->accessibleName() == " Regenerate") {
            DialogAnswers answers({QMessageBox::Ok});
            QTest::mouseClick(button, Qt::LeftButton);
        }
    }
    EXPECT_TRUE(QFile::exists(folder.path("one.pem")) && QFile::exists(folder.path("two.pem")));
}

TEST_F(ObkTabTest, TheTabKeyGoesFromTheTemplateOverItsRowsToTheOutput)
{
    for (const char *time : {"first", "again, with new rows"}) {
        SCOPED_TRACE(time);
        open(shipped("all-fields"));
        QStringList order;
        const QWidget *const first = find<QPushButton>("OBkeyRefresh");
        for (auto *at = first->nextInFocusChain(); at != first; at = at->nextInFocusChain()) {
            if ((at->focusPolicy() & Qt::TabFocus) != 0 && at->isVisible() && at->isEnabled()) {
                order << at->objectName();
            }
        }
        EXPECT_EQ(
            order.mid(0, 15),
            (QStringList{"obk_servicePassword_edit", "Life cycle", "Use a slot",
                         "obk_slotOffset_edit", "obk_slotSize_edit", "obk_regionOffset_edit",
                         "obk_regionSize_edit", "obk_debugToken_edit", "obk_permissionWord_edit",
                         "obk_signingKey_open", "obk_signingKey_combo", "Signing key",
                         "obk_output_edit", "obk_output_folder", "obk_generate_ok"}));
    }
}

TEST_F(ObkTabTest, ThousandsOfFieldsAreBuiltAtOnce)
{
    std::string text =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Root><Obdata><Info><GlobalAlign>"
        "1</GlobalAlign></Info>";
    for (int i = 0; i < 6000; ++i) {
        text += "<Data><Name>A" + std::to_string(i) +
                "</Name><Width>1</Width><Default>1</Default>"
                "</Data>";
    }
    const QString path =
        folder.file("big.xml", text + "<Output><Default>o.bin</Default></Output></Obdata></Root>");
    QElapsedTimer clock;
    clock.start();
    open(path);
    QCoreApplication::processEvents();
    RecordProperty("milliseconds", static_cast<int>(clock.elapsed()));
    EXPECT_LT(clock.elapsed(), 10000) << "far above the usual, for busy machines";
    EXPECT_NE(edit("obk_a5999_edit"), nullptr);
}

}  // namespace
