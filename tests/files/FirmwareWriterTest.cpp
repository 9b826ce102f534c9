#include "files/firmware/FirmwareWriter.h"
#include "files/OpenFixture.h"
#include "files/SegmentBuilder.h"
#include "files/firmware/OutputBuffer.h"
#include "report/DisplayMng.h"
#include "support/FullDisk.h"
#include "support/HexLines.h"
#include "support/PlainWriters.h"

#include <algorithm>

namespace
{

using Bytes = std::vector<std::uint8_t>;

class FirmwareWriter : public OpenFixture
{
protected:
    std::string hex(const PlainImage &image)
    {
        EXPECT_TRUE(manager.SaveHexFile(recordOf(image).get(), wide("a.hex")));
        return ScratchFolder::contents(folder.path("a.hex"));
    }
    std::string srec(const PlainImage &image)
    {
        EXPECT_TRUE(manager.SaveSrecFile(recordOf(image).get(), wide("a.srec")));
        return ScratchFolder::contents(folder.path("a.srec"));
    }
    [[nodiscard]] std::wstring wide(const QString &name) const
    {
        return folder.path(name).toStdWString();
    }
    PlainImage readBack(const QString &name)
    {
        const auto record = open(folder.path(name));
        return record ? piecesOf(static_cast<const FileData &>(*record)) : PlainImage();
    }
};

TEST(OutputBuffer, AFailedWriteIsTheLastAndIsRemembered)
{
    int calls = 0;
    files::OutputBuffer buffer([&calls](auto) { return ++calls > 1; });
    buffer.fill(1 << 20, 0xFF);
    EXPECT_FALSE(buffer.flush());
    EXPECT_EQ(calls, 1);
}

TEST_F(FirmwareWriter, BinaryFillsHolesAndStartsAtTheFirstAddress)
{
    manager.paddingByte = 0xA5;
    const auto lent = recordOf({{0x100, {1, 2}}, {0x104, {3}}, {0x105, {}}, {0x106, {4}}});
    EXPECT_EQ(manager.SaveFile(lent.get(), wide("a.bin")), 7);
    EXPECT_EQ(ScratchFolder::contents(folder.path("a.bin")), "\1\2\xA5\xA5\3\xA5\4");
    // Memory without bytes in the file, as `.bss` is, spans nothing, wherever it stands.
    const auto hollow =
        recordOf({{0, {}}, {0x8000000, {1}}, {0x8000002, {2}}, {0x20000000, {}}, {0x90000000, {}}});
    EXPECT_EQ(manager.SaveFile(hollow.get(), wide("hollow.bin")), 3);
    EXPECT_EQ(ScratchFolder::contents(folder.path("hollow.bin")), "\1\xA5\2");
    const auto none = recordOf({});
    EXPECT_EQ(manager.SaveFile(none.get(), wide("none.bin")), 0);
    EXPECT_EQ(ScratchFolder::contents(folder.path("none.bin")), "");
    EXPECT_TRUE(log.all().empty());
}

TEST_F(FirmwareWriter, BinaryLimitLooksAtStartsOnly)
{
    // The widest image passes the rule; half a gigabyte then meets a full disk.
    const auto most = recordOf({{0x10, {1}}, {0x2000000F, {2, 3}}});
    {
        const FullDisk disk(100000);
        EXPECT_EQ(manager.SaveFile(most.get(), wide("most.bin")), -1);
    }
    EXPECT_EQ(log.take(), (Messages{{5, "Error: Error occured while writing in the file"}}));
    EXPECT_FALSE(QFile::exists(folder.path("most.bin")));
    folder.file("old.bin", "old");
    const auto over = recordOf({{0x10, {1}}, {0x20000010, {2}}});
    EXPECT_EQ(manager.SaveFile(over.get(), wide("old.bin")), -1);
    EXPECT_EQ(log.take(),
              (Messages{{4, "Warning: The file old.bin already exists, it will be overwritten"},
                        {5, "Error: Segments are widely spaced. Unable to create a binary file"}}));
    EXPECT_EQ(ScratchFolder::contents(folder.path("old.bin")), "old");
}

TEST_F(FirmwareWriter, ModulesAreWrittenWithoutTheirLicences)
{
    Bytes first = {1, 2};
    Bytes second = {3};
    FileMCSV list;
    list.moduleCount = 2;
    list.modules.resize(2);
    list.modules[0].address = 8;
    list.modules[0].module = first.data();
    list.modules[0].moduleSize = 2;
    list.modules[0].licence = second.data();
    list.modules[0].licenceSize = 1;
    list.modules[1].address = 11;
    list.modules[1].module = second.data();
    list.modules[1].moduleSize = 1;
    EXPECT_EQ(manager.SaveFileModule(&list, wide("m.bin")), 4);
    EXPECT_EQ(ScratchFolder::contents(folder.path("m.bin")), "\1\2\xFF\3");
}

TEST_F(FirmwareWriter, HexFillsItsLastBlockWithEmptyRecords)
{
    const std::string text = hex({{0, Bytes(40, 0)}});
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 257);
    EXPECT_EQ(text.substr(0, 76), ":20000000" + std::string(64, '0') + "E0\n");
    EXPECT_EQ(text.substr(text.size() - 24), ":00002800D8\n:00000001FF\n");
    EXPECT_EQ(hex({{0x08000000, {0}}}).substr(0, 30), ":020000040800F2\n:0100000000FF\n");
    EXPECT_EQ(hex({}), "");
    EXPECT_EQ(hex({{5, {}}}), ":00000001FF\n");
}

TEST_F(FirmwareWriter, SRecordKindFollowsTheHighestByte)
{
    EXPECT_EQ(srec({{0xFFFE, {0xAB, 0}}}), "S105fffeAB0052\nS9030000FC\n");
    EXPECT_EQ(srec({{0xFFFF, {0xAB, 0}}}), "S20600ffffAB0050\nS804000000FB\n");
    EXPECT_EQ(srec({{0xFFFFFF, {0xAB, 0}}}), "S30700ffffffAB0050\nS70500000000FA\n");
    EXPECT_EQ(srec({{1, {7}}, {0x8000000, {}}}), "S104000107F3\nS9030000FC\n");
    EXPECT_EQ(srec({{0x8000000, {}}}), "S9030000FC\n");
}

TEST_F(FirmwareWriter, WhatIsWrittenReadsBackAndAgreesWithThePlainWriters)
{
    struct Case {
        std::uint32_t start;
        std::size_t size;
    };
    const Case cases[] = {
        {0, 1},           {0xFFE0, 32},      {0xFFE5, 70},      {0xFFFF, 9000}, {0x1FFC0, 64},
        {0xE000, 0x2001}, {0x7FFFE3, 16500}, {0xFFFFFF00, 256}, {0, 0x20000},   {0x12345, 0x11000},
    };
    for (const Case &one : cases) {
        PlainImage image = {{one.start, patternBytes(one.size)}};
        if (one.start < 0x80000000) {
            image.push_back({static_cast<std::uint32_t>(one.start + one.size + 32), {1, 2, 3}});
        }
        ASSERT_EQ(hex(image), plainIntelText(image)) << one.start;
        EXPECT_EQ(readBack("a.hex"), image) << one.start;
        ASSERT_EQ(srec(image), plainSRecordText(image)) << one.start;
        EXPECT_EQ(readBack("a.srec"), image) << one.start;
    }
}

TEST_F(FirmwareWriter, SegmentBeyondTheAddressSpaceIsLeftOutAloud)
{
    EXPECT_EQ(srec({{4, {7}}, {0xFFFFFFFF, {1, 2}}}), "S104000407F0\nS9030000FC\n");
    EXPECT_EQ(log.take(), (Messages{{4, "Warning: The segment at 0xFFFFFFFF runs past the end of "
                                        "the address space, it is left out"}}));
}

TEST_F(FirmwareWriter, TargetThatCannotBeMadeIsNamedInTwoWays)
{
    const auto lent = recordOf({{0, {1}}});
    const QString path = folder.path("no/such/a.hex");
    EXPECT_EQ(manager.SaveFile(lent.get(), path.toStdWString()), -1);
    EXPECT_FALSE(manager.SaveHexFile(lent.get(), path.toStdWString()));
    EXPECT_FALSE(manager.SaveSrecFile(lent.get(), path.toStdWString()));
    EXPECT_EQ(log.take(), (Messages{{5, "Error: Unable to create the file a.hex"},
                                    {5, "Error: Unable to create the file " + path},
                                    {5, "Error: Unable to create the file " + path}}));
}

TEST_F(FirmwareWriter, FailedWriteIsReportedAndTheOldFileStays)
{
    for (const char *name : {"a.bin", "a.hex", "a.srec"}) {
        folder.file(name, "old");
    }
    const auto lent = recordOf({{0, Bytes(400000, 1)}});
    {
        const FullDisk disk(100000);
        EXPECT_EQ(manager.SaveFile(lent.get(), wide("a.bin")), -1);
        EXPECT_FALSE(manager.SaveHexFile(lent.get(), wide("a.hex")));
        EXPECT_FALSE(manager.SaveSrecFile(lent.get(), wide("a.srec")));
    }
    const Message fault = {5, "Error: Error occured while writing in the file"};
    const Messages seen = log.take();
    ASSERT_EQ(seen.size(), 6U);
    EXPECT_EQ(std::count(seen.begin(), seen.end(), fault), 3);
    for (const char *name : {"a.bin", "a.hex", "a.srec"}) {
        EXPECT_EQ(ScratchFolder::contents(folder.path(name)), "old");
    }
}

TEST_F(FirmwareWriter, RecordWritersTakeAnOpenFile)
{
    Bytes data = {0x11, 0x22, 0x33};
    QFile file(folder.path("x"));
    ASSERT_TRUE(file.open(QIODevice::ReadWrite | QIODevice::Unbuffered));
    EXPECT_EQ(put_rec(data.data(), 1, 0x12FFF0, 2, &file), 0);
    EXPECT_EQ(MotorolaSave32(&file, data.data(), 0xFF, 0x100, 0x10000), 1);
    EXPECT_EQ(MotorolaSave32(&file, data.data(), 2, 1, 0), 1);
    EXPECT_EQ(IntelSave(&file, data.data(), 2, 1), 1);
    EXPECT_EQ(ScratchFolder::contents(file.fileName()), ":02FFF0002233BA\nS2060000ff1122C7\n");
    EXPECT_EQ(checksum(data.data(), 3), 0x66U);
    EXPECT_EQ(IntelSave(&file, data.data(), 2, 2), 1);
    EXPECT_NE(ScratchFolder::contents(file.fileName()).find("\n:0100020011EC\n"),
              std::string::npos);

    const FullDisk disk(static_cast<rlim_t>(file.size()));
    EXPECT_EQ(IntelSave(&file, data.data(), 0, 2), 1);
    EXPECT_FALSE(file.isOpen());
}

}  // namespace
