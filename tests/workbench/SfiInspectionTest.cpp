#include "workbench/tabs/sfi/SfiInspection.h"
#include "support/QtPrinters.h"
#include "workbench/widgets/Contrast.h"

#include <gtest/gtest.h>

using namespace workbench;

namespace
{

SegmentSFI area(char type, std::uint32_t size, std::uint32_t address)
{
    SegmentSFI made;
    made.areaType = static_cast<std::uint8_t>(type);
    made.size = size;
    made.address = address;
    return made;
}

QStringList joined(const std::vector<DetailRow> &rows)
{
    QStringList lines;
    for (const DetailRow &row : rows) {
        lines << row.cells.join('|');
    }
    return lines;
}

TEST(ImageTable, NamesEveryAreaAndItsSize)
{
    FileSFI image;
    std::uint32_t address = 0x8000000;
    for (const char type : {'O', 'C', 'M', 'm', 'F', 'K', 'E', 'P', 'R', 'S', 'A', 'H', 'x'}) {
        image.areas.push_back(area(type, 1023, address++));
    }
    image.areas[1].size = 1024;
    image.areas[2].size = 1500000;
    const PaneContents pane = describeImage("/a/b.sfi", 1023, image, "2");
    EXPECT_EQ(pane.overview.values, (QStringList{"b.sfi", "1023 Bytes", "2"}));
    EXPECT_EQ(
        joined(pane.details.rows),
        (QStringList{"1|OBkey|1023 B|0x8000000", "2|Configuration|1 KB|0x8000001",
                     "3|Module|1.43 MB|0x8000002", "4|Module|1023 B|0x8000003",
                     "5|Firmware|1023 B|0x8000004", "6|Key|1023 B|0x8000005",
                     "7|External|1023 B|0x8000006", "8|Pause|1023 B|0x8000007",
                     "9|Resume|1023 B|0x8000008", "10|SSFI|1023 B|0x8000009",
                     "11|A|1023 B|0x800000a", "12|H|1023 B|0x800000b", "13|-|1023 B|0x800000c"}));
}

// White on white was the trap: a row has two colours that can be read, or the desktop's own pair.
// White on the maker's blue is told.
TEST(ImageTable, RowsAreLegible)
{
    FileSFI image;
    for (int type = 0; type < 256; ++type) {
        image.areas.push_back(area(static_cast<char>(type), 1, 0));
    }
    for (const DetailRow &row : describeImage("b.sfi", 1, image, "1").details.rows) {
        if (row.colours && row.cells.at(1) != "Firmware") {
            EXPECT_GE(contrast(row.colours->text, row.colours->background), kLegible)
                << row.cells.join('|').toStdString();
        }
    }
}

TEST(FirmwareTable, AddsUpSizesBeyond32Bits)
{
    FileData record;
    record.type = file_type::kSRecord;
    record.segments = {{0x10, 0xFFFFFFFF, nullptr}, {0xFFFFFFF0, 0xFFFFFFFF, nullptr}};
    record.segmentCount = 2;
    const PaneContents pane = describeFirmware("/x/f.srec", record);
    EXPECT_EQ(pane.overview.values, (QStringList{"f.srec", "8.19e+03 MB", "S-Record"}));
    EXPECT_EQ(joined(pane.details.rows),
              (QStringList{"1|0x10|4.1e+03 MB", "2|0xfffffff0|4.1e+03 MB"}));
    record.type = file_type::kSmi;
    EXPECT_EQ(describeFirmware("f", record).overview.values[2], "Not supported");
}

TEST(FirmwareTable, ProvisioningFileShowsItsOwnHead)
{
    FileOBK record;
    record.type = file_type::kObk;
    record.segments = {{0, 32, nullptr}};
    record.obkAddress = 0xFFD0100;
    record.obkSize = 4096;
    const PaneContents pane = describeFirmware("k.obk", record);
    EXPECT_EQ(pane.overview.values, (QStringList{"k.obk", "32 B", "OBK"}));
    EXPECT_EQ(joined(pane.details.rows), (QStringList{"1|0xffd0100|4096"}));
}

TEST(ExternalTable, InventsNothingForAFileWithoutRegion)
{
    const FileData record;
    const ExtBinInfo info{1, 2, 3, 0xAB};
    EXPECT_EQ(describeExternal("e", record, &info).overview.values.mid(3),
              (QStringList{"0xab", "3", "2"}));
    const Overview unknown = describeExternal("e", record, nullptr).overview;
    EXPECT_EQ(unknown.names.size(), 6);
    EXPECT_EQ(unknown.values.size(), 3);
}

TEST(ModulesTable, LicenceFieldsDecideTypeAndColours)
{
    std::uint8_t identifier[] = {'F', 'W', '1'};
    FileMCSV list;
    list.type = file_type::kMcsv;
    list.modules.resize(3);
    list.moduleCount = 3;
    list.modules[1].licenceSize = 5;
    list.modules[1].licenceIsFile = 1;
    list.modules[2].hsmFwId = identifier;
    list.modules[2].hsmFwIdSize = 3;
    list.modules[2].moduleSize = 2048;
    list.modules[2].address = 0x80;
    const PaneContents pane = describeModules("/l/m.mcsv", 0x100000, list);
    EXPECT_EQ(pane.overview.values, (QStringList{"m.mcsv", "1 MB", "3"}));
    EXPECT_EQ(joined(pane.details.rows),
              (QStringList{"1|No license|0 B|0x0|-", "2|Global license|0 B|0x0|-",
                           "3|HSM|2 KB|0x80|FW1"}));
    EXPECT_EQ(pane.details.rows[1].colours->background, QColor(60, 167, 219));
    EXPECT_EQ(pane.details.rows[2].colours->text, QColor(0, 0, 0));
    EXPECT_EQ(pane.details.rows[2].colours->background, QColor(255, 232, 127));
}

}  // namespace
