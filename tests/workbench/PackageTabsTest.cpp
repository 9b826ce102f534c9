#include "preparation/PackageInputs.h"
#include "preparation/ssp/SspSealer.h"
#include "workbench/SfiFixture.h"
#include "workbench/forms/PackageForm.h"
#include "workbench/tabs/sign/SignFooter.h"
#include "workbench/tabs/smi/SmiSections.h"
#include "workbench/tabs/ssp/SspTab.h"

#include <QApplication>
#include <QSpinBox>
#include <QToolButton>

namespace
{

class SmiTabTest : public SfiFixture
{
protected:
    SmiTabTest() : SfiFixture("smi")
    {
        edit("elf")->setText(elf);
        edit("key")->setText(folder.file("key.bin", std::string(16, 'k')));
        edit("nonce")->setText(folder.file("nonce.bin", std::string(12, 'n')));
        edit("securityVersion")->setText(folder.file("version.bin", std::string(16, 'v')));
        edit("output")->setText(folder.path("o.smi"));
        edit("clearElf")->setText(folder.path("clear.elf"));
    }
    QComboBox *sections() { return widget<QComboBox>("section_combo"); }
    QString note() { return widget<QLabel>("placement_note")->text(); }

    const QString elf = folder.file(
        "a.elf", elfOf({0x08004000,
                        {{".text", Bytes(64, 1)}, {".module", ramp(1, 3, 40)}, {".last", {7}}}}));
    const QString warned = "Warning|The section does not end on a Flash word boundary";
};

TEST_F(SmiTabTest, MakesTheModuleAndTheClearFile)
{
    EXPECT_EQ(sections()->count(), 3);
    EXPECT_EQ(cells("elfInfo_table"), (QStringList{"a.elf", "Executable", "ARM", "632 B"}));
    EXPECT_EQ(cells("elfInfo_segments")[4].section('|', 1, 2), "symbols|SYMTAB");
    EXPECT_FALSE(widget<QTableWidget>("elfInfo_segments")->item(4, 1)->toolTip().isEmpty());
    EXPECT_EQ(note(), "");
    sections()->setCurrentText(".last");
    EXPECT_TRUE(note().startsWith("Address of the section is not aligned")) << note().toStdString();
    ASSERT_TRUE(canGenerate());
    DialogAnswers boxes({QMessageBox::Ok, QMessageBox::Ok, QMessageBox::Ok, QMessageBox::Ok});
    click("generate_ok");
    EXPECT_EQ(boxes.texts().last(), "Information|SMI successfully created");
    EXPECT_EQ(boxes.texts()[2], warned);
    EXPECT_EQ(sections()->currentText(), ".last");
    EXPECT_EQ(cells("imageInfo_table"), (QStringList{"o.smi", "0x8004068", "1", "128 B"}));
    EXPECT_EQ(cells("imageInfo_segments")[1], "Security version|" + QString("76").repeated(16));
    EXPECT_EQ(ScratchFolder::contents(folder.path("o.smi")).substr(0, 8), "SMIMAGIC");
    EXPECT_EQ(ScratchFolder::contents(folder.path("clear.elf")).substr(1, 3), "ELF");
    auto *shows = widget<QPushButton>("imageInfo_show");
    EXPECT_FALSE(shows->isHidden());
    EXPECT_TRUE(shows->toolTip().contains("o.smi"));
    form.clearForms();
    EXPECT_TRUE(shows->isHidden()) << "nothing is shown any more";
}

TEST_F(SmiTabTest, ReadingShowsTheWaitCursor)
{
    DialogAnswers boxes({DialogAnswer([](QDialog &dialog) {
                             EXPECT_NE(QApplication::overrideCursor(), nullptr);
                             dialog.accept();
                         }),
                         QMessageBox::Ok});
    edit("elf")->setText(folder.file("bad.elf", "x"));
    EXPECT_EQ(boxes.texts().last(), "Error|Failure to open ELF file");
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(SmiTabTest, AllFindingsAreToldInOrderAndTheLastStopsTheWork)
{
    edit("elf")->setText(folder.file(
        "all.elf",
        elfOf({0x08004000, {{".text", Bytes(66, 1)}, {".module", Bytes(8, 2)}, {".last", {7}}}})));
    sections()->setCurrentText(".module");
    const QStringList findings = {
        "Address of the section is not aligned on a flash word (256 bits)",
        "The section spans on a single Flash word while HW can only protect areas spanning on at "
        "least 2 Flash words (512 bits)",
        "The section does not end on a Flash word boundary",
        "The section immediately following the PCROP area starts in the last Flash word of the "
        "PCROP section"};
    EXPECT_EQ(note(), findings.join(".\n") + "; no module can be made.");
    DialogAnswers boxes({QMessageBox::Ok, QMessageBox::Ok, QMessageBox::Ok, QMessageBox::Ok});
    click("generate_ok");
    EXPECT_EQ(boxes.texts(),
              QStringList(findings).replaceInStrings(QRegExp("^"), "Warning|").mid(0, 3)
                  << "Error|" + findings[3]);
    EXPECT_FALSE(QFile::exists(folder.path("o.smi")) || QFile::exists(folder.path("clear.elf")));
}

TEST_F(SmiTabTest, SectionsWithoutBytesAreRefused)
{
    edit("elf")->setText(folder.file("none.elf", elfOf({0x08004000, {{".none", {}}}})));
    EXPECT_EQ(note(), "The section has no bytes.");
    DialogAnswers boxes({QMessageBox::Ok, QMessageBox::Ok});
    click("generate_ok");
    EXPECT_EQ(boxes.texts(), QStringList("Error|The section .none has no bytes"));
    edit("elf")->setText(folder.file("a.hex", ":0401000001020304F1\n:00000001FF\n"));
    EXPECT_EQ(boxes.texts().last(), "Error|SMI images can only be created from ELF format");
    EXPECT_EQ(edit("elf")->text(), "");
    EXPECT_FALSE(canGenerate());
}

TEST_F(SmiTabTest, VersionFilesAreForTheirOwnerAndTakeAField)
{
    DialogAnswers boxes({folder.path("new.bin"), QMessageBox::Ok});
    click("securityVersion_generate");
    EXPECT_EQ(edit("securityVersion")->text(), folder.path("new.bin"));
    EXPECT_EQ(ScratchFolder::contents(folder.path("new.bin")).size(), 16U);
    const auto mode = QFileInfo(folder.path("new.bin")).permissions();
    EXPECT_FALSE(mode.testFlag(QFile::ReadGroup) || mode.testFlag(QFile::ReadOther));
}

TEST(ModuleNames, CountBeforeTheEndingAndLeaveTheFormsFilesAlone)
{
    using workbench::moduleNames;
    EXPECT_EQ(moduleNames("/d/a.b.smi", 1, {"/d/a.b.smi"}), QStringList("/d/a.b.smi"));
    EXPECT_EQ(moduleNames("/d/a.b.smi", 2, {"/d/../d/a.b0.smi"}),
              (QStringList{"/d/a.b1.smi", "/d/a.b2.smi"}));
}

TEST_F(SmiTabTest, RefusalsLeaveTheOldFiles)
{
    folder.file("o.smi", "old");
    {
        DialogAnswers boxes({QMessageBox::No});
        click("generate_ok");
        EXPECT_EQ(boxes.seen()[0].title, "File exists");
    }
    EXPECT_EQ(ScratchFolder::contents(folder.path("o.smi")), "old");
    EXPECT_FALSE(QFile::exists(folder.path("clear.elf")));
    folder.file("clear.elf", "old");
    DialogAnswers boxes({QMessageBox::Yes, QMessageBox::No, QMessageBox::Ok, QMessageBox::Ok});
    click("generate_ok");
    EXPECT_EQ(boxes.texts().mid(2), (QStringList{"Warning|Clear ELF file not created",
                                                 "Information|SMI successfully created"}));
    EXPECT_EQ(ScratchFolder::contents(folder.path("clear.elf")), "old");
}

TEST_F(SmiTabTest, ChecksComeBeforeAnythingIsBuilt)
{
    const QString other = folder.file("b.elf", elfOf({0x08004000, {{".text", Bytes(64, 1)}}}));
    ASSERT_TRUE(QFile::link(elf, folder.path("link.elf")));
    const struct {
        const char *row;
        QString text;
        QString box;
    } cases[] = {
        {"output", folder.path("o.SMI"), "SMI file must have the .smi extension"},
        {"clearElf", folder.path("./o.smi"),
         "The SMI file and the clear ELF file can't be the same file"},
        {"clearElf", folder.path("a.elf"), "The output file a.elf is one of the inputs"},
        {"clearElf", folder.path("link.elf"), "The output file link.elf is one of the inputs"},
        {"key", folder.file("k", std::string(15, 'k')), "Size of k is expected to be 16 bytes"},
    };
    for (const auto &[row, text, box] : cases) {
        const QString old = edit(row)->text();
        edit(row)->setText(text);
        DialogAnswers boxes({QMessageBox::Ok});
        click("generate_ok");
        EXPECT_EQ(boxes.texts(), QStringList("Error|" + box));
        edit(row)->setText(old);
    }
    sections()->setCurrentText(".last");
    QFile::remove(elf);
    QFile::copy(other, elf);  // the chosen section is gone
    DialogAnswers boxes({QMessageBox::Ok, QMessageBox::Ok});
    click("generate_ok");
    EXPECT_EQ(boxes.texts().last(), "Error|Error while extracting section data");
    EXPECT_EQ(sections()->currentIndex(), -1);
    EXPECT_FALSE(canGenerate());
    EXPECT_FALSE(QFile::exists(folder.path("o.smi")));
}

class SspTabTest : public SfiFixture
{
protected:
    SspTabTest() : SfiFixture("ssp")
    {
        edit("rmaUnlock")->setText("0X7FFF");
        edit("rmaRelock")->setText("0x1");
        edit("secrets")->setText(folder.file("secrets.bin", std::string(148, 's')));
        edit("key")->setText(folder.file("key.bin", std::string(16, 'k')));
        edit("nonce")->setText(folder.file("nonce.bin", std::string(16, 'n')));
        edit("oemKey")->setText(folder.file("\u00e9.bin", std::string(32, 'h')));
        edit("output")->setText(folder.path("o.ssp"));
        widget<QComboBox>("device_combo")->setCurrentIndex(1);
    }
    ~SspTabTest() override { sspDeviceIndex = 0; }
};

TEST_F(SspTabTest, MakesAnImageAndShowsIt)
{
    EXPECT_TRUE(edit("rmaRelock")->isHidden() && widget<QLabel>("rmaRelock_label")->isHidden());
    auto *eye = edit("rmaUnlock")->findChild<QToolButton *>();
    EXPECT_EQ(edit("rmaUnlock")->echoMode(), QLineEdit::Password);
    QTest::mousePress(eye, Qt::LeftButton);
    EXPECT_EQ(edit("rmaUnlock")->echoMode(), QLineEdit::Normal);
    QTest::mouseRelease(eye, Qt::LeftButton);
    EXPECT_EQ(edit("rmaUnlock")->echoMode(), QLineEdit::Password);
    DialogAnswers boxes({QMessageBox::Ok});
    click("generate_ok");
    EXPECT_EQ(boxes.texts(), QStringList("Success|SSP successfully created"));
    EXPECT_EQ(cells("imageInfo_table"), (QStringList{"o.ssp", "SSP", "232 B"}));
    const std::string file = ScratchFolder::contents(folder.path("o.ssp"));
    const Bytes key(16, 'k');
    const auto opened = preparation::openSsp(Bytes(file.begin(), file.end()), key);
    ASSERT_TRUE(opened);
    const auto plain = opened->payload.span();
    EXPECT_EQ(std::string(plain.begin(), plain.end()),
              "\xFF\x7F" + std::string(2, '\0') + std::string(148, 's'));
}

TEST(PackageInput, OnlyFilesWithAddressesHaveAMap)
{
    std::uint8_t byte = 1;
    FileData record;
    record.segments = {{0x8000000, 1, &byte}};
    record.segmentCount = 1;
    EXPECT_TRUE(workbench::describeInput("/f/a.bin", record).map.blocks.empty());
    record.type = file_type::kIntelHex;
    EXPECT_EQ(workbench::describeInput("/f/a.hex", record).map.blocks.size(), 1U);
}

TEST(PackageInput, BytesOfARecordAreWiped)
{
    std::uint8_t secret[] = {1, 2, 3};
    FileData record;
    record.segments = {{0, 2, secret}, {8, 1, secret + 2}};
    workbench::wipeSegments(&record);
    EXPECT_EQ(secret[0] | secret[1] | secret[2], 0);
    workbench::wipeSegments(nullptr);
}

TEST_F(SspTabTest, PasswordsAreJudgedInOrder)
{
    const struct {
        int device;
        const char *unlock, *relock, *box;
    } cases[] = {
        {0, "7FFF", "", "Invalid RMA unlock value, it must start with \"0x\" "},
        {0, "0xZ", "", "Invalid RMA unlock value"},
        {0, "0x8000", "", "Invalid RMA unlock value, RMA unlock < 0x7FFF"},
        {0, "0x0", "1", "Invalid RMA relock value, it must start with \"0x\" "},
        {0, "0x0", "0x8000", "Invalid RMA relock value, RMA relock < 0x7FFF"},
        {0, "0X7FFF", "0x7fff", "Size of \u00e9.bin is expected to be 178 bytes"},
        {1, "0x0", "", "Invalid RMA unlock value, not allowed zero value "},
        {1, "0x100000000", "", "Invalid RMA unlock value"},
    };
    for (const auto &[device, unlock, relock, box] : cases) {
        widget<QComboBox>("device_combo")->setCurrentIndex(device);
        edit("rmaUnlock")->setText(unlock);
        edit("rmaRelock")->setText(relock);
        DialogAnswers boxes({QMessageBox::Ok});
        click("generate_ok");
        EXPECT_EQ(boxes.texts(), QStringList("Error|" + QString(box))) << unlock;
    }
    EXPECT_FALSE(QFile::exists(folder.path("o.ssp")));
}

TEST_F(SspTabTest, InputsAreReadInOrderAndTheOldImageStays)
{
    const QString old = folder.file("o.ssp", "old");
    const struct {
        const char *row;
        QString text;
        QString box;
    } cases[] = {
        {"output", folder.path("o.SSP"), "Error|SSP file must have the .ssp extension"},
        {"nonce", folder.file("n", "n"), "Error|Size of n is expected to be 16 bytes"},
        {"oemKey", folder.file("o", "o"), "Error|Size of o is expected to be 32 bytes"},
        {"key", folder.file("k", "k"), "Error|Size of k is expected to be 16 bytes"},
        {"secrets", folder.file("s.bin", std::string(147, 's')),
         "Error|Size of s.bin is expected to be 148 bytes"},
    };
    for (const auto &[row, text, box] : cases) {
        if (row != std::string("output")) {
            edit("output")->setText(old);
        }
        edit(row)->setText(text);
        DialogAnswers boxes({QMessageBox::Ok});
        click("generate_ok");
        EXPECT_EQ(boxes.texts(), QStringList(box));
    }
    EXPECT_EQ(ScratchFolder::contents(old), "old");
}

TEST_F(SspTabTest, AnOldKeyIsNotReplacedUnasked)
{
    {
        DialogAnswers boxes({QMessageBox::No});
        click("key_generate");
    }
    EXPECT_EQ(ScratchFolder::contents(folder.path("key.bin")), std::string(16, 'k'));
    edit("nonce")->setText(folder.path("n.BIN"));
    DialogAnswers boxes({QMessageBox::Yes, QMessageBox::Ok, QMessageBox::Ok, QMessageBox::Ok});
    click("key_generate");
    click("nonce_generate");
    EXPECT_EQ(boxes.texts().mid(2),
              (QStringList{"Success|SSP encryption key successfully created",
                           "Error|SSP nonce file must have the .bin extension"}));
    EXPECT_NE(ScratchFolder::contents(folder.path("key.bin")), std::string(16, 'k'));
}

class SignTabTest : public SfiFixture
{
protected:
    SignTabTest() : SfiFixture("sign")
    {
        edit("key")->setText(folder.file("key.pem", privatePem(ramp(9, 3, 32), true)));
        edit("output")->setText(folder.path("signed.bin"));
        setImage(std::string(100, 'x') + "\x91\x29\x37\x23" + "tail");
    }
    void setImage(const std::string &bytes)
    {
        edit("input")->setText({});
        edit("input")->setText(folder.file("image.bin", bytes));
    }
    QStringList generate(std::initializer_list<DialogAnswer> answers)
    {
        DialogAnswers boxes(answers);
        click("generate_ok");
        return boxes.texts();
    }
};

TEST_F(SignTabTest, ShowsWhatStandsInTheFileThatWasWritten)
{
    widget<QSpinBox>("version_spin")->findChild<QLineEdit *>()->setText("0x10");
    EXPECT_EQ(generate({QMessageBox::Ok}), QStringList("Success|signature successfully created"));
    const QStringList rows = cells("imageInfo_segments");
    EXPECT_TRUE(rows.contains("Image version|16") && rows.contains("Curve|brainpoolP256t1") &&
                rows.contains("Signed size|104 B") && rows.contains("Signature|verified"))
        << rows.join(' ').toStdString();
    EXPECT_EQ(cells("imageInfo_table"), (QStringList{"signed.bin", "sign", "236 B"}));
    const std::string old = ScratchFolder::contents(folder.path("signed.bin"));
    widget<QSpinBox>("version_spin")->setValue(3);
    EXPECT_TRUE(generate({QMessageBox::No})[0].startsWith("File exists|"));
    EXPECT_EQ(ScratchFolder::contents(folder.path("signed.bin")), old);
}

TEST_F(SignTabTest, TypedVersionsReachTheirMessages)
{
    for (const char *text : {"256", "0x100"}) {
        auto *spin = widget<QSpinBox>("version_spin");
        spin->setFocus();
        spin->selectAll();
        QTest::keyClicks(spin, text);
        EXPECT_EQ(generate({QMessageBox::Ok}),
                  QStringList("Error|Image version must be between 0 and 255"));
    }
}

TEST_F(SignTabTest, FootersAreFoundAndCut)
{
    const QString unknown = "Information|Input image is of type : Unknown VD image\n";
    const QString failed = "Error|failed to extract Image and footer for signature!";
    setImage("x");
    EXPECT_EQ(generate({QMessageBox::Ok, QMessageBox::Ok}), (QStringList{unknown, failed}));
    setImage(std::string(27, 'x') + "\x21\x92\x27\x32");
    const QStringList early = generate({QMessageBox::Ok, QMessageBox::Ok, QMessageBox::Ok});
    EXPECT_TRUE(early[0].startsWith("Warning|")) << early[0].toStdString();
    EXPECT_EQ(early.mid(1), (QStringList{unknown, failed}));
    setImage(std::string(28, 'x') + "\x21\x92\x27\x32");
    EXPECT_EQ(generate({QMessageBox::Ok, QMessageBox::Ok}).first(),
              "Information|This signature will work only when updating from FUS v0.5.3 to "
              "v1.0.1\n");
}

TEST_F(SignTabTest, WhatCannotBeUsedEndsWithItsSentence)
{
    const QString old = edit("output")->text();
    edit("output")->setText(folder.path("no/signed.bin"));
    EXPECT_EQ(generate({QMessageBox::Ok, QMessageBox::Ok}).last(),
              "Error|an error occured while preparing signed image\n");
    edit("output")->setText(old);
    edit("key")->setText(folder.file("no.pem", "no key"));
    EXPECT_EQ(generate({QMessageBox::Ok, QMessageBox::Ok}).last(),
              "Error|occured when signing the binary image");
    edit("key")->setText(folder.path("gone.pem"));
    EXPECT_EQ(generate({QMessageBox::Ok, QMessageBox::Ok}).last(),
              "Error|Cannot open EC private key");
    EXPECT_FALSE(QFile::exists(old));
}

TEST(SignFooter, IsTheFirstInFileOrderAtAnyPlace)
{
    for (std::size_t at = 0; at < 200; ++at) {
        Bytes file(at, 0x91);
        const Bytes magic = {0x11, 0x98, 0x76, 0x42};
        file.insert(file.end(), magic.begin(), magic.end());
        file.insert(file.end(), {0x91, 0x29, 0x37, 0x23});
        const auto footer = workbench::findFooter(file);
        ASSERT_TRUE(footer);
        EXPECT_EQ(footer->at, at);
        EXPECT_EQ(footer->kind, workbench::FooterKind::OtherImage);
        file.resize(at + 3);
        EXPECT_FALSE(workbench::findFooter(file));
    }
}

class SfuTabTest : public SfiFixture
{
protected:
    SfuTabTest() : SfiFixture("sfu")
    {
        edit("firmware")->setText(folder.file("f.bin", std::string(5000, 'f')));
        edit("key")->setText(folder.file("key.bin", std::string(16, 'k')));
        edit("nonce")->setText(folder.file("nonce.bin", std::string(12, 'n')));
        edit("header")->setText(folder.path("o.sfuh"));
        edit("output")->setText(folder.path("o.sfu"));
    }
};

TEST_F(SfuTabTest, WritesBothFilesAndSaysWhichIsNew)
{
    EXPECT_EQ(cells("firmwareInfo_table"),
              (QStringList{"f.bin", "Binary", "4.88 KB", "0x0", "4.88 KB"}));
    {
        DialogAnswers boxes({QMessageBox::Ok});
        click("generate_ok");
        EXPECT_EQ(boxes.texts(), QStringList("Success|SFU successfully created"));
    }
    EXPECT_EQ(cells("imageInfo_table"), (QStringList{"o.sfu", "o.sfuh", "4.91 KB", "1", "4096"}));
    const std::string header = ScratchFolder::contents(folder.path("o.sfuh"));
    EXPECT_EQ(header.size(), 64U);
    const std::string body = ScratchFolder::contents(folder.path("o.sfu"));
    edit("key")->setText(folder.file("other.bin", std::string(16, 'o')));
    {
        DialogAnswers boxes({QMessageBox::Yes, QMessageBox::No});
        click("generate_ok");
    }
    EXPECT_NE(ScratchFolder::contents(folder.path("o.sfuh")), header);
    EXPECT_EQ(ScratchFolder::contents(folder.path("o.sfu")), body);
    edit("output")->setText(folder.path("no/o.sfu"));
    DialogAnswers boxes({QMessageBox::Yes, QMessageBox::Ok});
    click("generate_ok");
    EXPECT_TRUE(boxes.texts().last().startsWith("Error|Failure to create SFU file\n") &&
                boxes.texts().last().endsWith("\nThe header file o.sfuh is new already."))
        << boxes.texts().last().toStdString();
}

TEST_F(SfuTabTest, NamesAndFirmwareAreChecked)
{
    edit("header")->setText(folder.path("o.sfu"));
    edit("output")->setText(folder.path("o.sfuh"));
    DialogAnswers boxes({QMessageBox::Ok, QMessageBox::Ok, QMessageBox::Ok});
    click("generate_ok");
    edit("header")->setText(folder.path("o.sfuh"));
    click("generate_ok");
    EXPECT_EQ(boxes.texts(), (QStringList{"Error|An SFU header file must have the .sfuh extension",
                                          "Error|An SFU file must have the .sfu extension"}));
    boxes.expect(QMessageBox::Ok);
    edit("firmware")->setText(folder.file("a.tsv", "P\t0x1\tboot\tBinary\tmmc0\t0x0\ta.bin\n"));
    EXPECT_EQ(boxes.texts().last(),
              "Error|Unable to create an SFU image from the format of : a.tsv");
    edit("firmware")->setText(folder.file("two.s19", "S1040000AA51\nS1042000AA31\n"));
    EXPECT_EQ(boxes.texts().last(), "Error|The firmware file contains more than one segment");
    EXPECT_EQ(edit("firmware")->text(), "");
}

}  // namespace
