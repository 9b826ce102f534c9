#include "SfiFixture.h"
#include "report/DisplayMng.h"
#include "support/ImageBytes.h"
#include "workbench/widgets/LongWork.h"

#include <QFileInfo>
#include <QMessageBox>
#include <QRegularExpression>
#include <QTimer>

namespace
{

constexpr int kH7 = 1;
constexpr int kU575 = 2;
constexpr int kL4 = 7;
constexpr int kH5 = 9;

const QString kHex = ":020000040800F2\n:10000000000102030405060708090A0B0C0D0E0F78\n:00000001FF\n";

const std::string kObk =
    std::string("\x00\x01\xFD\x0F\x04\x00\x00\x00\x00\x00\x00\x00", 12) + "1234";

std::vector<std::uint8_t> smiBytes()
{
    return ImageBytes()
        .text("SMIMAGIC")
        .u16le(1)
        .u16le(0)
        .u32le(0x8040000)
        .u32le(20)
        .fill(96 - 20, 0)
        .fill(32, 0xA5)
        .done();
}

class SfiTab : public SfiFixture
{
protected:
    SfiTab() : SfiFixture("sfi") {}

    void prepare(int mcu)
    {
        fillFields();
        hexPath = folder.file("fw.hex", kHex.toStdString());
        DialogAnswers dialogs({hexPath});
        click("firmware_add");
        chooseMcu(mcu);
        edit("ram")->clear();
    }
    /// Presses Generate and answers every box with Ok. @return "title|text" of each
    QStringList refusals(std::size_t count)
    {
        DialogAnswers boxes;
        for (std::size_t left = count; left > 0; --left) {
            boxes.expect(QMessageBox::Ok);
        }
        click("generate_ok");
        for (const SeenDialog &box : boxes.seen()) {
            EXPECT_EQ(box.textFormat, Qt::PlainText);
        }
        return boxes.texts();
    }

    QString hexPath;
};

TEST_F(SfiTab, GenerateNeedsFourFieldsAndAFirmwareFile)
{
    EXPECT_FALSE(canGenerate());
    fillFields();
    EXPECT_FALSE(canGenerate()) << "no firmware yet";
    chooseMcu(kH5);
    EXPECT_TRUE(canGenerate()) << "this device takes images of provisioning files alone";
    chooseMcu(kU575);
    EXPECT_FALSE(canGenerate());
    prepare(kU575);
    for (const char *row : {"key", "nonce", "optionBytes", "output"}) {
        const QString text = edit(row)->text();
        EXPECT_TRUE(canGenerate());
        edit(row)->clear();
        EXPECT_FALSE(canGenerate()) << row;
        edit(row)->setText(text);
    }
    select("firmware", 0);
    click("firmware_remove");
    EXPECT_FALSE(canGenerate());
}

TEST_F(SfiTab, MapShowsAllFilesOfTheListAndFollowsIt)
{
    auto *map = widget<workbench::MemoryMap>("firmwareInfo_map");
    const auto groups = [map] {
        QStringList names;
        for (const workbench::MapGroup &group : map->contents().groups) {
            names << group.name;
        }
        return names.join('|');
    };
    prepare(kU575);
    EXPECT_EQ(groups(), "") << "nothing is selected";
    select("firmware", 0);
    addBinary("firmware", folder.file("b.bin", std::string(64, 'b')), "0x08000008");
    EXPECT_EQ(groups(), "fw.hex|b.bin");
    EXPECT_EQ(map->contents().emphasised, 0);
    EXPECT_TRUE(map->words().startsWith("Overlap between segments, Unable to merge files: "));
    // The last block is the binary's: asking for it selects its file, and its row.
    QTest::keyClick(map, Qt::Key_End);
    QTest::keyClick(map, Qt::Key_Return);
    EXPECT_EQ(cells("firmwareInfo_table").first(), "b.bin");
    EXPECT_EQ(map->contents().emphasised, 1);
    EXPECT_TRUE(map->words().startsWith("b.bin, segment 1: 0x8000008 to 0x8000047, 64 B"))
        << map->words().toStdString();
    click("firmware_remove");
    EXPECT_EQ(groups(), "fw.hex");
    click("firmware_remove");
    EXPECT_TRUE(map->isHidden());
}

TEST_F(SfiTab, RepairsComeInTheOrderOfTheChecks)
{
    prepare(0);
    edit("output")->setText(folder.path("out.SFI"));
    EXPECT_EQ(refusals(1), QStringList{"Error|MCU product must be selected"});
    chooseMcu(kU575);
    EXPECT_EQ(refusals(1), QStringList{"Error|SFI file must have the .sfi extension"});
    edit("output")->setText(output);
    edit("key")->setText(folder.file("short.bin", std::string(15, 'k')));
    edit("nonce")->setText(folder.path("absent.bin"));
    edit("ram")->setText("0");
    EXPECT_EQ(refusals(1), QStringList{"Error|Size of short.bin is expected to be 16 bytes"});
    EXPECT_EQ(edit("key")->text(), "");
    EXPECT_FALSE(canGenerate());
    edit("key")->setText(folder.path("key.bin"));
    EXPECT_EQ(
        refusals(1),
        QStringList{"Error|The file absent.bin does not exist, please check the file's path"});
    EXPECT_EQ(edit("nonce")->text(), "");
    EXPECT_TRUE(logs.last().endsWith("There is no such file: " + folder.path("absent.bin")));
    edit("nonce")->setText(folder.path("nonce.bin"));
    edit("optionBytes")->setText(folder.file("bad.csv", "no comma\n"));
    EXPECT_EQ(refusals(2), (QStringList{"Error|Error: " + folder.path("bad.csv") +
                                            " is an invalid option bytes file",
                                        "Error|Failure to open Option bytes file"}));
    EXPECT_EQ(edit("optionBytes")->text(), "");
    edit("optionBytes")->setText(hexPath);
    EXPECT_EQ(refusals(1), QStringList{"Error|Option bytes file is not in a csv format"});
    edit("optionBytes")->setText(folder.path("ob.csv"));
    edit("areaKey")->setText(folder.path("absent.kcsv"));
    EXPECT_EQ(refusals(2),
              (QStringList{
                  "Error|Error: The file absent.kcsv does not exist, please check the file's path",
                  "Error|Failure to open KCSV file"}));
    EXPECT_EQ(edit("areaKey")->text(), "");
    EXPECT_TRUE(logs.last().endsWith("There is no such file: " + folder.path("absent.kcsv")));
    edit("areaKey")->setText(hexPath);
    EXPECT_EQ(refusals(1), QStringList{"Error|Area K file is not in a kcsv format"});
    EXPECT_EQ(refusals(1), QStringList{"Error|Invalid RAM size"});
    EXPECT_FALSE(QFileInfo::exists(output));
    edit("ram")->setText("0x55500 ");
    EXPECT_EQ(refusals(1), QStringList{"Success|SFI successfully created"});
}

TEST_F(SfiTab, ImageIsReadBackIntoThePane)
{
    prepare(kU575);
    EXPECT_EQ(refusals(1), QStringList{"Success|SFI successfully created"});
    EXPECT_EQ(edit("parse")->text(), output);
    EXPECT_EQ(headings("imageInfo_table"), (QStringList{"File name", "Size", "Protocol version"}));
    const QString size = QString::number(QFileInfo(output).size());
    EXPECT_EQ(cells("imageInfo_table"), QStringList{"out.sfi|" + size + " Bytes|2"});
    EXPECT_EQ(headings("imageInfo_segments"), (QStringList{"Index", "Type", "Size", "Address"}));
    EXPECT_EQ(cells("imageInfo_segments"),
              (QStringList{"1|Firmware|16 B|0x8000000", "2|Configuration|4 B|0x0"}));
    form.clearForms();
    EXPECT_EQ(headings("imageInfo_table").size(), 3);
    EXPECT_EQ(cells("imageInfo_table"), QStringList{"||"});
    EXPECT_TRUE(cells("imageInfo_segments").isEmpty());
    EXPECT_EQ(headings("firmwareInfo_table"), (QStringList{"File name", "Size", "Type"}));
    EXPECT_EQ(rowsOf("firmware"), 0);
    EXPECT_EQ(edit("key")->text() + edit("parse")->text(), "");
    EXPECT_FALSE(canGenerate());
    EXPECT_EQ(widget<QComboBox>("mcu_combo")->currentIndex(), kU575);
}

TEST_F(SfiTab, KeepsTheOldFileWhenOverwriteIsRefused)
{
    prepare(kU575);
    folder.file("out.sfi", "old");
    {
        DialogAnswers boxes({DialogAnswer([](QDialog &box) {
            EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::ArrowCursor)
                << "a question that waits must not look busy";
            QTest::keyClick(&box, Qt::Key_Escape);
        })});
        click("generate_ok");
        ASSERT_EQ(boxes.texts(),
                  QStringList{"File exists|The file out.sfi already exists, do you want to "
                              "overwrite it ?"});
        EXPECT_EQ(boxes.seen()[0].defaultButton, QMessageBox::No);
        EXPECT_EQ(boxes.seen()[0].icon, QMessageBox::Question);
    }
    EXPECT_EQ(contentsOf(output), "old");
    DialogAnswers boxes({QMessageBox::Yes, QMessageBox::Ok});
    click("generate_ok");
    EXPECT_EQ(contentsOf(output).left(8), "SFIMAGIC");
}

TEST_F(SfiTab, OutputThatCannotBeWrittenIsReported)
{
    prepare(kU575);
    edit("output")->setText(folder.path("no-such-folder/out.sfi"));
    EXPECT_EQ(refusals(1),
              QStringList{"Error|Failure to create SFI file\nout.sfi: No such folder"});
}

TEST_F(SfiTab, AFileThatVanishedLeavesTheListAndEndsTheRequest)
{
    prepare(kU575);
    const QString gone = folder.file("gone.bin", "1234");
    addBinary("firmware", gone, "0x9000000");
    ASSERT_EQ(rowsOf("firmware"), 2);
    QFile::remove(gone);
    EXPECT_EQ(
        refusals(1),
        QStringList{"Error|Error: The file gone.bin does not exist, please check the file's path"});
    EXPECT_EQ(rowsOf("firmware"), 1);
    EXPECT_TRUE(canGenerate());
    QFile::remove(hexPath);
    refusals(1);
    EXPECT_EQ(rowsOf("firmware"), 0);
    EXPECT_FALSE(canGenerate());
    EXPECT_FALSE(QFileInfo::exists(output));
}

TEST_F(SfiTab, PaneShowsNoFileThatHasLeftItsList)
{
    prepare(kU575);
    const QString gone = folder.file("gone.bin", "1234");
    addBinary("firmware", gone, "0x9000000");
    select("firmware", 1);
    ASSERT_EQ(cells("firmwareInfo_table")[0], "gone.bin");
    QFile::remove(gone);
    refusals(1);
    EXPECT_EQ(cells("firmwareInfo_table")[0], "fw.hex");
    QFile::remove(hexPath);
    refusals(1);
    EXPECT_EQ(cells("firmwareInfo_table"), (QStringList{"", "", ""}));
    EXPECT_TRUE(cells("firmwareInfo_segments").isEmpty());
}

TEST_F(SfiTab, GivenAddressSurvivesAndChangedBytesCount)
{
    prepare(kU575);
    const QString path = folder.file("fw.bin", "1234");
    addBinary("firmware", path, "0x8001000");
    select("firmware", 1);
    EXPECT_EQ(cells("firmwareInfo_segments"), QStringList{"1|0x8001000|4 B"});
    folder.file("fw.bin", "12345678");
    refusals(1);
    EXPECT_EQ(cells("firmwareInfo_segments"), QStringList{"1|0x8001000|8 B"});
    EXPECT_EQ(cells("imageInfo_segments")[1], "2|Firmware|8 B|0x8001000");
}

TEST_F(SfiTab, OverlappingFilesAreNamedByReaderAndForm)
{
    prepare(kU575);
    addBinary("firmware", folder.file("fw.bin", "1234"), "0x8000004");
    EXPECT_EQ(refusals(2),
              (QStringList{"Error|Error: Overlap between segments, Unable to merge files",
                           "Error|Overlap between segments, Unable to merge firmware files"}));
}

TEST_F(SfiTab, CancelledAddressAndForeignFormatsAddNothing)
{
    fillFields();
    const QString binary = folder.file("fw.bin", "1234");
    const QString csv = folder.path("ob.csv");
    DialogAnswers dialogs({QStringList{csv, binary}, QMessageBox::Ok,
                           DialogAnswer([](QDialog &dialog) { dialog.reject(); })});
    click("firmware_add");
    EXPECT_EQ(dialogs.seen()[1].text, "Unable to create an SFI image from the format of : ob.csv");
    EXPECT_EQ(rowsOf("firmware"), 0);
    EXPECT_EQ(form.lastFolder, binary);
}

TEST_F(SfiTab, HiddenFieldsKeepTheirTextAndKeyAreaCountsOnlyWhereItIsRead)
{
    prepare(kU575);
    edit("areaKey")->setText(folder.path("absent.kcsv"));
    edit("ssfi")->setText("old.ssfi");
    edit("token")->setText("12");
    chooseMcu(kL4);
    EXPECT_FALSE(edit("areaKey")->isVisibleTo(&form));
    EXPECT_EQ(edit("ram")->text() + edit("token")->text() + edit("ssfi")->text(), "");
    EXPECT_EQ(refusals(1), QStringList{"Success|SFI successfully created"})
        << "the path left in the hidden field isn't read";
    chooseMcu(0);
    EXPECT_EQ(edit("areaKey")->text(), folder.path("absent.kcsv"));
}

TEST_F(SfiTab, RowsFollowTheDevice)
{
    const auto shown = [this](int mcu) {
        chooseMcu(mcu);
        QStringList names;
        for (const char *name :
             {"smi_list", "smi_add", "smi_label", "smi_line", "areaKey_edit", "areaKey_label",
              "areaKey_line", "obk_list", "ssfi_edit", "modules_open", "ram_line"}) {
            if (widget<QWidget>(name)->isVisibleTo(&form)) {
                names << name;
            }
        }
        return names.join(' ');
    };
    EXPECT_EQ(shown(0), "");
    EXPECT_EQ(shown(kH7),
              "smi_list smi_add smi_label smi_line areaKey_edit areaKey_label ram_line");
    EXPECT_EQ(shown(kL4), "");
    EXPECT_EQ(shown(kH5), "areaKey_edit areaKey_label areaKey_line obk_list ssfi_edit "
                          "modules_open ram_line");
    EXPECT_FALSE(widget<QCheckBox>("hash_check")->isEnabled());
    EXPECT_TRUE(widget<QCheckBox>("hash_check")->isChecked());
}

TEST_F(SfiTab, H5AsksBeforeAnImageWithoutProvisioningFiles)
{
    prepare(kH5);
    edit("ssfi")->setText(hexPath);
    {
        DialogAnswers boxes({QMessageBox::No});
        click("generate_ok");
        EXPECT_EQ(boxes.texts(),
                  QStringList{"Warning|OBKey field is empty !\nNo regression is possible if the "
                              "SFI file does not contain OBKey for DA.\nDo you want to contiue ?"});
        EXPECT_EQ(boxes.seen()[0].defaultButton, QMessageBox::No);
    }
    DialogAnswers boxes({QMessageBox::Yes, QMessageBox::Ok});
    click("generate_ok");
    EXPECT_EQ(boxes.texts().last(), "Error|Cannot read SSFI file") << "a HEX file isn't an SSFI";
}

TEST_F(SfiTab, ProvisioningFilesGoIntoTheImageOfH5)
{
    prepare(kH5);
    const QString obk = folder.file("k.obk", kObk);
    {
        DialogAnswers dialogs({obk});
        click("obk_add");
    }
    select("obk", 0);
    EXPECT_EQ(cells("firmwareInfo_table"), (QStringList{"k.obk", "4 B", "OBK"}));
    EXPECT_EQ(refusals(1), QStringList{"Success|SFI successfully created"});
    EXPECT_EQ(cells("imageInfo_segments")[0], "1|OBkey|16 B|0xffd0100");
    QFile::remove(obk);
    EXPECT_EQ(
        refusals(1),
        QStringList{"Error|Error: The file k.obk does not exist, please check the file's path"});
    EXPECT_FALSE(canGenerate()) << "the image would go out without its keys";
    edit("ram")->setText("0x100000");
    EXPECT_TRUE(canGenerate());
}

TEST_F(SfiTab, SavedFirmwareIsTakenOnce)
{
    form.firmwarePaths = QStringList(folder.file("fw.bin", "1234"));
    form.ParseSavedFirmwares({0x8000000});
    EXPECT_EQ(rowsOf("firmware"), 1);
    EXPECT_TRUE(form.firmwarePaths.isEmpty());
}

TEST_F(SfiTab, SmiFilesThatTheFormTakesAreLookedAt)
{
    const QString other = folder.file("o.bin", "1234");
    const QString smi = folder.file("s.smi", smiBytes());
    DialogAnswers dialogs({QStringList{other, smi}, QMessageBox::Ok});
    form.ParseSmis();
    EXPECT_EQ(dialogs.texts().last(), "Error|o.bin : is not an SMI file");
    EXPECT_EQ(rowsOf("smi"), 1);
}

TEST_F(SfiTab, SmiFilesOfH7AreUsedAndMissedByName)
{
    prepare(kH7);
    const QString smi = folder.file("s.smi", smiBytes());
    {
        DialogAnswers dialogs({smi});
        click("smi_add");
    }
    ASSERT_EQ(rowsOf("smi"), 1);
    QFile::remove(smi);
    EXPECT_EQ(
        refusals(2),
        (QStringList{"Error|Error: The file s.smi does not exist, please check the file's path",
                     "Error|Failure to open SMI file : " + smi}));
    EXPECT_EQ(rowsOf("smi"), 0);
    EXPECT_TRUE(canGenerate());
}

TEST_F(SfiTab, EveryInputOfH5GoesIntoTheImage)
{
    prepare(kH5);
    folder.file("m.bin", std::string(40, 'm'));
    edit("modules")->setText(folder.file("list.mcsv", "./m.bin,FW7,0x08020000\n"));
    edit("ssfi")->setText(folder.file("s.ssfi", ImageBytes()
                                                    .text("SFIMAGIC")
                                                    .u16le(1)
                                                    .u32le(0)
                                                    .u16le(1)
                                                    .fill(16, 0x11)
                                                    .text("C")
                                                    .u8(0)
                                                    .u16le(1)
                                                    .u32le(4)
                                                    .u32le(0)
                                                    .u16le(1)
                                                    .fill(32 + 4, 0x22)
                                                    .done()));
    edit("areaKey")->setText(folder.file("k.kcsv", "1,2\n"));
    {
        DialogAnswers boxes({QMessageBox::Yes, QMessageBox::Ok});
        click("generate_ok");
        EXPECT_EQ(boxes.texts().last(), "Success|SFI successfully created");
    }
    EXPECT_EQ(cells("imageInfo_segments"),
              (QStringList{"1|SSFI|82 B|0x0", "2|Module|96 B|0x8020000", "3|Key|8 B|0x0",
                           "4|Firmware|16 B|0x8000000", "5|Configuration|4 B|0x0"}));
}

TEST_F(SfiTab, ModulesOfAnotherKindEndTheRequestWithAWord)
{
    prepare(kH5);
    edit("modules")->setText(hexPath);
    DialogAnswers boxes({QMessageBox::Yes, QMessageBox::Ok});
    click("generate_ok");
    EXPECT_EQ(boxes.texts().last(), "Error|Error: " + hexPath + " is an invalid mcsv file");
    EXPECT_FALSE(QFileInfo::exists(output));
}

TEST_F(SfiTab, PaneChangesBetweenModulesListAndImage)
{
    prepare(kU575);
    folder.file("m.bin", std::string(2048, 'm'));
    edit("parse")->setText(folder.file("list.MCSV", "./m.bin,FW7,0x08020000\n./m.bin,none,0x0\n"));
    form.parseSfiFile("sfi", true);
    EXPECT_EQ(headings("imageInfo_table"), (QStringList{"File name", "Size", "Modules number"}));
    EXPECT_EQ(cells("imageInfo_table")[2], "2");
    EXPECT_EQ(widget<QLabel>("imageInfo_label")->text(), "Modules");
    EXPECT_EQ(headings("imageInfo_segments"),
              (QStringList{"Index", "Type", "Size", "Address", "HSM FW ID"}));
    EXPECT_EQ(cells("imageInfo_segments"),
              (QStringList{"1|HSM|2 KB|0x8020000|FW7", "2|No license|2 KB|0x0|-"}));
    refusals(1);
    EXPECT_EQ(widget<QLabel>("imageInfo_label")->text(), "Segments");
    EXPECT_EQ(headings("imageInfo_table"), (QStringList{"File name", "Size", "Protocol version"}));
    EXPECT_EQ(cells("imageInfo_segments")[0], "1|Firmware|16 B|0x8000000");
}

TEST_F(SfiTab, KeyFieldsOfBothTabsAreFilledTogether)
{
    const struct {
        const char *row;
        int bytes;
        const char *made;
    } files[] = {{"nonce", 12, "Nonce file successfully created"},
                 {"key", 16, "Encrytpion Key file successfully created"}};
    QString key;
    for (const auto &[row, bytes, made] : files) {
        key = folder.path(row + QString(".bin"));
        DialogAnswers dialogs({key, QMessageBox::Ok});
        click(row + QString("_generate"));
        EXPECT_EQ(dialogs.seen()[1].text, made);
        EXPECT_EQ(contentsOf(key).size(), bytes);
        EXPECT_EQ(edit(row)->text(), key);
        EXPECT_EQ(form.findChild<QLineEdit *>(QString("sfix_%1_edit").arg(row))->text(), key);
        EXPECT_EQ(form.lastOutputFolder, QFileInfo(key).absolutePath());
    }
    DialogAnswers dialogs({key, QString()});
    click("nonce_open");
    EXPECT_EQ(edit("nonce")->text(), key);
    click("nonce_open");
    EXPECT_EQ(edit("nonce")->text(), key) << "cancelling leaves the field alone";
}

TEST_F(SfiTab, ARandomFileThatCannotBeMadeTellsWhy)
{
    const QString link = folder.path("key.bin");
    ASSERT_TRUE(QFile::link(folder.path("gone/key.bin"), link));
    DialogAnswers dialogs({link, QMessageBox::Ok, QMessageBox::Ok});
    click("key_generate");
    EXPECT_EQ(dialogs.texts().last(),
              "Error|Encrytpion Key File Generation Failed !!\nkey.bin: No such folder");
    EXPECT_EQ(edit("key")->text(), "");
}

TEST_F(SfiTab, FolderProposesTheOutputName)
{
    edit("output")->setText("typed.sfi");
    DialogAnswers dialogs({DialogAnswer([this](QDialog &dialog) {
        dialog.findChild<QLineEdit *>("fileNameEdit")->setText(folder.path(""));
        dialog.accept();
    })});
    click("output_folder");
    EXPECT_EQ(QFileInfo(edit("output")->text()).fileName(), "out.sfi");
    EXPECT_EQ(QDir(form.lastOutputFolder), QDir(folder.path("")));
}

TEST_F(SfiTab, ParsingWhatIsNoImageClearsThePane)
{
    prepare(kU575);
    refusals(1);
    edit("parse")->setText(folder.path("absent.sfi"));
    {
        DialogAnswers boxes({QMessageBox::Ok});
        form.parseSfiFile("SFI", true);
        EXPECT_EQ(boxes.texts(),
                  QStringList{"Error|Failure to parse SFI/SFIx/SSFI/MCSV file, image doesn't "
                              "exist."});
    }
    EXPECT_EQ(cells("imageInfo_segments").size(), 2) << "the pane stays as it was";
    form.findChild<QLineEdit *>("sfix_parse_edit")->setText(output);
    form.parseSfiFile("sfix", true);
    const auto *ofOther = form.findChild<QTableWidget *>("sfix_imageInfo_segments");
    ASSERT_EQ(ofOther->rowCount(), 2);
    edit("parse")->setText(hexPath);
    DialogAnswers boxes({QMessageBox::Ok});
    form.parseSfiFile("SFI", true);
    EXPECT_EQ(boxes.texts(), QStringList{"Error|Error: Cannot parse SFI/SFIx image"});
    EXPECT_TRUE(cells("imageInfo_segments").isEmpty());
    EXPECT_EQ(cells("imageInfo_table"), QStringList{"||"});
    EXPECT_EQ(ofOther->rowCount(), 0) << "a failure clears the panes of both tabs";
}

TEST_F(SfiTab, MissingInputsAreNamedInTheOrderOfTheFormAndLeadThere)
{
    auto *line = widget<QLabel>("missing_label");
    const auto rows = [line] {
        QStringList names;
        auto links = QRegularExpression("href=\"(\\w+)\"").globalMatch(line->text());
        while (links.hasNext()) {
            names << links.next().captured(1);
        }
        return names.join(' ');
    };
    EXPECT_EQ(rows(), "mcu firmware key nonce optionBytes output");
    fillFields();
    EXPECT_EQ(rows(), "mcu firmware");
    chooseMcu(kH5);
    EXPECT_TRUE(line->isHidden());
    chooseMcu(kU575);
    EXPECT_EQ(rows(), "firmware");
    prepare(0);
    EXPECT_TRUE(canGenerate()) << "the sentence about the device comes with the request";
    EXPECT_EQ(rows(), "mcu");
    QApplication::setActiveWindow(&form);
    edit("nonce")->clear();
    emit line->linkActivated("nonce");
    EXPECT_TRUE(edit("nonce")->hasFocus());
}

TEST_F(SfiTab, EmptyListsSayWhatGoesInUnderTheStyleSheetToo)
{
    QFile style(":/style.qss");
    ASSERT_TRUE(style.open(QIODevice::ReadOnly));
    qApp->setStyleSheet(style.readAll());
    auto *view = widget<QListView>("firmware_list");
    const auto hasWords = [view] {
        const QImage seen = view->viewport()->grab().toImage();
        const QRgb paper = seen.pixel(seen.width() - 2, seen.height() - 2);
        for (int y = 0; y < seen.height(); ++y) {
            for (int x = 0; x < seen.width(); ++x) {
                if (qAbs(qGray(seen.pixel(x, y)) - qGray(paper)) > 60) {
                    return true;
                }
            }
        }
        return false;
    };
    EXPECT_TRUE(hasWords());
    const auto *words = view->viewport()->findChild<QLabel *>();
    EXPECT_EQ(words->text(), "Add files or drop them here");
    prepare(kU575);
    EXPECT_FALSE(words->isVisible());
    qApp->setStyleSheet({});
}

TEST_F(SfiTab, AHexFileThatChangedOnDiskKeepsNoOldAddress)
{
    prepare(kU575);
    folder.file("fw.hex", ":020000040801F1\n:0401000001020304F1\n:00000001FF\n");
    refusals(1);
    EXPECT_EQ(cells("imageInfo_segments")[0], "1|Firmware|4 B|0x8010100");
}

TEST_F(SfiTab, FilesOfOtherDevicesAreNeitherReadNorUsed)
{
    prepare(kH5);
    const QString obk = folder.file("k.obk", kObk);
    const QString smi = folder.file("s.smi", smiBytes());
    {
        DialogAnswers dialogs({obk, smi});
        click("obk_add");
        chooseMcu(kH7);
        click("smi_add");
    }
    chooseMcu(kU575);
    EXPECT_EQ(refusals(1), QStringList{"Success|SFI successfully created"});
    EXPECT_EQ(cells("imageInfo_segments"),
              (QStringList{"1|Firmware|16 B|0x8000000", "2|Configuration|4 B|0x0"}));
    QFile::remove(obk);
    QFile::remove(smi);
    edit("output")->setText(folder.path("again.sfi"));
    EXPECT_EQ(refusals(1), QStringList{"Success|SFI successfully created"});
    EXPECT_EQ(rowsOf("obk"), 1);
    EXPECT_EQ(rowsOf("smi"), 1);
}

TEST_F(SfiTab, EveryDeviceGetsAllFirmwareInAreasThatFitItsRam)
{
    fillFields();
    addBinary("firmware", folder.file("fw.bin", std::string(600'000, 'f')), "0x08000000");
    generateForEveryDevice([this](const QString &name, const QString &image) {
        EXPECT_EQ(bytesOfAreas(image, 'F'), 600'000u) << name.toStdString();
    });
}

/// Watches the progress box: notes its texts, and presses "Cancel" at one that begins like this.
class ProgressWatcher : public QTimer
{
public:
    explicit ProgressWatcher(QWidget &window)
    {
        workbench::longWorkTimes = {0, 0};
        connect(this, &QTimer::timeout, this, [this, &window] {
            auto *const cancel = window.findChild<QPushButton *>("progress_cancel_button");
            if (cancel == nullptr || !cancel->isVisible()) {
                return;
            }
            const QString text = qobject_cast<QMessageBox *>(cancel->window())->text();
            if (texts.isEmpty() || texts.last() != text) {
                texts << text;
            }
            canCancel = cancel->isEnabled();
            if (!cancelAt.isEmpty() && text.startsWith(cancelAt)) {
                cancel->click();
            }
        });
        start(0);
    }
    ~ProgressWatcher() override { workbench::longWorkTimes = {}; }

    QString cancelAt;
    QStringList texts;
    bool canCancel = false;
};

TEST_F(SfiTab, LongWorkSaysWhatItDoesAndChangesNothingWhenCancelled)
{
    const QString big = folder.file("big.bin", std::string(3 << 20, 'b'));
    const QString small = folder.file("small.bin", "small");
    prepare(kL4);
    ProgressWatcher progress(form);
    progress.cancelAt = "Reading big.bin";
    {
        const DialogAnswers dialogs(
            {QStringList{small, big}, DialogAnswer([](QDialog &dialog) {
                 dialog.findChild<QLineEdit *>("address_start_edit")->setText("0x8800000");
                 dialog.findChild<QPushButton *>()->setFocus();
                 QTest::keyClick(&dialog, Qt::Key_Return);
             })});
        click("firmware_add");
    }
    EXPECT_EQ(rowsOf("firmware"), 1) << "of a cancelled choice no file stays";

    progress.cancelAt.clear();
    addBinary("firmware", big, "0x8100000");
    ASSERT_EQ(rowsOf("firmware"), 2);
    const QStringList before = QDir(folder.path("")).entryList(QDir::AllEntries | QDir::Hidden);
    for (const char *step : {"Reading big.bin", "Encrypting out.sfi", "Writing out.sfi"}) {
        progress.cancelAt = step;
        const DialogAnswers none;
        click("generate_ok");
        EXPECT_TRUE(progress.texts.last().startsWith(step))
            << progress.texts.join('|').toStdString();
        EXPECT_EQ(QDir(folder.path("")).entryList(QDir::AllEntries | QDir::Hidden), before) << step;
    }
    progress.cancelAt.clear();
    DialogAnswers boxes({QMessageBox::Ok});
    click("generate_ok");
    EXPECT_TRUE(QFile::exists(output));
    EXPECT_EQ(progress.texts.last(), "Reading out.sfi");
    EXPECT_FALSE(progress.canCancel) << "the image stands already";
}

}  // namespace
