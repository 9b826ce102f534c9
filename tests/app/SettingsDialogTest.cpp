#include "app/SettingsFixture.h"

#include <QAction>
#include <QCheckBox>
#include <QLabel>
#include <QRadioButton>

namespace
{

class SettingsDialogTest : public SettingsFixture
{
protected:
    template <typename Widget>
    static Widget &in(QDialog &dialog, const char *name)
    {
        return *dialog.findChild<Widget *>(name);
    }
    static void click(QDialog &dialog, const char *name)
    {
        in<QAbstractButton>(dialog, name).click();
    }
    static DialogAnswer answer(std::function<void(QDialog &)> script)
    {
        return DialogAnswer(std::move(script));
    }
};

TEST_F(SettingsDialogTest, ShowsWhatHoldsAndKeepsItWhenClosed)
{
    const WindowUnderTest window;
    window->paddingFF = false;
    window->logFilePath = "/x.log";
    DialogAnswers boxes({answer([](QDialog &dialog) {
        EXPECT_TRUE(in<QRadioButton>(dialog, "settings_pad00_radio").isChecked());
        EXPECT_TRUE(in<QCheckBox>(dialog, "settings_file_check").isChecked());
        EXPECT_FALSE(in<QCheckBox>(dialog, "settings_log_check").isChecked());
        EXPECT_FALSE(in<QLineEdit>(dialog, "settings_log_edit").isEnabled());
        EXPECT_FALSE(in<QPushButton>(dialog, "settings_log_folder").isEnabled());
        EXPECT_EQ(in<QLineEdit>(dialog, "settings_log_edit").text(), "/x.log");
        click(dialog, "settings_padFF_radio");
        click(dialog, "settings_log_check");
        EXPECT_TRUE(in<QLineEdit>(dialog, "settings_log_edit").isEnabled());
        EXPECT_TRUE(in<QPushButton>(dialog, "settings_log_folder").isEnabled());
        click(dialog, "settings_file_check");
        dialog.reject();
    })});
    window->settingsAction->trigger();
    EXPECT_EQ(boxes.seen().front().title, "Settings");
    EXPECT_FALSE(window->paddingFF || window->generateLogFile);
    EXPECT_TRUE(window->generateSettingsFile);
    EXPECT_FALSE(DisplayMng::getInstance().logToFile);
}

TEST_F(SettingsDialogTest, OnlyAnotherPaddingByteEmptiesTheForms)
{
    const WindowUnderTest window;
    fill(window, "sfi_key_edit", "/key.bin");
    const auto press = [&](const char *name) {
        const DialogAnswers boxes({answer([name](QDialog &dialog) {
            click(dialog, name);
            QMetaObject::invokeMethod(&dialog, "SaveSettings");
        })});
        window->settingsTool->trigger();
    };
    press("settings_file_check");
    EXPECT_FALSE(window->generateSettingsFile);
    EXPECT_EQ(widget<QLineEdit>(window, "sfi_key_edit")->text(), "/key.bin");
    press("settings_pad00_radio");
    EXPECT_FALSE(window->paddingFF);
    EXPECT_EQ(window.form().fileManager.paddingByte, 0x00);
    EXPECT_EQ(widget<QLineEdit>(window, "sfi_key_edit")->text(), "");
}

TEST_F(SettingsDialogTest, AnotherPaddingByteSaysWhatItEmptiesBeforeOk)
{
    const WindowUnderTest window;
    const auto look = [&window](bool filled) {
        const DialogAnswers boxes({answer([filled](QDialog &dialog) {
            auto &warning = in<QLabel>(dialog, "settings_pad_label");
            auto &other = in<QRadioButton>(dialog, "settings_pad00_radio");
            EXPECT_EQ(dialog.focusWidget()->objectName(), "settings_padFF_radio");
            EXPECT_FALSE(warning.isVisible());
            other.click();
            EXPECT_EQ(warning.isVisible(), filled);
            EXPECT_EQ(other.accessibleDescription(), filled ? warning.text() : QString());
            click(dialog, "settings_padFF_radio");
            EXPECT_FALSE(warning.isVisible());
            dialog.reject();
        })});
        window->Settings();
    };
    look(false);
    fill(window, "sfix_nonce_edit", "/nonce.bin");
    look(true);
    window->paddingFF = false;
    const DialogAnswers boxes({answer([](QDialog &dialog) {
        EXPECT_EQ(dialog.focusWidget()->objectName(), "settings_pad00_radio");
        click(dialog, "settings_padFF_radio");
        EXPECT_TRUE(in<QLabel>(dialog, "settings_pad_label").isVisible());
        dialog.reject();
    })});
    window->Settings();
}

TEST_F(SettingsDialogTest, TheLogFileFollowsItsBox)
{
    const WindowUnderTest window;
    const QString path = folder.path("VDR32SPB_Trace.log");
    DisplayMng &display = DisplayMng::getInstance();
    DialogAnswers boxes({answer([](QDialog &dialog) {
                             click(dialog, "settings_log_check");
                             click(dialog, "settings_log_folder");
                             QMetaObject::invokeMethod(&dialog, "SaveSettings");
                         }),
                         DialogAnswer(folder.path("")), answer([](QDialog &dialog) {
                             click(dialog, "settings_log_check");
                             QMetaObject::invokeMethod(&dialog, "SaveSettings");
                         })});
    window->Settings();
    EXPECT_TRUE(display.logToFile && window->generateLogFile);
    EXPECT_EQ(QFileInfo(window->logFilePath).canonicalFilePath(),
              QFileInfo(path).canonicalFilePath());
    display.logMessage(7, L"first");
    window->Settings();
    EXPECT_FALSE(display.logToFile || window->generateLogFile);
    display.logMessage(7, L"second");
    std::fflush(display.logFile);
    EXPECT_TRUE(contentsOf(path).endsWith(" first\n")) << contentsOf(path).toStdString();
}

}  // namespace
