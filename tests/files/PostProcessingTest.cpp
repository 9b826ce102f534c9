#include "files/PostProcessing.h"
#include "files/OpenFixture.h"
#include "files/base/LittleEndian.h"
#include "files/firmware/Crc32.h"
#include "files/firmware/ElfExtension.h"
#include "report/DisplayMng.h"
#include "support/FullDisk.h"
#include "support/HexLines.h"
#include "support/LinkedElf.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>

#include <sys/stat.h>
#include <unistd.h>

namespace
{

using Bytes = std::vector<std::uint8_t>;

constexpr std::uint32_t kFlash = 0x08000000;

class PostProcessing : public OpenFixture
{
protected:
    /// Address and bytes of all segments of a file, as the program reads it.
    std::vector<std::pair<std::uint32_t, Bytes>> segments(const QString &path)
    {
        std::vector<std::pair<std::uint32_t, Bytes>> list;
        if (const auto record = open(path)) {
            for (const SegmentData &segment : static_cast<FileData &>(*record).segments) {
                list.emplace_back(segment.address,
                                  Bytes(segment.data, segment.data + segment.size));
            }
        }
        return list;
    }
    static Bytes read(const QString &path)
    {
        const std::string text = ScratchFolder::contents(path);
        return {text.begin(), text.end()};
    }
    /// What readelf says, or its complaints.
    static QString readelf(const QString &path)
    {
        QProcess process;
        process.start("readelf", {"-lSW", path});
        EXPECT_TRUE(process.waitForFinished(20000));
        const QByteArray complaints = process.readAllStandardError();
        return complaints.isEmpty() ? process.readAllStandardOutput() : complaints;
    }
    static Messages errors(const QString &text) { return {{5, "Error: " + text}}; }
    bool crc(const QString &path, std::uint32_t start, std::uint32_t end, std::uint32_t slice)
    {
        log.take();
        return manager.MultipleCRC(path.toStdWString(), start, end, slice, 0);
    }
};

Bytes sumsOf(const Bytes &firmware, std::size_t slice)
{
    Bytes table;
    for (std::size_t at = 0; at < firmware.size(); at += slice) {
        Bytes part(firmware.begin() + static_cast<std::ptrdiff_t>(at),
                   firmware.begin() +
                       static_cast<std::ptrdiff_t>(std::min(at + slice, firmware.size())));
        files::appendU32le(table, CRC32(part.data(), static_cast<unsigned>(part.size())));
    }
    return table;
}

Bytes filled(std::size_t size, std::uint8_t value, const Bytes &front)
{
    Bytes bytes = front;
    bytes.resize(size, value);
    return bytes;
}

std::string hexOf(std::uint32_t address, const Bytes &bytes)
{
    const auto low = [address](std::size_t at) {
        return static_cast<unsigned>((address + at) & 0xFFFF);
    };
    std::string text = intelLine(
        4, 0, {static_cast<std::uint8_t>(address >> 24), static_cast<std::uint8_t>(address >> 16)});
    for (std::size_t at = 0; at < bytes.size(); at += 16) {
        const auto from = bytes.begin() + static_cast<std::ptrdiff_t>(at);
        text += intelLine(0, low(at),
                          Bytes(from, from + static_cast<std::ptrdiff_t>(
                                                 std::min<std::size_t>(16, bytes.size() - at))));
    }
    return text;
}

const std::string kHexEnd = ":00000001FF\n";

}  // namespace

TEST(Crc32, IsTheOneOfIeee8023)
{
    const std::pair<std::string, unsigned> cases[] = {
        {"123456789", 0xCBF43926}, {"", 0}, {std::string(1, '\0'), 0xD202EF8D}};
    for (const auto &[text, sum] : cases) {
        Bytes bytes(text.begin(), text.end());
        EXPECT_EQ(CRC32(bytes.data(), static_cast<unsigned>(bytes.size())), sum);
    }
}

TEST_F(PostProcessing, TableOfSumsStandsAtTheTopOfTheRange)
{
    const Bytes firmware = patternBytes(1000);
    const Bytes sums = sumsOf(firmware, 256);
    ASSERT_EQ(sums.size(), 16U);
    const Bytes table = filled(64, 0xFF, sums);
    const QString bin = folder.file("a.bin", firmware);
    EXPECT_TRUE(crc(bin, kFlash, kFlash + 0x1000, 256));
    EXPECT_EQ(log.all(),
              (Messages{{2, "CRC Tool v1.0\n"},
                        {4, "Warning: The file a.bin already exists, it will be overwritten"},
                        {2, "CRCs area injected successfully"}}));
    Bytes whole = filled(0x1000 - 64, 0xFF, firmware);
    whole.insert(whole.end(), table.begin(), table.end());
    EXPECT_EQ(read(bin), whole);

    // Text files keep what lies outside, also behind the range.
    const Bytes ram = patternBytes(8, 3);
    const std::string text = hexOf(0x20000000, ram) + hexOf(kFlash, firmware) + kHexEnd;
    for (const char *name : {"a.hex", "a.srec"}) {
        const QString path = folder.file(name, text);
        EXPECT_TRUE(crc(path, kFlash, kFlash + 0x1000, 256));
        EXPECT_EQ(segments(path),
                  (std::vector<std::pair<std::uint32_t, Bytes>>{
                      {kFlash, firmware}, {kFlash + 0xFC0, table}, {0x20000000, ram}}))
            << name;
    }
}

TEST_F(PostProcessing, SegmentsAreSummedInWordsEachAtItsOwnSlices)
{
    const Bytes odd = patternBytes(257);
    const Bytes last = patternBytes(12, 5);
    const QString path =
        folder.file("a.hex", hexOf(kFlash + 0x100, odd) + hexOf(kFlash + 0x600, last) + kHexEnd);
    EXPECT_TRUE(crc(path, kFlash, kFlash + 0x1000, 256));
    Bytes table = filled(4, 0xFF, {});
    const Bytes first = sumsOf(filled(260, 0, odd), 256);
    table.insert(table.end(), first.begin(), first.end());
    table.resize(24, 0xFF);
    const Bytes second = sumsOf(last, 256);
    table.insert(table.end(), second.begin(), second.end());
    EXPECT_EQ(segments(path).back(), (std::pair{kFlash + 0xFC0, filled(64, 0xFF, table)}));
    EXPECT_EQ(segments(path).front().second, filled(260, 0, odd));
}

TEST_F(PostProcessing, SumsAreRefusedOrSkippedByRangeAndSlice)
{
    const std::string hex = hexOf(kFlash + 0x100, patternBytes(64)) +
                            hexOf(kFlash + 0x1F80, patternBytes(128)) + kHexEnd;
    struct Case {
        std::uint32_t start, end, slice;
        bool isDone;
        Message message;
    };
    const Message nothing = {4, "Warning: No segments located in the specified range, firmware "
                                "file not modified"};
    const Case cases[] = {
        {kFlash,
         kFlash + 0x100,
         0x200,
         false,
         {5, "Error: The slice size is larger than the flash size"}},
        {kFlash, kFlash + 0x100, 0x30, false, {5, "Error: The slice size is invalid"}},
        {kFlash, kFlash + 0x100, 0, false, {5, "Error: The slice size is invalid"}},
        {kFlash,
         kFlash + 0x1000,
         0x200,
         false,
         {5, "Error: The segment 1 of 2 does not start at the beginning of a flash slice"}},
        {kFlash,
         kFlash + 0x180,
         0x10,
         false,
         {5, "Error: The segment 1 of 2 reaches into the CRCs area"}},
        {kFlash, kFlash + 0x1000, 2, false, {5, "Error: The CRCs area is larger than the flash"}},
        {kFlash + 0x1000, kFlash + 0x2000, 0x100, true, nothing},  // ends with the range
        {kFlash + 0x101, kFlash + 0x1101, 0x100, true, nothing},
        {0xFFFFFF00, 0, 0x100, true, nothing}};
    const QString path = folder.file("a.hex", hex);
    for (const Case &c : cases) {
        EXPECT_EQ(crc(path, c.start, c.end, c.slice), c.isDone) << c.message.text.toStdString();
        EXPECT_EQ(log.all().back(), c.message);
        EXPECT_TRUE(ScratchFolder::contents(path) == hex) << "the file has changed";
    }
    EXPECT_FALSE(crc(folder.file("a.tsv", "x"), kFlash, kFlash + 0x1000, 0x100));
    EXPECT_FALSE(crc(folder.file("a.csv", "1,2\n"), kFlash, kFlash + 0x1000, 0x100));
    EXPECT_EQ(log.all().back(), (Message{5, "Error: Wrong file format"}));
}

TEST_F(PostProcessing, FailedWriterLeavesTheFirmwareAndSaysNoSuccess)
{
    const Bytes firmware = patternBytes(1000);
    const QString path = folder.file("a.bin", firmware);
    const FullDisk disk(2000);
    EXPECT_FALSE(crc(path, kFlash, kFlash + 0x1000, 256));
    EXPECT_EQ(log.all().back(), (Message{5, "Error: Error occured while writing in the file"}));
    EXPECT_EQ(read(path), firmware);
}

TEST_F(PostProcessing, ReadOnlyFileEndsTheProcess)
{
    const QString path = folder.file("a.bin", patternBytes(1000));
    ASSERT_EQ(::chmod(path.toUtf8().constData(), 0444), 0);
    ASSERT_EQ(::chmod(QFileInfo(path).path().toUtf8().constData(), 0755), 0);
    const auto run = [&] {
        // Nothing is read-only to the superuser.
        if (::getuid() == 0 && ::setuid(65534) != 0) {
            std::_Exit(1);
        }
        DisplayMng::getInstance().displayCallback = [](int level, const wchar_t *text) {
            std::fprintf(stderr, "%d|%ls\n", level, text);
        };
        manager.MultipleCRC(path.toStdWString(), kFlash, kFlash + 0x1000, 256, 0);
    };
    EXPECT_EXIT(run(), ::testing::ExitedWithCode(254), "5.Error:  File is Read Only");
}

TEST_F(PostProcessing, AdditionIsASectionWithALoadableSegment)
{
    const QString path = folder.file("a.elf", linkedFirmware().bytes());
    const QByteArray data("new data");
    ASSERT_TRUE(AddSegToElf(path, data, 0x08002000, "Extra", 0));
    EXPECT_EQ(log.all(), Messages());
    const QString told = readelf(path);
    EXPECT_TRUE(told.contains(" Extra ")) << told.toStdString();
    EXPECT_TRUE(told.contains("0x08002000 0x08002000 0x00008 0x00008 R   0x4"));
    // The gap of two bytes stays, and initial data is filled up to a word.
    const auto loads = files::loadsOf(read(path));
    ASSERT_TRUE(loads);
    EXPECT_EQ(loads->at(0).p_offset, 52U);
    EXPECT_EQ(loads->at(1).p_offset, 52U + 256 + 2);
    EXPECT_EQ(std::pair(loads->at(1).p_filesz, loads->at(1).p_memsz), std::pair(32U, 96U));
    EXPECT_EQ(loads->at(2).p_offset, loads->at(1).p_offset + 32);
    EXPECT_EQ(segments(path), (std::vector<std::pair<std::uint32_t, Bytes>>{
                                  {0x08000000, patternBytes(256)},
                                  {0x08000200, filled(32, 0, patternBytes(30, 7))},
                                  {0x08001000, patternBytes(100, 9)},
                                  {0x08002000, Bytes(data.begin(), data.end())}}));
}

TEST_F(PostProcessing, RepeatedAdditionsTakeNoMoreThanTheyAdd)
{
    const QString path = folder.file("a.elf", linkedFirmware().bytes());
    for (unsigned i = 0; i < 5; ++i) {
        const auto before = QFileInfo(path).size();
        ASSERT_TRUE(AddSegToElf(path, QByteArray(10, 'x'), 0x08002000 + 0x100 * i, "Extra", 0));
        // An entry of each table, name, data, and fill of name and of an odd segment.
        EXPECT_LE(QFileInfo(path).size() - before, 40 + 32 + 5 + 10 + 4 + 3) << i;
    }
    EXPECT_EQ(segments(path).size(), 8U);
    EXPECT_FALSE(readelf(path).contains("readelf:"));
}

TEST_F(PostProcessing, WhatAnAdditionWouldLoseIsRefused)
{
    const Bytes code = patternBytes(64);
    const Bytes more = patternBytes(32, 4);
    struct Case {
        const char *what;
        LinkedElf elf;
        const char *segment;  ///< empty when nothing is lost
        std::uint32_t address = 0x08002000;
        std::uint8_t padding = 0;
    };
    const Case cases[] = {
        {"touching sections",
         {{{".a", kFlash, code}, {".b", kFlash + 64, more}}, {{0, 2, kFlash}}},
         ""},
        {"other bytes in a hole",
         {{{".a", kFlash, code}, {".b", kFlash + 72, more, 1, 8}}, {{0, 2, kFlash}}},
         "1 at 0x08000000"},
        {"over the head",
         {{{".a", kFlash + 84, code}}, {{0, 1, kFlash, 1, true}}},
         "1 at 0x08000000"},
        {"behind memory without bytes",
         {{{".bss", 0x20000000, {}, 8, 0, 64},
           {".a", kFlash, code},
           {".bss2", 0x20000100, {}, 8, 0, 8},
           {".b", kFlash + 0x100, more, 1, 8}},
          {{1, 1, kFlash}, {3, 1, kFlash + 0x100}}},
         "2 at 0x08000100"},
        {"at address 0", {{{".a", 0, code}}, {{0, 1, 0}}}, ""},
        {"two sections from address 0",
         {{{".a", 0, code}, {".b", 64, more}}, {{0, 2, 0}}},
         "1 at 0x00000000"},
        {"address of another section",
         {{{".a", kFlash, code}}, {{0, 1, 0x1000}}},
         "2 at 0x08000000",
         kFlash},
        {"odd end without a section that ends there",
         {{{".a", kFlash, patternBytes(13)}, {".b", kFlash + 16, patternBytes(5), 1, 3}},
          {{0, 2, kFlash}}},
         "1 at 0x08000000"},
        {"an odd end that stays, behind a hole of padding",
         {{{".a", kFlash, patternBytes(13)}, {".b", kFlash + 16, patternBytes(5), 1, 3}},
          {{0, 2, kFlash}}},
         "",
         0x08002000,
         0xA5},
        {"a null section with an address",
         {{{".a", kFlash, code}, {".n", kFlash + 0x1000, {}, 0, 8}}, {{0, 1, kFlash}}},
         ""},
        {"only memory",
         {{{".a", kFlash, code}, {".bss", 0x20000000, {}, 8, 0, 64}},
          {{0, 1, kFlash}, {1, 1, 0x20000000}}},
         ""}};
    for (const Case &c : cases) {
        SCOPED_TRACE(c.what);
        const Bytes before = c.elf.bytes();
        const QString path = folder.file("a.elf", before);
        const bool isLost = *c.segment != '\0';
        log.take();
        EXPECT_EQ(AddSegToElf(path, QByteArray("1234"), c.address, "New", c.padding), !isLost);
        EXPECT_EQ(log.take(),
                  isLost ? errors(QString("Adding \"New\" would lose bytes of the segment ") +
                                  c.segment + ", the ELF file stays as it was")
                         : Messages());
        EXPECT_EQ(read(path) == before, isLost);
    }
}

TEST_F(PostProcessing, OnAFullDiskTheOldFileStays)
{
    const Bytes elf = linkedFirmware().bytes();
    const std::string hex = hexOf(kFlash, patternBytes(64)) + kHexEnd;
    const QString elfPath = folder.file("a.elf", elf);
    const QString hexPath = folder.file("a.hex", hex);
    {
        const FullDisk disk(40);
        EXPECT_FALSE(AddSegToElf(elfPath, QByteArray("1234"), 0x08002000, "New", 0));
        EXPECT_FALSE(crc(elfPath, kFlash, kFlash + 0x10000, 0x200));
        EXPECT_FALSE(crc(hexPath, kFlash, kFlash + 0x1000, 0x100));
    }
    EXPECT_EQ(read(elfPath), elf);
    EXPECT_EQ(ScratchFolder::contents(hexPath), hex);
    EXPECT_EQ(QDir(folder.path("")).entryList(QDir::Files).size(), 2);
}

TEST_F(PostProcessing, MalformedElfIsNotOpened)
{
    const Bytes good = linkedFirmware().bytes();
    const auto forge = [&good](std::size_t at, std::uint32_t value, int width) {
        Bytes bytes = good;
        for (int i = 0; i < width; ++i) {
            bytes.at(at + static_cast<std::size_t>(i)) =
                static_cast<std::uint8_t>(value >> (8 * i));
        }
        return bytes;
    };
    const std::uint32_t table = good[32] + 256U * good[33];
    const Bytes cases[] = {{},
                           Bytes(good.begin(), good.begin() + 51),
                           Bytes(good.begin(), good.end() - 1),
                           forge(4, 2, 1),            // 64 bits
                           forge(5, 2, 1),            // another byte order
                           forge(28, 0xFFFFFFF0, 4),  // program headers outside
                           forge(32, 0xFFFFFFF0, 4),  // sections outside
                           forge(40, 51, 2),  // head, program header, section of another size
                           forge(42, 31, 2),
                           forge(46, 41, 2),
                           forge(44, 0xFFFF, 2),
                           forge(48, 0xFFFF, 2),
                           forge(50, 0, 2),  // no name table
                           forge(50, 7, 2),
                           forge(50, 3, 2),               // one without bytes
                           forge(52 + 4, 0xFFFFFFFF, 4),  // a segment's bytes
                           forge(52 + 16, 0x10000000, 4),
                           forge(table + 40 + 16, 0xFFFFFF00, 4),  // a section's
                           forge(table + 40 + 20, 0x10000000, 4)};
    for (const Bytes &bytes : cases) {
        const QString path = folder.file("a.elf", bytes);
        EXPECT_FALSE(AddSegToElf(path, "1234", 0x08002000, "New", 0));
        EXPECT_EQ(log.take(), errors("Unable to open the file"));
        EXPECT_EQ(read(path), bytes);
    }
    EXPECT_FALSE(AddSegToElf(folder.path("none.elf"), "1234", 0, "New", 0));
    EXPECT_EQ(log.take(), errors("Unable to open the file"));
    const QString path = folder.file("a.elf", good);
    EXPECT_FALSE(AddSegToElf(path, "1234", 0xFFFFFFFE, "New", 0));
    EXPECT_EQ(log.take(), errors("\"New\" runs past the end of the address space"));
    const FullDisk disk(64);
    EXPECT_FALSE(AddSegToElf(path, "1234", 0x08002000, "New", 0));
    EXPECT_EQ(log.take(), errors("Unable to overwrite the file"));
    EXPECT_EQ(read(path), good);
}

TEST_F(PostProcessing, ElfGetsItsSumsAsASection)
{
    const QString path = folder.file("a.elf", linkedFirmware().bytes());
    EXPECT_TRUE(crc(path, kFlash, kFlash + 0x2000, 0x200));
    EXPECT_EQ(log.all(), (Messages{{2, "CRC Tool v1.0\n"},
                                   {4, "Warning: The ELF file will be overwritten"},
                                   {2, "CRCs area injected successfully"}}));
    EXPECT_TRUE(readelf(path).contains(" CRCs area "));
    Bytes table = sumsOf(patternBytes(256), 0x200);
    const Bytes data = sumsOf(filled(32, 0, patternBytes(30, 7)), 0x200);
    table.insert(table.end(), data.begin(), data.end());
    table.resize(32, 0xFF);
    const Bytes app = sumsOf(patternBytes(100, 9), 0x200);
    table.insert(table.end(), app.begin(), app.end());
    EXPECT_EQ(segments(path).back(), (std::pair{kFlash + 0x2000 - 64, filled(64, 0xFF, table)}));
}

class Merge : public PostProcessing
{
protected:
    bool merge(const QString &userElf, const QString &headerBin, const QString &secureElf)
    {
        log.take();
        return manager.SBUPDAddToUserAppli(userElf.toStdWString(), headerBin.toStdWString(),
                                           secureElf.toStdWString());
    }
    LinkedElf secureBoot()
    {
        return {{{".boot", 0x08004000, patternBytes(40)}, {".keys", 0x08005000, patternBytes(8)}},
                {{0, 1, 0x08004000}, {1, 1, 0x08005000}}};
    }
    QString user = folder.file("user.elf", linkedFirmware().bytes());
    QString secure = folder.file("secure.elf", secureBoot().bytes());
    QString header = folder.file("header.bin", Bytes(16, 0xAB));
};

TEST_F(Merge, SecureBootAndHeaderGoIntoTheApplication)
{
    EXPECT_TRUE(merge(user, header, secure));
    EXPECT_EQ(log.all(), (Messages{{4, "Warning: The ELF file will be overwritten"},
                                   {2, "ELF file modified successfully"}}));
    const QString told = readelf(user);
    for (const char *name : {" SBUPD0 ", " SBUPD1 ", " Header "}) {
        EXPECT_TRUE(told.contains(name)) << told.toStdString();
    }
    const auto all = segments(user);
    ASSERT_EQ(all.size(), 5U) << "header and second segment touch";
    EXPECT_EQ(all[1].first, 0x08000200U - 16);
    EXPECT_EQ(Bytes(all[1].second.begin(), all[1].second.begin() + 16), Bytes(16, 0xAB));
    EXPECT_EQ(all[3], (std::pair<std::uint32_t, Bytes>{0x08004000, patternBytes(40)}));
    EXPECT_EQ(all[4], (std::pair<std::uint32_t, Bytes>{0x08005000, patternBytes(8)}));
}

TEST_F(Merge, RefusalsLeaveTheApplicationAsItWas)
{
    const QString hex = folder.file("a.hex", hexOf(kFlash, {1, 2}) + kHexEnd);
    LinkedElf single = linkedFirmware();
    single.segments.resize(1);
    const QString one = folder.file("one.elf", single.bytes());
    LinkedElf meeting = secureBoot();
    meeting.segments[1].physical = 0x080000FF;
    // The last of its segments has the address of the user's data in RAM.
    LinkedElf late = secureBoot();
    late.segments[1].physical = 0x20000000;
    LinkedElf many = secureBoot();
    many.segments.clear();
    for (std::uint32_t i = 0; i < 513; ++i) {
        many.segments.push_back({0, 1, 0x10000000 + 0x10000 * i});
    }
    struct Case {
        QString user, header, secure;
        QString message;
    };
    const Case cases[] = {
        {hex, header, secure, hex + " is not an elf file"},
        {user, header, hex, hex + " is not an elf file"},
        {user, hex, secure, user + " is not a bin file"},
        {user, header, folder.file("meeting.elf", meeting.bytes()),
         "Overlap between the two ELF files"},
        {one, header, secure, one + " has one segment, the header goes ahead of a second one"},
        {user, header, folder.file("late.elf", late.bytes()),
         "Adding \"SBUPD1\" would lose bytes of the segment 5 at 0x20000000, the ELF file stays as "
         "it was"},
        {user, header, folder.file("many.elf", many.bytes()),
         folder.path("many.elf") + " has more than 512 segments"},
        {user, folder.file("empty.bin", Bytes()), secure, "The file empty.bin is empty"},
        {user, folder.path("none.bin"), secure,
         "The file none.bin does not exist, please check the file's path"}};
    for (const Case &c : cases) {
        const Bytes before = read(c.user);
        EXPECT_FALSE(merge(c.user, c.header, c.secure));
        EXPECT_EQ(log.all(), errors(c.message));
        EXPECT_EQ(read(c.user), before);
    }
}

class SpbElf : public PostProcessing
{
protected:
    int run(const QStringList &arguments)
    {
        QProcess process;
        process.start(QStringLiteral(SPB_ELF), arguments);
        EXPECT_TRUE(process.waitForFinished(20000));
        out = process.readAllStandardOutput();
        err = process.readAllStandardError();
        return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    }
    QString out;
    QString err;
};

TEST_F(SpbElf, DryRunShowsWhatTheOtherRunWrites)
{
    const Bytes before = linkedFirmware().bytes();
    const QString path = folder.file("a.elf", before);
    const QString data = folder.file("d.bin", patternBytes(12));
    QStringList add = {"add-segment", "--data", data,        "--address", "0x08002000",
                       "--name",      "X",      "--dry-run", path};
    EXPECT_EQ(run(add), 0);
    EXPECT_EQ(err, "");
    EXPECT_EQ(read(path), before);
    const QString table = out;
    EXPECT_TRUE(table.startsWith("Segment  Address     Bytes  Change\n"
                                 "1        0x08000000  256    stays\n"
                                 "2        0x08000200  32     grows by 2 of padding\n"
                                 "3        0x08001000  100    stays\n"
                                 "4        0x08002000  12     added as X\n"))
        << table.toStdString();
    add.removeOne("--dry-run");
    EXPECT_EQ(run(add), 0);
    EXPECT_TRUE(table.contains(QString("File                 %1 ").arg(QFileInfo(path).size())));
    EXPECT_EQ(
        run({"merge-secure", path, "--header", folder.file("h.bin", Bytes(8, 1)), "--secure",
             folder.file(
                 "s.elf",
                 LinkedElf{{{".s", 0x08004000, {1, 2, 3, 4}}}, {{0, 1, 0x08004000}}}.bytes())}),
        0);
    EXPECT_EQ(segments(path).size(), 5U);

    const QString hex = folder.file("a.hex", hexOf(kFlash, patternBytes(300)) + kHexEnd);
    const QStringList crc = {"crc",        hex,       "--flash-start", "0x08000000", "--flash-end",
                             "0x08001000", "--slice", "256",           "--dry-run"};
    EXPECT_EQ(run(crc), 0);
    EXPECT_EQ(out, "Segment  Address     Bytes  Change\n"
                   "1        0x08000000  300    stays, 2 sums at 0x08000FC0\n"
                   "2        0x08000FC0  64     added as CRCs area\n");
    EXPECT_EQ(run(crc.mid(0, crc.size() - 1)), 0);
    EXPECT_TRUE(err.endsWith("spb-elf: CRCs area injected successfully\n")) << err.toStdString();
    EXPECT_EQ(segments(hex).size(), 2U);
    EXPECT_EQ(run(crc), 2) << "the table of the first run is in the way";
    const QString bin = folder.file("a.bin", patternBytes(1001));
    EXPECT_EQ(run(crc.mid(0, 1) + QStringList{bin} + crc.mid(2)), 0);
    EXPECT_EQ(out, "Segment  Address     Bytes  Change\n"
                   "1        0x08000000  1004   grows by 3 zeros, 4 sums at 0x08000FC0\n"
                   "2        0x08000FC0  64     added as CRCs area\n"
                   "File                 4096   from 1001\n");
}

TEST_F(SpbElf, ExitStatusTellsWhoseFaultItIs)
{
    const QString path = folder.file("a.elf", linkedFirmware().bytes());
    const QString data = folder.file("d.bin", "1234");
    const QString empty = folder.file("e.bin", "");
    const QStringList add = {"add-segment", path, "--name", "X", "--data", data};
    const std::pair<QStringList, int> cases[] = {
        {{}, 3},
        {{"grow", path}, 3},
        {{"crc"}, 3},
        {{"crc", path, path}, 3},
        {add, 3},
        {add + QStringList{"--address", "1", "--slice", "4"}, 3},
        {add + QStringList{"--address", "1", "--padding", "256"}, 3},
        {add + QStringList{"--address", "x"}, 3},
        {add + QStringList{"--address", "0x08001000"}, 2},
        {add + QStringList{"--address", "0xFFFFFFFF"}, 2},
        {{"add-segment", data, "--name", "X", "--data", data, "--address", "1"}, 1},
        {{"add-segment", path, "--name", "X", "--data", empty, "--address", "1"}, 1},
        {{"add-segment", path, "--name", "X", "--data", folder.path("none"), "--address", "1"}, 1},
        {{"merge-secure", path, "--header", data, "--secure", path}, 2},
        {{"merge-secure", path, "--header", data, "--secure", data}, 1},
        {{"crc", path, "--flash-start", "0", "--flash-end", "9", "--slice", "2"}, 2},
        {{"crc", path, "--flash-start", "0", "--flash-end", "8", "--slice", "2"}, 0},
        {{"--help"}, 0}};
    // Only the first odd segment is filled up in the file; a device would sum the bytes that are
    // there.
    const LinkedElf twoOdd = {
        {{".a", kFlash, patternBytes(13)}, {".b", kFlash + 256, patternBytes(7)}},
        {{0, 1, kFlash}, {1, 1, kFlash + 256}}};
    const QStringList crc = {"crc",           folder.file("odd.elf", twoOdd.bytes()),
                             "--flash-start", "0x08000000",
                             "--flash-end",   "0x08001000",
                             "--slice",       "256"};
    EXPECT_EQ(run(crc), 2);
    EXPECT_EQ(err,
              "spb-elf: the segment 2 at 0x08000100 ends inside a word, and the file wouldn't hold "
              "the 1 zero that its sum counts: align the end of its section\n");
    EXPECT_TRUE(read(crc.at(1)) == twoOdd.bytes());
    EXPECT_EQ(run({"crc", path, "--flash-start", "8", "--flash-end", "0", "--slice", "4"}), 3);
    // A segment at address 0 takes the size of its first section with contents.
    const LinkedElf atZero = {{{".a", 0, patternBytes(64)}, {".bss", 64, {}, 8, 0, 128}},
                              {{0, 2, 0}}};
    EXPECT_EQ(run({"add-segment", folder.file("zero.elf", atZero.bytes()), "--name", "X", "--data",
                   data, "--address", "0x08002000"}),
              2);
    EXPECT_TRUE(err.endsWith("would have 64 bytes in memory instead of 192\n"))
        << err.toStdString();
    // Initial data is loaded right behind code that isn't a whole number of words.
    LinkedElf tight = linkedFirmware();
    tight.sections[0].bytes.resize(253);
    tight.segments[1].physical = kFlash + 253;
    const QString odd = folder.file("odd.elf", tight.bytes());
    EXPECT_EQ(run({"add-segment", odd, "--name", "X", "--data", data, "--address", "0x08002000"}),
              2);
    EXPECT_EQ(err,
              "spb-elf: the segment 1, filled up to a word, at 0x08000000 would share addresses "
              "with the segment 2 at 0x080000FD\n");
    EXPECT_TRUE(read(odd) == tight.bytes());
    const Bytes before = read(path);
    for (const auto &[arguments, status] : cases) {
        EXPECT_EQ(run(arguments), status) << arguments.join(' ').toStdString();
        EXPECT_EQ(err.isEmpty(), arguments == QStringList("--help"));
        EXPECT_EQ(out.isEmpty(), arguments != QStringList("--help"));
        EXPECT_EQ(read(path), before);
    }
}
