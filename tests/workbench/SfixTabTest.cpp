#include "SfiFixture.h"

namespace
{

constexpr int kH7 = 1;
constexpr int kU575 = 2;
constexpr int kH5 = 7;

const QString kHex = ":020000049000"
                     "6A\n:0400000001020304F2\n:00000001FF\n";
const QString kSRecord = "S1070000112233444E\nS9030000FC\n";

/// Fills and accepts the region dialog.
DialogAnswer region(const QString &start, int number, int mode, const QString &key)
{
    return DialogAnswer([=](QDialog &dialog) {
        auto *startEdit = dialog.findChild<QLineEdit *>("extFir_start_edit");
        if (!startEdit->isReadOnly()) {
            startEdit->setText(start);
        }
        dialog.findChild<QSpinBox *>("extFir_region_spin")->setValue(number);
        dialog.findChild<QSpinBox *>("extFir_mode_spin")->setValue(mode);
        dialog.findChild<QLineEdit *>("extFir_key_edit")->setText(key);
        dialog.findChild<QPushButton *>()->setFocus();
        QTest::keyClick(&dialog, Qt::Key_Return);
    });
}

class SfixTab : public SfiFixture
{
protected:
    SfixTab() : SfiFixture("sfix") {}

    void add(const QString &row, const QString &path, std::initializer_list<DialogAnswer> answers)
    {
        DialogAnswers dialogs({path});
        for (const DialogAnswer &answer : answers) {
            dialogs.expect(answer);
        }
        click(row + "_add");
    }
    QStringList boxesOfGenerate(std::size_t count)
    {
        DialogAnswers boxes;
        for (std::size_t left = count; left > 0; --left) {
            boxes.expect(QMessageBox::Ok);
        }
        click("generate_ok");
        return boxes.texts();
    }
};

TEST_F(SfixTab, ListsDoNotDecideAboutGenerate)
{
    fillFields();
    EXPECT_TRUE(canGenerate());
    chooseMcu(kU575);
    EXPECT_EQ(boxesOfGenerate(1), QStringList{"Error|External firmware files is empty"});
}

TEST_F(SfixTab, RegionDialogFollowsDeviceAndFormat)
{
    chooseMcu(kH5);
    add("external", folder.file("e.hex", kHex.toStdString()), {DialogAnswer([](QDialog &dialog) {
            const auto *start = dialog.findChild<QLineEdit *>("extFir_start_edit");
            EXPECT_EQ(start->text(), "0x90000000");
            EXPECT_TRUE(start->isReadOnly());
            const auto *mode = dialog.findChild<QSpinBox *>("extFir_mode_spin");
            const auto *number = dialog.findChild<QSpinBox *>("extFir_region_spin");
            EXPECT_EQ(mode->minimum(), 1);
            EXPECT_EQ(mode->maximum(), 2);
            EXPECT_EQ(number->maximum(), 3);
            dialog.reject();
        })});
    EXPECT_EQ(rowsOf("external"), 0) << "a cancelled file isn't added";
    EXPECT_TRUE(tab().extBinInfos().isEmpty());
    chooseMcu(kU575);
    add("external", folder.file("e.bin", "1234"), {DialogAnswer([](QDialog &dialog) {
            EXPECT_FALSE(dialog.findChild<QLineEdit *>("extFir_start_edit")->isReadOnly());
            EXPECT_EQ(dialog.findChild<QSpinBox *>("extFir_mode_spin")->maximum(), 3);
            EXPECT_EQ(dialog.findChild<QSpinBox *>("extFir_region_spin")->maximum(), 7);
            dialog.reject();
        })});
}

TEST_F(SfixTab, OneAnswerServesTheRawBinariesThatFollow)
{
    chooseMcu(kU575);
    const QString one = folder.file("one.bin", "1234");
    const QString hex = folder.file("e.hex", kHex.toStdString());
    const QString two = folder.file("two.bin", "123456");
    {
        const DialogAnswers dialogs({DialogAnswer([](QDialog &dialog) {
            dialog.findChild<QPushButton *>("extFir_cancelAll")->click();
        })});
        tab().addFiles("external", {one, hex, two});
    }
    EXPECT_EQ(rowsOf("external"), 0);
    const DialogAnswers dialogs(
        {DialogAnswer([](QDialog &dialog) {
             dialog.findChild<QCheckBox *>("extFir_same_check")->click();
             dialog.findChild<QLineEdit *>("extFir_start_edit")->setText("0x8ffffffc");
             dialog.findChild<QLineEdit *>("extFir_key_edit")->setText("9");
             dialog.findChild<QSpinBox *>("extFir_region_spin")->setValue(5);
             QTest::keyClick(&dialog, Qt::Key_Return);
         }),
         region("", 6, 1, "0x50")});
    tab().addFiles("external", {one, hex, two});
    const QVector<ExtBinInfo> told = tab().extBinInfos();
    ASSERT_EQ(told.size(), 3);
    EXPECT_EQ(told[2].startAddress, 0x90000004u) << "behind the HEX file, which fills the gap";
    EXPECT_EQ(told[2].regionNumber, 5u);
    EXPECT_EQ(told[2].keyAddress, 9u);
}

TEST_F(SfixTab, RegionsGoWithTheirFiles)
{
    chooseMcu(kU575);
    add("external", folder.file("e.srec", kSRecord.toStdString()), {});
    add("external", folder.file("e.bin", "1234"), {region("0x90000000", 5, 2, "0x40")});
    add("external", folder.file("e.hex", kHex.toStdString()), {region("", 6, 1, "0x50")});
    const auto numbers = [this] {
        QStringList all;
        for (const ExtBinInfo &info : tab().extBinInfos()) {
            all << QString::number(info.regionNumber);
        }
        return all.join(' ');
    };
    ASSERT_EQ(numbers(), "5 6") << "nobody asked about the S-record file";
    select("external", 1);
    EXPECT_EQ(cells("firmwareInfo_table"),
              (QStringList{"e.bin", "4 B", "Binary", "0x40", "2", "5"}));
    select("external", 0);
    EXPECT_EQ(cells("firmwareInfo_table"), (QStringList{"e.srec", "4 B", "S-Record", "", "", ""}));
    click("external_remove");
    EXPECT_EQ(numbers(), "5 6");
    select("external", 0);
    click("external_remove");
    EXPECT_EQ(numbers(), "6");
    EXPECT_EQ(cells("firmwareInfo_table").mid(3), (QStringList{"0x50", "1", "6"}));
}

TEST_F(SfixTab, WhatWasToldOfAFileCanBeCorrected)
{
    chooseMcu(kU575);
    add("external", folder.file("e.bin", "1234"), {region("0x90000000", 5, 2, "0x40")});
    add("external", folder.file("e.hex", kHex.toStdString()), {region("", 6, 1, "0x50")});
    addBinary("internal", folder.file("i.bin", "1234"), "0x8000000");
    add("external", folder.file("e.srec", kSRecord.toStdString()), {});
    select("external", 0);
    const auto edit = [this](const QString &row, int at, const QString &name, const QString &was,
                             const QString &text) {
        const DialogAnswers dialogs({DialogAnswer([=](QDialog &dialog) {
            auto *field = dialog.findChild<QLineEdit *>(name);
            EXPECT_EQ(field->text(), was);
            field->setText(text);
            dialog.findChild<QPushButton *>()->setFocus();
            QTest::keyClick(&dialog, Qt::Key_Return);
        })});
        auto *view = widget<QListView>(row + "_list");
        emit view->doubleClicked(view->model()->index(at, 0));
    };
    edit("internal", 0, "address_start_edit", "0x8000000", "0x8001000");
    edit("external", 0, "extFir_start_edit", "0x90000000", "0x91000000");
    edit("external", 1, "extFir_key_edit", "0x50", "0x60");  // its address is the file's
    auto *list = tab().form()->list("external");
    emit list->view()->doubleClicked(list->view()->model()->index(2, 0));  // nobody asked of it
    EXPECT_EQ(cells("firmwareInfo_segments"), QStringList{"1|0x91000000|4 B"});
    const QVector<ExtBinInfo> told = tab().extBinInfos();
    ASSERT_EQ(told.size(), 2);
    EXPECT_EQ(told[0].startAddress, 0x91000000U);
    EXPECT_EQ(told[0].regionNumber, 5U);
    EXPECT_EQ(told[0].regionMode, 2U);
    EXPECT_EQ(told[1].regionNumber, 6U);
    EXPECT_EQ(told[1].keyAddress, 0x60U);
    list->view()->selectAll();
    click("external_remove");
    EXPECT_EQ(rowsOf("external"), 0) << "all selected files leave at once";
}

TEST_F(SfixTab, SmiFilesOfTheSfiTabAreCounted)
{
    auto *note = widget<QLabel>("smiNote_note");
    EXPECT_TRUE(note->isHidden());
    auto *sfi = static_cast<workbench::SfiTab *>(form.tab("sfi"));
    sfi->changeDevice(kH7);
    sfi->addFiles("smi", {folder.file("s.smi", std::string("SMIMAGIC") + std::string(120, 'd'))});
    EXPECT_EQ(note->text(), "SMI files of the SFI tab that go into this image, too: 1");
    EXPECT_FALSE(note->isHidden());
    sfi->changeDevice(kU575);
    EXPECT_TRUE(note->isHidden());
}

TEST_F(SfixTab, ParsingOfEitherImageDisablesRemoveUntilAClick)
{
    chooseMcu(kU575);
    add("external", folder.file("e.bin", "1234"), {region("0x90000000", 5, 2, "0x40")});
    select("external", 0);
    ASSERT_TRUE(widget<QPushButton>("external_remove")->isEnabled());
    const QString notAnImage = folder.file("x.sfi", "no image");
    form.findChild<QLineEdit *>("sfi_parse_edit")->setText(notAnImage);
    {
        DialogAnswers boxes({QMessageBox::Ok, QMessageBox::Ok});
        form.parseSfiFile("sfi", true);
    }
    EXPECT_FALSE(widget<QPushButton>("external_remove")->isEnabled());
    select("external", 0);
    EXPECT_TRUE(widget<QPushButton>("external_remove")->isEnabled());
}

TEST_F(SfixTab, VanishedFilesEndTheRequestEachInItsOwnWay)
{
    fillFields();
    chooseMcu(kU575);
    const QString internal = folder.file("i.hex", kHex.toStdString());
    const QString external = folder.file("e.bin", "1234");
    add("internal", internal, {});
    add("external", external, {region("0x90000000", 5, 2, "0x40")});
    QFile::remove(internal);
    boxesOfGenerate(1);
    EXPECT_EQ(rowsOf("internal"), 0);
    EXPECT_TRUE(canGenerate()) << "the internal list may be empty";
    QFile::remove(external);
    boxesOfGenerate(1);
    EXPECT_EQ(rowsOf("external"), 0);
    EXPECT_FALSE(canGenerate());
    EXPECT_TRUE(tab().extBinInfos().isEmpty());
}

TEST_F(SfixTab, ImageHoldsBothListsAndTheirRegions)
{
    fillFields();
    chooseMcu(kU575);
    add("internal", folder.file("i.srec", kSRecord.toStdString()), {});
    add("external", folder.file("e.bin", "1234"), {region("0x90000000", 5, 2, "0x40")});
    EXPECT_EQ(boxesOfGenerate(1), QStringList{"Success|SFIx successfully created"});
    EXPECT_EQ(edit("parse")->text(), output);
    EXPECT_EQ(cells("imageInfo_segments"),
              (QStringList{"1|Firmware|4 B|0x0", "2|External|20 B|0x90000000",
                           "3|Configuration|4 B|0x0"}));
    // The given address isn't in the file, so only the record can have kept it.
    folder.file("e.bin", "123456");
    DialogAnswers boxes({QMessageBox::Yes, QMessageBox::Ok});
    click("generate_ok");
    EXPECT_EQ(cells("imageInfo_segments")[1], "2|External|22 B|0x90000000");
}

TEST_F(SfixTab, H7NeedsATokenAndKeyAreaHasItsOwnWords)
{
    fillFields();
    chooseMcu(kH7);
    add("external", folder.file("e.bin", "1234"), {region("0x90000000", 5, 2, "0x40")});
    edit("areaKey")->setText(folder.path("e.bin"));
    EXPECT_EQ(boxesOfGenerate(1), QStringList{"Error|area bytes file is not in a csv format"});
    EXPECT_EQ(edit("areaKey")->text(), "");
    edit("areaKey")->setText(folder.path("absent.kcsv"));
    EXPECT_EQ(boxesOfGenerate(2).last(), "Error|Failure to open Key areas file");
    EXPECT_EQ(boxesOfGenerate(1), QStringList{"Error|Continuation token address is empty"});
}

TEST_F(SfixTab, EveryDeviceGetsBothKindsOfFirmware)
{
    fillFields();
    addBinary("internal", folder.file("i.bin", std::string(200'000, 'i')), "0x08000000");
    add("external", folder.file("x.bin", std::string(16, 'x')), {region("0x90000000", 1, 1, "0")});
    generateForEveryDevice([this](const QString &name, const QString &image) {
        EXPECT_EQ(bytesOfAreas(image, 'F'), 200'000u) << name.toStdString();
        EXPECT_EQ(bytesOfAreas(image, 'E'), 32u) << name.toStdString() << ": bytes and trailer";
    });
}

}  // namespace
