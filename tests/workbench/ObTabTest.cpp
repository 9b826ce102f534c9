#include "workbench/tabs/ob/ObTab.h"
#include "device/DataGateWay.h"
#include "device/DeviceXml.h"
#include "device/ObEntries.h"
#include "support/DialogAnswers.h"
#include "support/FullDisk.h"
#include "support/QtPrinters.h"
#include "support/ScratchFolder.h"
#include "workbench/frame/CentralWidget.h"
#include "workbench/tabs/ob/ObForm.h"
#include "workbench/tabs/ob/RegisterTree.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStandardPaths>
#include <QTableWidget>
#include <QTest>
#include <QTreeWidget>

#include <gtest/gtest.h>

#include <sys/stat.h>

using workbench::BitTable;

namespace
{

const char *const kWritten = "Information|CSV Ob file generated successfully.";
const char *const kReserved = "Warning|CSV file is trying to modify Reserved values, They will be "
                              "forced to the default ones !";

class ObTabTest : public ::testing::Test
{
protected:
    ObTabTest()
    {
        form.show();
        form.tabWidget->setCurrentWidget(form.sfiObPage);
    }

    template <typename Widget>
    Widget *find(const char *name)
    {
        auto *found = form.findChild<Widget *>(name);
        EXPECT_NE(found, nullptr) << name;
        return found;
    }
    void choose(int index) { find<QComboBox>("ob_mcu_combo")->setCurrentIndex(index); }
    void click(const char *name) { QTest::mouseClick(find<QPushButton>(name), Qt::LeftButton); }
    workbench::RegisterTree *tree()
    {
        return static_cast<workbench::RegisterTree *>(find<QTreeWidget>("ob_registers_tree"));
    }
    const device::ObEditor &editor()
    {
        return static_cast<workbench::ObTab *>(form.tab("ob"))->editor();
    }
    /// Opens a register by its row in the tree.
    BitTable *open(const QString &reg)
    {
        QTreeWidgetItem *item = tree()->findItems(reg, Qt::MatchExactly | Qt::MatchRecursive).at(0);
        item->setExpanded(true);
        return static_cast<BitTable *>(tree()->itemWidget(item->child(0), 0));
    }
    template <typename Widget = QPushButton>
    Widget *field(const QString &reg, const QString &name)
    {
        auto *found = open(reg)->findChild<Widget *>(name);
        EXPECT_NE(found, nullptr) << name.toStdString();
        return found;
    }
    QString value(const QString &reg)
    {
        auto *table = find<QTableWidget>("ob_summary_table");
        return table->item(table->findItems(reg, Qt::MatchExactly).at(0)->row(), 1)->text();
    }
    /// The summary as the lines of a CSV file.
    QString summary()
    {
        QString lines;
        auto *table = find<QTableWidget>("ob_summary_table");
        for (int row = 0; row < table->rowCount(); ++row) {
            lines += table->item(row, 0)->text() + ',' + table->item(row, 1)->text() + '\n';
        }
        return lines;
    }
    /// Writes the registers to a file. @return its path
    QString generate(const QString &name)
    {
        const QString path = folder.path(name);
        find<QLineEdit>("ob_path_edit")->setText(path);
        DialogAnswers boxes({QMessageBox::Ok});
        click("ob_generate_ok");
        EXPECT_EQ(boxes.texts(), QStringList(kWritten));
        return path;
    }
    QStringList upload(const QString &path, int boxesBehind = 0)
    {
        DialogAnswers boxes({path});
        for (int i = 0; i < boxesBehind; ++i) {
            boxes.expect(QMessageBox::Ok);
        }
        click("ob_upload_open");
        return boxes.texts().mid(1);
    }

    ScratchFolder folder;
    CentralWidget form{1};
};

TEST_F(ObTabTest, EveryEntryShowsItsRegistersAndLoadsItsOwnFile)
{
    for (int index = 1; index < static_cast<int>(device::kObEntries.size()); ++index) {
        QElapsedTimer timer;
        timer.start();
        choose(index);
        EXPECT_LT(timer.elapsed(), 1500) << "far from what a user waits for";
        const device::ObEntry &entry = device::kObEntries[static_cast<std::size_t>(index)];
        SCOPED_TRACE(entry.label);
        EXPECT_TRUE(find<QPushButton>("ob_generate_ok")->isEnabled());
        EXPECT_TRUE(find<QPushButton>("ob_upload_open")->isEnabled());
        EXPECT_EQ(find<QLineEdit>("ob_path_edit")->text(),
                  QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation) +
                      entry.fileName);
        const QString first = summary();
        const QString path = generate("a.csv");
        EXPECT_EQ(ScratchFolder::contents(path), first.toStdString());
        EXPECT_EQ(upload(path), QStringList());
        EXPECT_EQ(summary(), first);
        // Only the registers of the first category are open, so only they have tables.
        for (std::size_t reg = 0; reg < editor().registers().size(); ++reg) {
            EXPECT_EQ(tree()->table(reg) != nullptr, editor().category(reg) == "Access");
        }
    }
    choose(0);
    EXPECT_EQ(tree()->findChildren<BitTable *>().size(), 0) << "a table of a device that is gone";
    EXPECT_EQ(summary(), "");
    EXPECT_EQ(tree()->topLevelItemCount(), 0);
    EXPECT_FALSE(find<QPushButton>("ob_generate_ok")->isEnabled());
    EXPECT_FALSE(find<QPushButton>("ob_upload_open")->isEnabled());
}

TEST_F(ObTabTest, WidgetsChangeTheirOwnRegister)
{
    choose(2);
    const QString main = value("WDGCFG");
    QTest::mouseClick(field("WDGSIDE", "FREESW"), Qt::LeftButton);
    EXPECT_EQ(value("WDGSIDE"), "0x07ff0006");
    EXPECT_EQ(value("WDGCFG"), main) << "another register has a field of that name";
    field<QComboBox>("ACCLVL", "LEVEL")->setCurrentText("0xcc");
    EXPECT_EQ(value("ACCLVL"), "0x000101cc");
    auto *period = field<QLineEdit>("WDGCFG", "PERIOD");
    for (const auto &[text, colour, shown] : {std::tuple{"0x1000", "color: red;", "0x0fff000f"},
                                              {"zz", "color: red;", "0x0fff000f"},
                                              {"0x1F", "color: black;", "0x001f000f"}}) {
        period->setText(text);
        EXPECT_EQ(period->styleSheet(), colour) << text;
        EXPECT_EQ(value("WDGCFG"), shown) << text;
    }
    field<QLineEdit>("WDGSIDE", "PERIOD")->setText("-");
    EXPECT_TRUE(
        tree()->findItems("WDGSIDE", Qt::MatchExactly | Qt::MatchRecursive)[0]->text(3).contains(
            "doesn't fit"));
    const auto *changes = find<QTableWidget>("ob_changes_table");
    ASSERT_EQ(changes->rowCount(), 3);
    EXPECT_TRUE(changes->item(0, 0)->text().endsWith("ACCLVL LEVEL")) << "can't be taken back";
    EXPECT_EQ(changes->item(1, 2)->text(), "0x1f");
    EXPECT_TRUE(find<QLabel>("ob_irreversible_label")->text().contains("1 of these"));
}

TEST_F(ObTabTest, BitTableShowsBothHalvesAndReservedBits)
{
    choose(8);
    const BitTable *bits = open("STAADR0");
    for (const int row : {1, 4}) {
        EXPECT_EQ(bits->item(row, 0)->text(), "ADDRESS");
        EXPECT_EQ(bits->item(row, 0)->toolTip(), bits->fieldWidget(0)->toolTip());
    }
    EXPECT_TRUE(bits->fieldWidget(0)->toolTip().contains("= 0x08000000"));
    EXPECT_EQ(bits->columnSpan(2, 0), 16);
    EXPECT_EQ(bits->columnSpan(5, 0), 9);
    EXPECT_EQ(bits->cellWidget(5, 0), nullptr) << "one widget, in the upper half";
    EXPECT_EQ(bits->item(5, 0)->text(), QString::fromUtf8("0x00100000 × 0x80 = 0x08000000"));
    EXPECT_EQ(bits->item(4, 9)->text(), "Res.");
    EXPECT_EQ(bits->item(4, 9)->background().color(), QColor(0xF4, 0xF4, 0xF4));
    const auto *reserved = qobject_cast<QPushButton *>(bits->cellWidget(5, 9));
    ASSERT_NE(reserved, nullptr);
    EXPECT_EQ(reserved->text(), "1");
    EXPECT_FALSE(reserved->isEnabled());
    EXPECT_EQ(bits->handle().buttons.at(0).name, "Reserved.");
    const QImage sheet = bits->viewport()->grab().toImage();
    for (const int row : {2, 4}) {
        const int y = bits->rowViewportPosition(row) + bits->rowHeight(row) - 1;
        EXPECT_EQ(sheet.pixelColor(sheet.width() / 4, y), QColor(0xC3, 0xCB, 0xD3))
            << "no line below the joined cells of row " << row;
    }
}

TEST_F(ObTabTest, WithoutADeviceEverySlotIsHarmless)
{
    find<QLineEdit>("ob_path_edit")->setText(folder.path("none.csv"));
    for (const int index : {0, 13}) {
        form.changeSfiobElements(index);
        EXPECT_EQ(find<QPushButton>("ob_upload_open")->isEnabled(), index == 13);
        DialogAnswers boxes({folder.file("any.csv", "ACCLVL,1\n")});
        form.uploadSFIOB();
        form.GenerateSfiOb();
        form.sfiObModifyBit();
        EXPECT_EQ(boxes.texts().mid(1), QStringList());
    }
    EXPECT_FALSE(QFile::exists(folder.path("none.csv")));
}

TEST_F(ObTabTest, ArrowsWalkSpaceFlipsEnterOpens)
{
    choose(8);
    auto *regress = field("ACCLVL", "REGRESS");
    regress->setFocus();
    QTest::keyClick(regress, Qt::Key_Space);
    EXPECT_EQ(value("ACCLVL"), "0x000001aa");
    EXPECT_EQ(regress->accessibleName(), "ACCLVL REGRESS, bit 16, value never");
    EXPECT_TRUE(find<QLabel>("ob_status_label")->text().contains("return to the open level"));
    QTest::keyClick(regress, Qt::Key_Right);  // on to the lower half
    auto *probe = field<QComboBox>("ACCLVL", "PROBE");
    EXPECT_EQ(form.focusWidget(), probe);
    QTest::keyClick(probe, Qt::Key_Right);
    EXPECT_EQ(form.focusWidget(), field("ACCLVL", "DBGSLEEP"));
    EXPECT_EQ(probe->currentText(), "0x0") << "arrows change no box";
    QTest::keyClick(probe, Qt::Key_Return);
    EXPECT_NE(QApplication::activePopupWidget(), nullptr);
    probe->hidePopup();
}

TEST_F(ObTabTest, UploadTellsEveryOutcomeInOrder)
{
    choose(8);
    field<QComboBox>("ACCLVL", "LEVEL")->setCurrentText("0x55");
    field<QComboBox>("ECCCFG", "RAMECC")->setCurrentText("0x2");
    const QString middle = generate("8.csv");
    const QString text = summary();
    choose(11);
    EXPECT_EQ(upload(middle, 1), QStringList(kReserved));
    EXPECT_EQ(value("ACCLVL"), "0x00010155");
    EXPECT_EQ(value("ECCCFG"), "0x00001000") << "the smaller device has one bit there";
    choose(10);
    EXPECT_EQ(upload(middle, 1), QStringList("Error|Error: Invalid CSV file"));
    EXPECT_EQ(value("ACCLVL"), "0x000101aa");
    const QString large = generate("10.csv");
    choose(8);
    EXPECT_EQ(upload(large, 1), QStringList(kReserved));
    const std::string odd = QString(text).replace("0x00010155", "0xff010199").toStdString();
    EXPECT_EQ(upload(folder.file("odd.csv", odd), 2),
              (QStringList{kReserved, "Warning|Warning: The file's values fit no entry of these "
                                      "fields, which keep theirs: ACCLVL LEVEL"}));
    EXPECT_EQ(upload(folder.file("bad.csv", "ACCLVL,0x0x1f\n"), 1),
              QStringList("Error|Error: Invalid value of ACCLVL"));
    ASSERT_EQ(::mkfifo(folder.path("pipe.csv").toUtf8().constData(), 0600), 0);
    EXPECT_TRUE(upload(folder.path("pipe.csv"), 1).value(0).startsWith("Error|Error: "));
    const QString before = summary();
    EXPECT_EQ(upload(""), QStringList());
    EXPECT_EQ(summary(), before);
}

TEST_F(ObTabTest, RefusedOrFailedGenerateWritesNothing)
{
    choose(2);
    auto *path = find<QLineEdit>("ob_path_edit");
    path->clear();
    field<QLineEdit>("WDGCFG", "PERIOD")->setText("");
    field<QLineEdit>("WDGSIDE", "PERIOD")->setText("0x1000");
    {
        DialogAnswers boxes({QMessageBox::Ok, QMessageBox::Ok});
        click("ob_generate_ok");
        EXPECT_EQ(boxes.texts(),
                  (QStringList{"Error|Error: Invalid value in Count from which the watchdog runs "
                               "down.",
                               "Error|Error: Invalid value in Count from which the side core's "
                               "watchdog runs down."}));
    }
    choose(3);
    path->clear();
    {
        DialogAnswers boxes({QMessageBox::Ok});
        click("ob_generate_ok");
        EXPECT_EQ(boxes.texts(), QStringList("Error|Error: No specified generation path !"));
    }
    path->setText(folder.file("old.csv", "old"));
    const FullDisk disk(8);
    for (const auto &[index, isLoud] : {std::pair{2, true}, {4, false}, {5, false}, {6, true}}) {
        choose(index);
        path->setText(folder.path("old.csv"));
        DialogAnswers boxes;
        if (isLoud) {
            boxes.expect(QMessageBox::Ok);
        }
        click("ob_generate_ok");
        EXPECT_EQ(boxes.texts(),
                  isLoud ? QStringList("Error|Error: file open failed\nold.csv: File too large")
                         : QStringList());
        EXPECT_EQ(ScratchFolder::contents(folder.path("old.csv")), "old");
        EXPECT_FALSE(find<QPushButton>("ob_useInSfi_ok")->isEnabled());
    }
}

TEST_F(ObTabTest, WrittenFileGoesToTheSfiTabsUntilAnEdit)
{
    choose(8);
    const QString path = generate("ob.csv");
    EXPECT_FALSE(find<QPushButton>("ob_show")->isHidden());
    click("ob_useInSfi_ok");
    EXPECT_EQ(find<QLineEdit>("sfi_optionBytes_edit")->text(), path);
    EXPECT_EQ(find<QLineEdit>("sfix_optionBytes_edit")->text(), path);
    form.clearForms();
    QTest::mouseClick(field("ACCLVL", "REGRESS"), Qt::LeftButton);
    EXPECT_EQ(value("ACCLVL"), "0x000001aa") << "clearing leaves the device usable";
    EXPECT_FALSE(find<QPushButton>("ob_useInSfi_ok")->isEnabled());
    EXPECT_TRUE(find<QPushButton>("ob_show")->isHidden());
    find<QTreeWidget>("ob_registers_tree")->actions()[1]->trigger();
    const QStringList lines = QApplication::clipboard()->text().split('\n');
    EXPECT_EQ(lines[0], "Register\tAddress\tValue\tChanged");
    EXPECT_EQ(lines[2].section('\t', 0, 2), "ACCLVL\t0x40050000\t0x000001aa");
    EXPECT_NE(lines[3].section('\t', 0, 0), "") << "the row of a bit table has no text";
    form.displayWB_Tabs();
    form.displaySFI_Tabs();
    EXPECT_EQ(value("ACCLVL"), "0x000001aa");
}

TEST_F(ObTabTest, PanelThatLocksTheDeviceLosesNoEdit)
{
    choose(8);
    QTest::mouseClick(field("ACCLVL", "REGRESS"), Qt::LeftButton);
    const QString path = generate("8.csv");
    form.displayH5_Tabs();
    EXPECT_EQ(value("ACCLVL"), "0x000101aa") << "another device";
    field<QComboBox>("ACCLVL", "LEVEL")->setCurrentText("0x72");
    form.displaySFI_Tabs();
    EXPECT_EQ(value("ACCLVL"), "0x000001aa");
    EXPECT_EQ(find<QLineEdit>("ob_path_edit")->text(), path);
    EXPECT_TRUE(find<QPushButton>("ob_useInSfi_ok")->isEnabled());
    QTest::mouseClick(field("ACCLVL", "REGRESS"), Qt::LeftButton);
    EXPECT_EQ(value("ACCLVL"), "0x000101aa") << "the tables look at the old device";
    choose(3);
    form.displayH5_Tabs();
    EXPECT_EQ(value("ACCLVL"), "0x00010172");
    form.displaySFI_Tabs();
    EXPECT_EQ(find<QComboBox>("ob_mcu_combo")->currentIndex(), 3);
}

TEST_F(ObTabTest, BadDeviceFilesLeaveAnEmptyTabAndTellWhy)
{
    using namespace device_xml;
    const std::pair<std::string, const char *> cases[] = {
        {"", "the file is missing"},
        {"<Root>", "not readable as XML"},
        {file(deviceXml("", "", "0x123")), "no such device"},
        {file(deviceXml(optionBytes(""), "", "0x7B1")), "no option bytes"},
        {file(deviceXml(optionBytes(bank(reg("R", "<Bit><BitWidth/></Bit>"))), "", "0x7B1")),
         "malformed"}};
    choose(8);
    for (const auto &[content, reason] : cases) {
        std::optional<DatabaseFile> onDisk;
        if (!content.empty()) {
            onDisk.emplace("0x7B1", content);
        }
        DialogAnswers boxes({QMessageBox::Ok});
        form.ParseSfiObRegs(0x7B1, 0);
        EXPECT_TRUE(boxes.texts().value(0).contains(reason))
            << boxes.texts().value(0).toStdString();
        EXPECT_TRUE(boxes.texts().value(0).contains("VDR32_Prog_DB_0x7B1.xml"));
        EXPECT_EQ(summary(), "");
        EXPECT_FALSE(find<QPushButton>("ob_generate_ok")->isEnabled());
        EXPECT_FALSE(find<QPushButton>("ob_upload_open")->isEnabled());
    }
}

TEST_F(ObTabTest, TextsOfTheDatabaseAreNoMarkupAndReadOnlyFieldsStay)
{
    using namespace device_xml;
    const DatabaseFile onDisk(
        "0x7B2", file(deviceXml(
                     optionBytes(bank(reg("R", bitXml("&lt;b&gt;A", 0, 1, "<Access>R</Access>") +
                                                   bitXml("T", 4, 4, "<Access>R</Access>") +
                                                   bitXml("PAST", 31, 2) + bitXml("NONE", 9, 0)))),
                     "", "0x7B2")));
    form.ParseSfiObRegs(0x7B2, 0);
    auto *bits = open("R");
    EXPECT_FALSE(bits->fieldWidget(0)->isEnabled());
    EXPECT_TRUE(bits->fieldWidget(0)->toolTip().contains("&lt;b&gt;A"));
    EXPECT_TRUE(qobject_cast<QLineEdit *>(bits->fieldWidget(1))->isReadOnly());
    EXPECT_EQ(bits->fieldWidget(2), nullptr);
    EXPECT_EQ(bits->fieldWidget(3), nullptr);
    EXPECT_EQ(upload(folder.file("r.csv", "R,0x000000f1\n")), QStringList());
    EXPECT_EQ(value("R"), "0x00000000");
}

TEST_F(ObTabTest, DialogForTheOutputOpensInAFolderThatExists)
{
    choose(5);
    const QString chosen = folder.path("x.csv");
    DialogAnswers boxes({chosen, QString()});
    click("ob_path_browse");
    click("ob_path_browse");
    EXPECT_EQ(find<QLineEdit>("ob_path_edit")->text(), chosen);
    EXPECT_EQ(boxes.seen().at(0).title, "Select SFI OB generation folder");
    EXPECT_EQ(boxes.seen().at(0).nameFilters, QStringList("CSV files (*.csv)"));
    EXPECT_TRUE(QDir(boxes.seen().at(0).folder).exists());
}

}  // namespace
