#include "workbench/tabs/img/ImgTab.h"
#include "support/DialogAnswers.h"
#include "support/ScratchFolder.h"
#include "workbench/frame/CentralWidget.h"

#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProcess>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace
{

const char *const kTool = "/Utilities/Linux/imgtool";

class ImgTabTest : public ::testing::Test
{
protected:
    ImgTabTest()
    {
        // The log and the remembered folder are in the user's home.
        qputenv("HOME", folder.path("home").toUtf8());
        addTab();
        form.show();
        folder.file("firmware.hex", std::string_view(":020000040801F1\n:0400000001020304F2\n"
                                                     ":00000001FF\n"));
        QDir(folder.path("")).mkdir("keys");
        QProcess::execute(QCoreApplication::applicationDirPath() + kTool,
                          {"keygen", "-k", folder.path("keys/image_p256.pem"), "-t", "ecdsa-p256",
                           "-e", folder.path("keys/p256_pub.pem")});
    }

    ~ImgTabTest() override { qputenv("HOME", home); }

    void addTab()
    {
        form.ensureObkey();
        ++form.obkey->imageGenCount;
        form.appendImageGenPage();
        form.InitMCUbootTab();
        form.addTab(form.currentImageGenPage(), "Image");
        form.tabWidget->setCurrentWidget(form.currentImageGenPage());
    }
    template <typename Widget>
    Widget *find(const QString &name)
    {
        auto *found = form.currentImageGenPage()->findChild<Widget *>(name);
        EXPECT_NE(found, nullptr) << name.toStdString();
        return found;
    }
    void click(const QString &name) { QTest::mouseClick(find<QPushButton>(name), Qt::LeftButton); }
    QString command() { return find<QPlainTextEdit>("img_command_edit")->toPlainText(); }
    QString said() { return find<QPlainTextEdit>("img_tool_edit")->toPlainText(); }

    /// A copy of a template that ships.
    QString shipped(const QString &name)
    {
        QFile file(QCoreApplication::applicationDirPath() + "/Template/Image/" + name + ".xml");
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return folder.file(name + ".xml", file.readAll().toStdString());
    }
    void open(const QString &path)
    {
        DialogAnswers answers({path});
        click("img_xml_open");
        EXPECT_EQ(answers.seen().size(), 1);
        EXPECT_EQ(answers.seen()[0].nameFilters, QStringList("XML files (*.xml)"));
    }
    std::string log() const
    {
        return ScratchFolder::contents(folder.path("home/.VDR32FlashBench/imgtool-command.log"));
    }

    const QByteArray home = qgetenv("HOME");
    ScratchFolder folder;
    CentralWidget form{1};
};

TEST_F(ImgTabTest, TheCommandFollowsTheFormAndCanBeCopied)
{
    open(shipped("image-confirmed"));
    EXPECT_EQ(find<QLabel>("img_title_label")->text(), "Confirmed image for the whole slot");
    EXPECT_TRUE(command().contains(" --align 16 ") && command().contains(" --confirm "));
    EXPECT_FALSE(find<QCheckBox>("Put the header in front")->isEnabled()) << "fixed";
    find<QLineEdit>("img_version_edit")->setText("2.0.0+7");
    find<QComboBox>("Write alignment")->setCurrentIndex(0);
    find<QCheckBox>("Confirm")->setChecked(false);
    find<QLineEdit>("img_output_edit")->setText("a b.bin");
    click("img_signingKey_clear");
    const QString shown = command();
    EXPECT_TRUE(shown.contains(" --version 2.0.0+7 ") && shown.contains(" --align 1 "));
    EXPECT_FALSE(shown.contains("--confirm") || shown.contains("--key"));
    EXPECT_TRUE(shown.endsWith("/a b.bin'"));
    click("img_command_copy");
    EXPECT_EQ(QGuiApplication::clipboard()->text(), shown);
    find<QLineEdit>("img_slotSize_edit")->setText("many");
    EXPECT_TRUE(find<QLabel>("img_slotSize_note")->text().contains("many"));
    EXPECT_TRUE(command().startsWith("No command yet"));
    EXPECT_FALSE(find<QPushButton>("img_command_copy")->isEnabled());
    DialogAnswers answers({QMessageBox::Ok});
    click("img_generate_ok");
    EXPECT_TRUE(answers.texts().value(0).startsWith("Error|Error: \"many\" is no value for"));
    EXPECT_EQ(log(), "(none)") << "nothing ran";
}

TEST_F(ImgTabTest, GeneratesKeepsTheValuesAndLogsTheCommand)
{
    const QString path = shipped("image-sign-p256");
    open(path);
    find<QLineEdit>("img_version_edit")->setText("9.8.7");
    {
        DialogAnswers answers({QMessageBox::Ok});
        click("img_generate_ok");
        EXPECT_EQ(answers.texts(),
                  QStringList("Success|The image was made : " + folder.path("firmware_p256.bin")));
    }
    EXPECT_TRUE(said().contains("signed (ECDSA-P256)") && said().contains("[status 0]"));
    const std::string image = ScratchFolder::contents(folder.path("firmware_p256.bin"));
    EXPECT_EQ(image.substr(0, 4), "\x3D\xB8\xF3\x96");
    EXPECT_NE(ScratchFolder::contents(path).find("<Value>9.8.7</Value>"), std::string::npos);
    EXPECT_EQ(form.obkey->imgTools[0].saveStatus, 1);
    const QString logPath = folder.path("home/.VDR32FlashBench/imgtool-command.log");
    EXPECT_NE(log().find("  status 0  " + command().toStdString() + "\n"), std::string::npos);
    struct stat entry = {};
    ::stat(QFile::encodeName(logPath).constData(), &entry);
    EXPECT_EQ(entry.st_mode & 0777, 0600u);
    {
        DialogAnswers answers({QMessageBox::No});
        click("img_generate_ok");
        EXPECT_EQ(answers.seen().at(0).title, "File exists");
    }
    find<QLineEdit>("img_version_edit")->setText("9.8.7.6");
    DialogAnswers answers({QMessageBox::Yes, QMessageBox::Ok});
    click("img_generate_ok");
    EXPECT_TRUE(answers.texts().value(1).startsWith(
        "Error|Error: Image Generation Failed (status 1)\nimgtool: '9.8.7.6' is no version"));
    EXPECT_EQ(ScratchFolder::contents(folder.path("firmware_p256.bin")), image);
    EXPECT_EQ(ScratchFolder::contents(path).find("9.8.7.6"), std::string::npos)
        << "values that failed aren't kept";
    EXPECT_EQ(QString::fromStdString(log()).count('\n'), 2);
}

TEST_F(ImgTabTest, APassPhraseReachesTheToolAndStandsNowhere)
{
    folder.file("phrase", std::string_view("öpen 'sesame"));
    QProcess::execute(QCoreApplication::applicationDirPath() + kTool,
                      {"keygen", "-k", folder.path("keys/locked.pem"), "-t", "ed25519", "-e",
                       folder.path("keys/locked_pub.pem"), "--pass-file", folder.path("phrase")});
    const QString path = shipped("image-sign-p256");
    std::string text = ScratchFolder::contents(path);
    for (auto at = text.find("image_p256"); at != std::string::npos; at = text.find("image_p256")) {
        text.replace(at, 10, "locked");
    }
    open(folder.file("locked.xml", text));
    find<QLineEdit>("img_passPhrase_edit")->setText("öpen 'sesame");
    DialogAnswers answers({QMessageBox::Ok});
    click("img_generate_ok");
    EXPECT_TRUE(said().contains("signed (Ed25519)")) << said().toStdString();
    EXPECT_TRUE(command().contains(" --pass-fd 0 "));
    for (const std::string &place : {said().toStdString(), command().toStdString(), log(),
                                     ScratchFolder::contents(folder.path("locked.xml"))}) {
        EXPECT_EQ(place.find("sesame"), std::string::npos) << place;
    }
}

TEST_F(ImgTabTest, AToolThatWritesNothingHasMadeNoImage)
{
    const QString path = shipped("image-sign-p256");
    std::string text = ScratchFolder::contents(path);
    text.replace(text.find(">create<"), 8, ">create --help<");
    open(folder.file("silent.xml", text));
    DialogAnswers answers({QMessageBox::Ok, QMessageBox::Yes, QMessageBox::Ok});
    click("img_generate_ok");
    folder.file("firmware_p256.bin", std::string_view("an older one"));
    click("img_generate_ok");
    for (const int at : {0, 2}) {
        EXPECT_TRUE(answers.texts().value(at).contains("wrote no file")) << at;
    }
}

TEST_F(ImgTabTest, SavesItsOwnConfigurationUnderNg)
{
    form.launchMode = CentralWidget::NoGeneration;
    const QString first = shipped("image-sign-p256");
    const QString second = shipped("image-sign-ed25519");
    for (const QString &path : {first, second}) {
        addTab();
        form.obkey->imgTools.back().saveStatus = 2;
        form.templatePath = path.toStdString();
        form.OpenMCUboot();
        EXPECT_FALSE(find<QLineEdit>("img_xml_edit")->isEnabled());
        EXPECT_EQ(find<QPushButton>("img_generate_ok")->text(), "Save Configuration");
    }
    find<QLineEdit>("img_version_edit")->setText("4.4.4");
    {
        DialogAnswers answers({QMessageBox::Ok});
        click("img_generate_ok");
        EXPECT_EQ(answers.texts(), QStringList("Success|Configuration saved \n"));
    }
    EXPECT_NE(ScratchFolder::contents(second).find("<Value>4.4.4</Value>"), std::string::npos);
    EXPECT_EQ(ScratchFolder::contents(first).find("4.4.4"), std::string::npos);
    EXPECT_EQ(form.obkey->imgTools[1].saveStatus, 2);
    EXPECT_EQ(form.obkey->imgTools[2].saveStatus, 1);
    EXPECT_FALSE(QFile::exists(folder.path("firmware_ed25519.bin"))) << "no tool ran";
    QFile::remove(second);
    DialogAnswers answers({QMessageBox::Ok});
    click("img_generate_ok");
    EXPECT_EQ(form.obkey->imgTools[2].saveStatus, 0);
}

TEST_F(ImgTabTest, AFailedOpeningKeepsTheForm)
{
    {
        DialogAnswers answers({QMessageBox::Ok});
        click("img_generate_ok");
        EXPECT_EQ(answers.texts(), QStringList("Error|Error: Upload a valid input XML File"));
    }
    open(shipped("image-sign-p256"));
    const QString before = command();
    DialogAnswers answers({folder.file("bad.xml", std::string_view("<Root/>"))});
    answers.expect(QMessageBox::Ok);
    click("img_xml_open");
    EXPECT_EQ(command(), before);
    EXPECT_TRUE(find<QLineEdit>("img_xml_edit")->text().endsWith("image-sign-p256.xml"));
}

TEST_F(ImgTabTest, EveryFieldIsReachedWithTheTabKeyInTheOrderOfTheRows)
{
    open(shipped("image-sign-p256"));
    QApplication::setActiveWindow(&form);
    QStringList reached;
    find<QPushButton>("img_xml_open")->setFocus();
    for (int i = 0; i < 30 && !reached.contains("img_generate_ok"); ++i) {
        ASSERT_NE(QApplication::focusWidget(), nullptr);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        reached << QApplication::focusWidget()->objectName();
    }
    EXPECT_EQ(reached.mid(0, 6),
              (QStringList{"img_xml_refresh", "img_firmware_open", "img_firmware_clear",
                           "img_signingKey_open", "img_signingKey_clear", "img_passPhrase_edit"}));
    EXPECT_TRUE(reached.contains("img_output_edit"));
}

}  // namespace
