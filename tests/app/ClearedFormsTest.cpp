#include "app/SettingsFixture.h"
#include "workbench/widgets/PermissionTable.h"

#include <QAction>
#include <QComboBox>
#include <QTableWidget>

namespace
{

/// A window whose forms hold something of every kind.
class ClearedFormsTest : public SettingsFixture
{
protected:
    ClearedFormsTest()
    {
        add("sfi_firmware_add", folder.file("a.bin", "aaaa"), {place("0x8000000")});
        add("sfi_firmware_add", folder.file("b.bin", "bbbb"), {place("0x8000100")});
        add("sfi_obk_add", folder.file("c.obk", std::string(64, 'o')), {});
        add("sfix_external_add", folder.file("d.bin", "dddd"), {place("0x90000000", "0x11")});
        fill(window, "sfi_key_edit", "/key.bin");
        fill(window, "sfi_nonce_edit", "/nonce.bin");
        fill(window, "sfi_optionBytes_edit", "/ob.csv");
        fill(window, "sfi_ssfi_edit", "/x.ssfi");
        fill(window, "sfi_output_edit", "/out.sfi");
        widget<QComboBox>(window, "sfi_mcu_combo")->setCurrentIndex(2);
        fill(window, "sfi_ram_edit", "0x100");
        widget<QSpinBox>(window, "sfi_version_spin")->setValue(7);
        // What was read can be gone from disk meanwhile.
        for (const char *name : {"a.bin", "b.bin", "c.obk", "d.bin"}) {
            QFile::remove(folder.path(name));
        }
    }
    void add(const char *button, const QString &path, QList<DialogAnswer> answers)
    {
        DialogAnswers dialogs({path});
        for (DialogAnswer &answer : answers) {
            dialogs.expect(std::move(answer));
        }
        widget<QPushButton>(window, button)->click();
    }
    /// All that the forms hold, in one text.
    QString contents()
    {
        QStringList all;
        for (const char *list : {"sfi_firmware_list", "sfi_obk_list", "sfix_external_list"}) {
            all << QString::number(rows(window, list));
        }
        for (const QLineEdit *edit : window->findChildren<QLineEdit *>()) {
            if (!edit->text().isEmpty() && !edit->objectName().startsWith("qt_")) {
                all << edit->objectName() + '=' + edit->text();
            }
        }
        all << QString::number(widget<QSpinBox>(window, "sfi_version_spin")->value());
        auto *sfi = tab(window.form(), "sfi");
        auto *sfix = tab(window.form(), "sfix");
        all << places(sfi, "firmware") << places(sfix, "external") << infos(*sfix);
        return all.join('|');
    }

    WindowUnderTest window;
};

TEST_F(ClearedFormsTest, UndoBringsEverythingBackOnceAndAsksNothing)
{
    const DialogAnswers none;
    // A choice and a mask that clearing takes back, too.
    auto *family = widget<QComboBox>(window, "da_family_combo");
    family->addItem("Chips");
    family->setCurrentIndex(1);
    auto *bits = window->findChild<workbench::PermissionTable *>();
    bits->setMask(5);
    const QString before = contents();
    ASSERT_TRUE(before.contains("90000000")) << before.toStdString();
    window->clearAction->trigger();
    EXPECT_FALSE(contents().contains("key.bin"));
    EXPECT_EQ(rows(window, "sfi_firmware_list"), 0);
    EXPECT_EQ(bits->mask() + static_cast<unsigned>(family->currentIndex()), 0U);
    widget<QComboBox>(window, "da_usage_combo")->setCurrentIndex(1);
    window->undoAction->trigger();
    EXPECT_EQ(contents(), before);
    EXPECT_EQ(bits->mask(), 5U);
    EXPECT_EQ(family->currentIndex(), 1);
    EXPECT_EQ(widget<QComboBox>(window, "da_usage_combo")->currentIndex(), 1);
    EXPECT_TRUE(canGenerate(window, "sfi_generate_ok"));
    window->undoAction->trigger();
    QCoreApplication::processEvents();
    EXPECT_EQ(rows(window, "sfi_firmware_list"), 2);
}

TEST_F(ClearedFormsTest, UndoIsTheNextActionOrNothing)
{
    window->clearTool->trigger();
    fill(window, "sfix_key_edit", "/new.bin");
    window->undoAction->trigger();
    EXPECT_EQ(rows(window, "sfi_firmware_list"), 0);
    fill(window, "sfix_key_edit", "");
    window->undoAction->trigger();
    EXPECT_EQ(rows(window, "sfi_firmware_list"), 0) << "the first undo has given it up";
}

// The files would stand in the lists with the other padding.
TEST_F(ClearedFormsTest, AnotherPaddingByteIsNotUndone)
{
    const DialogAnswers boxes({DialogAnswer([](QDialog &dialog) {
        dialog.findChild<QAbstractButton *>("settings_pad00_radio")->click();
        QMetaObject::invokeMethod(&dialog, "SaveSettings");
    })});
    window->Settings();
    window->undoAction->trigger();
    EXPECT_EQ(rows(window, "sfi_firmware_list"), 0);
}

}  // namespace
