#include "workbench/widgets/MemoryMap.h"
#include "files/FileManager.h"
#include "support/QtPrinters.h"
#include "workbench/tabs/sfi/SfiInspection.h"
#include "workbench/widgets/InfoPane.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTableWidget>
#include <QTest>

#include <gtest/gtest.h>

#include <random>
#include <set>

using namespace workbench;

namespace
{

struct Block {
    int group;
    std::uint32_t address;
    std::uint32_t size;
};

/// Files "a", "b", ... as they stand in a list.
MapContents filesOf(const std::vector<Block> &blocks, bool merges = true)
{
    MapContents contents;
    contents.blockWord = "segment";
    contents.mergesGroups = merges;
    for (const Block &block : blocks) {
        while (static_cast<int>(contents.groups.size()) <= block.group) {
            contents.groups.push_back(
                {QString(QChar('a' + static_cast<int>(contents.groups.size()))), {}});
        }
        int number = 1;
        for (const MapBlock &other : contents.blocks) {
            number += other.group == block.group ? 1 : 0;
        }
        contents.blocks.push_back({block.address, block.size, block.group, number, -1});
    }
    return contents;
}

double widthOf(const MapPicture &picture, int place)
{
    return picture.places[static_cast<std::size_t>(place)].right -
           picture.places[static_cast<std::size_t>(place)].left;
}

TEST(MapLayout, BlocksAreToScaleGapsAreCutAndAllFillTheWidth)
{
    // 48 KiB, a small gap, 16 KiB, a long gap, 16 bytes.
    const auto picture = layoutMap(
        filesOf({{0, 0x20000000, 16}, {0, 0x8000000, 0xC000}, {0, 0x800C800, 0x4000}}), 500, 1);
    EXPECT_EQ(picture.order, (std::vector<int>{1, 2, 0}));
    EXPECT_NEAR(widthOf(picture, 0) / widthOf(picture, 1), 3, 0.01);
    EXPECT_GE(widthOf(picture, 2), 3) << "a small block vanished";
    EXPECT_NEAR(picture.places[1].left - picture.places[0].right, widthOf(picture, 0) / 24, 0.1);
    ASSERT_EQ(picture.breaks.size(), 1u) << "only the long gap is cut";
    EXPECT_NEAR(picture.places[2].left - picture.places[1].right, 24, 2);
    EXPECT_DOUBLE_EQ(picture.places[0].left, 0);
    EXPECT_NEAR(picture.places[2].right, 500, 1e-6);
}

struct MarkCase {
    const char *name;
    std::vector<Block> blocks;
    QStringList marks;
};
class MapMarks : public ::testing::TestWithParam<MarkCase>
{
};
TEST_P(MapMarks, AreThoseOfTheMerge)
{
    const MapContents contents = filesOf(GetParam().blocks);
    const MapPicture picture = layoutMap(contents, 600, 1);
    QStringList marks;
    for (const MapMark &mark : picture.marks) {
        marks << describeMark(contents, picture, mark);
    }
    EXPECT_EQ(marks, GetParam().marks);
}
const QString kRefused = "Overlap between segments, Unable to merge files: ";
INSTANTIATE_TEST_SUITE_P(
    Pairs, MapMarks,
    ::testing::Values(
        MarkCase{"Gap31",
                 {{0, 0, 100}, {1, 131, 9}},
                 {"Close segments: 31 B between a, segment 1 and b, segment 1"}},
        MarkCase{"Gap32", {{0, 0, 100}, {1, 132, 9}}, {}},
        MarkCase{"NoGap",
                 {{1, 100, 9}, {0, 0, 100}},
                 {"Close segments: 0 B between a, segment 1 and b, segment 1"}},
        MarkCase{"InsideOneFile", {{0, 0, 100}, {0, 50, 100}, {0, 160, 1}}, {}},
        MarkCase{"OneByte",
                 {{0, 0, 100}, {1, 99, 9}},
                 {kRefused + "a, segment 1 and b, segment 1, 0x63 to 0x63, 1 B"}},
        MarkCase{"ThroughASmallerOne",
                 {{0, 0, 1000}, {0, 10, 5}, {1, 500, 9}},
                 {kRefused + "a, segment 1 and b, segment 1, 0x1f4 to 0x1fc, 9 B"}},
        MarkCase{"EmptyInside",
                 {{0, 0, 100}, {1, 50, 0}},
                 {kRefused + "a, segment 1 and b, segment 1, 0x32, 0 B"}},
        MarkCase{"SameEndPasses",
                 {{0, 0, 100}, {1, 50, 50}},
                 {"Overlap between segments: a, segment 1 and b, segment 1, 0x32 to 0x63, 50 B"}},
        MarkCase{"SameEndInTheOtherOrder",
                 {{1, 0, 100}, {0, 50, 50}},
                 {kRefused + "b, segment 1 and a, segment 1, 0x32 to 0x63, 50 B"}},
        MarkCase{"OwnNeighbourBetween",
                 {{0, 0, 100}, {1, 100, 10}, {1, 112, 4}},
                 {"Close segments: 0 B between a, segment 1 and b, segment 1"}},
        MarkCase{"LastByteOfTheSpace",
                 {{0, 0xFFFFFF00, 0xFF}, {1, 0xFFFFFFFE, 1}},
                 {"Overlap between segments: a, segment 1 and b, segment 1, 0xfffffffe to "
                  "0xfffffffe, 1 B"}}),
    [](const auto &row) { return row.param.name; });

// Whatever the merge refuses is marked as refused, and nothing else.
TEST(MapLayout, MarksAgreeWithTheMergeOverManyLists)
{
    std::mt19937 engine(7);
    const auto random = [&engine] { return static_cast<std::uint32_t>(engine()); };
    int refused = 0;
    for (int round = 0; round < 3000; ++round) {
        std::vector<FileData> records(3);
        std::vector<Block> blocks;
        std::vector<FileData *> list;
        for (int file = 0; file < 3; ++file) {
            FileData &record = records[static_cast<std::size_t>(file)];
            std::uint32_t at = random() % 40;
            for (std::uint32_t count = random() % 3; count > 0; --count) {
                const std::uint32_t size = random() % 20;
                record.segments.push_back({at, size, nullptr});
                blocks.push_back({file, at, size});
                at += size + 32 + random() % 20;
            }
            record.segmentCount = static_cast<std::uint32_t>(record.segments.size());
            list.push_back(&record);
        }
        FileData *merged = nullptr;
        const bool merges = FileManager().MergeFiles(list, &merged);
        delete merged;
        const auto picture = layoutMap(filesOf(blocks), 600, 1);
        const bool isMarked =
            std::any_of(picture.marks.begin(), picture.marks.end(),
                        [](const MapMark &mark) { return mark.kind == MapMark::Kind::Overlap; });
        ASSERT_EQ(isMarked, !merges) << "round " << round;
        refused += merges ? 0 : 1;
    }
    EXPECT_GT(refused, 500);
    EXPECT_LT(refused, 2500);
}

TEST(MapLayout, BlocksThatShareAddressesGetLanes)
{
    const auto picture =
        layoutMap(filesOf({{0, 0, 100}, {1, 50, 100}, {2, 120, 100}, {0, 500, 10}}), 600, 1);
    QStringList lanes;
    for (const MapPlace &place : picture.places) {
        lanes << QString("%1/%2").arg(place.lane).arg(place.lanes);
    }
    EXPECT_EQ(lanes, (QStringList{"0/2", "1/2", "0/2", "0/1"}));
    const double x = (picture.places[1].left + picture.places[0].right) / 2;
    EXPECT_EQ(picture.placeAt(x, 0.2), 0);
    EXPECT_EQ(picture.placeAt(x, 0.9), 1);
    EXPECT_EQ(picture.placeAt((picture.places[2].right + picture.places[3].left) / 2, 0.5), -1);
}

TEST(MapLayout, LabelsNeverTouchAndTheChosenBlockHasItsOwn)
{
    std::vector<Block> blocks;
    for (std::uint32_t at = 0; at < 300; ++at) {
        blocks.push_back({0, 0x8000000 + at * 64, 32});
    }
    const MapContents contents = filesOf(blocks);
    const auto picture = layoutMap(contents, 600, 1);
    const auto textWidth = [](const QString &text) { return 7.0 * text.size(); };
    auto labels = labelMap(contents, picture, 600, 150, textWidth);
    ASSERT_FALSE(labels.empty());
    EXPECT_EQ(labels.front().text, "0x8002580");
    EXPECT_TRUE(labels.front().isFirst);
    std::sort(labels.begin(), labels.end(), [](const MapLabel &a, const MapLabel &b) {
        return std::pair(a.isEnd, a.left) < std::pair(b.isEnd, b.left);
    });
    EXPECT_EQ(labels.front().text, "0x8000000");
    EXPECT_EQ(labels.back().text, "0x8004adf");
    for (std::size_t at = 0; at < labels.size(); ++at) {
        const double right = labels[at].left + textWidth(labels[at].text);
        EXPECT_LE(right, 600);
        if (at + 1 < labels.size() && labels[at + 1].isEnd == labels[at].isEnd) {
            EXPECT_LT(right, labels[at + 1].left);
        }
    }
}

/// The largest image, in blocks that lie apart, back to back, or over one another.
MapContents manyAreas(std::uint32_t step)
{
    MapContents contents;
    contents.groups = {{"Firmware", {}}, {"External", {}}, {"Pause", {}}};
    contents.blockWord = "area";
    for (int at = 0; at < 65535; ++at) {
        contents.blocks.push_back(
            {0x8000000 + static_cast<std::uint32_t>(at) * step, 512, at / 5 % 3, at + 1, at});
    }
    return contents;
}

TEST(MapLayout, SixtyFiveThousandAreasBecomeAFewPieces)
{
    for (const std::uint32_t step : {512u, 1024u, 100u}) {
        const auto picture = layoutMap(manyAreas(step), 600, 0.5);
        EXPECT_LE(picture.pieces.size(), 4 * 1200u) << step;
        EXPECT_GE(picture.pieces.size(), 100u) << step;
        double covered = 0;
        for (const MapPiece &piece : picture.pieces) {
            covered = std::max(covered, piece.right);
        }
        EXPECT_NEAR(covered, 600, 1) << step;
    }
}

class MapInPane : public ::testing::Test
{
protected:
    MapInPane()
    {
        pane.resize(640, 560);
        pane.show();
        FileSFI image;
        for (std::uint32_t at = 0; at < 6; ++at) {
            SegmentSFI area;
            area.areaType = at == 3 ? 'P' : 'F';
            area.address = 0x8000000 + at * 0x1000;
            area.size = 0x800;
            image.areas.push_back(area);
        }
        pane.QWidget::show();
        pane.show(describeImage("/a/b.sfi", 10, image, "1"));
        QApplication::setActiveWindow(&pane);
        QCoreApplication::processEvents();
    }
    int selectedRow()
    {
        const auto ranges = table->selectedRanges();
        return ranges.isEmpty() ? -1 : ranges.first().topRow();
    }

    InfoPane pane{"x", "Image", emptyImagePane(), nullptr};
    MemoryMap *map = pane.map();
    QTableWidget *table = pane.findChild<QTableWidget *>("x_segments");
};

TEST_F(MapInPane, SelectedRowIsTheChosenBlock)
{
    table->selectRow(4);
    EXPECT_EQ(map->selectedBlock(), 4);
    EXPECT_EQ(map->words(), "Firmware, area 5: 0x8004000 to 0x80047ff, 2 KB");
    EXPECT_TRUE(map->accessibleDescription().startsWith(map->words()));
    table->clearSelection();
    EXPECT_EQ(map->selectedBlock(), -1);
}

TEST_F(MapInPane, ChosenBlockIsTheSelectedRow)
{
    map->setFocus();
    QTest::keyClick(map, Qt::Key_End);
    EXPECT_EQ(selectedRow(), 5);
    QTest::keyClick(map, Qt::Key_Right);
    EXPECT_EQ(selectedRow(), 5);
    QTest::keyClick(map, Qt::Key_Left);
    EXPECT_EQ(selectedRow(), 4);
    QTest::keyClick(map, Qt::Key_Home);
    EXPECT_EQ(selectedRow(), 0);
    // The fourth of six equal blocks lies right of the middle.
    QTest::mouseClick(map, Qt::LeftButton, {}, QPoint(map->width() * 65 / 110, map->height() / 3));
    EXPECT_EQ(selectedRow(), 3);
    EXPECT_TRUE(map->words().startsWith("Pause, area 4: ")) << map->words().toStdString();
}

TEST_F(MapInPane, NothingOfAnEarlierFileRemains)
{
    table->selectRow(1);
    pane.clearContents();
    EXPECT_TRUE(map->isHidden());
    EXPECT_EQ(map->selectedBlock(), -1);
    QTest::keyClick(map, Qt::Key_Right);
    QTest::keyClick(map, Qt::Key_Return);
    QTest::mouseClick(map, Qt::LeftButton);
}

TEST(MemoryMapPane, RowsTellOfTheirOverlaps)
{
    InfoPane pane("x", "Firmware information", emptyFirmwarePane(), nullptr);
    FileData record;
    record.segments = {{0x1000, 16, nullptr}, {0x2000, 16, nullptr}};
    record.segmentCount = 2;
    PaneContents contents = describeFirmware("/p/b", record);
    contents.map = filesOf({{0, 0x1008, 100}, {1, 0x1000, 16}, {1, 0x2000, 16}});
    contents.map.blocks[1].row = 0;
    contents.map.blocks[2].row = 1;
    pane.show(contents);
    const auto *table = pane.findChild<QTableWidget *>("x_segments");
    const QString words = kRefused + "b, segment 1 and a, segment 1, 0x1008 to 0x100f, 8 B";
    EXPECT_EQ(table->item(0, 0)->toolTip(), words);
    EXPECT_EQ(table->item(0, 2)->data(Qt::AccessibleDescriptionRole).toString(), words);
    EXPECT_EQ(table->item(1, 0)->toolTip(), "");
}

// With other files of the list in the map, a click on one asks for it.
TEST(MemoryMapPane, BlockOfAnotherFileIsAskedFor)
{
    MemoryMap map("x_map", "Firmware information", nullptr);
    map.resize(600, 200);
    MapContents contents = filesOf({{0, 0x1000, 16}, {1, 0x2000, 16}, {1, 0x3000, 16}});
    contents.blocks[0].row = 0;
    map.setContents(contents);
    QSignalSpy rows(&map, &MemoryMap::rowChosen);
    QSignalSpy groups(&map, &MemoryMap::groupChosen);
    QTest::keyClick(&map, Qt::Key_End);
    EXPECT_EQ(rows.takeFirst().first().toInt(), -1);
    EXPECT_TRUE(groups.isEmpty());
    QTest::keyClick(&map, Qt::Key_Return);
    ASSERT_EQ(groups.size(), 1);
    EXPECT_EQ(groups.takeFirst(), (QList<QVariant>{1, 2}));
    QTest::mouseClick(&map, Qt::LeftButton, {}, QPoint(map.width() / 2, map.height() / 4));
    ASSERT_EQ(groups.size(), 1);
    EXPECT_EQ(groups.first(), (QList<QVariant>{1, 1}));
    map.setContents(filesOf({{0, 0x1000, 16}}));
    EXPECT_EQ(map.selectedBlock(), -1) << "the block of another picture";
}

// Groups can be told apart without colour.
TEST(MemoryMapPane, ColourAndPatternTogetherAreUniqueForManyFiles)
{
    std::vector<Block> blocks;
    for (int group = 0; group < 60; ++group) {
        blocks.push_back({group, static_cast<std::uint32_t>(group) * 64, 8});
    }
    const MapContents contents = filesOf(blocks);
    std::set<std::pair<QRgb, int>> looks;
    for (int group = 0; group < 60; ++group) {
        looks.insert({mapColour(contents, group, QPalette(), false).rgb(), mapPattern(group)});
        EXPECT_NE(mapPattern(group), mapPattern(group + 1));
    }
    EXPECT_EQ(looks.size(), 60u);
}

}  // namespace
