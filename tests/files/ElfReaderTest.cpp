#include "files/firmware/ElfReader.h"
#include "files/OpenFixture.h"
#include "files/firmware/ElfLabels.h"
#include "support/ElfBytes.h"
#include "support/HexLines.h"

#include <algorithm>

namespace
{

using Bytes = std::vector<std::uint8_t>;

// Where fields stand in a 32-bit little-endian file.
constexpr std::size_t kSectionTableOffset = 32;
constexpr std::size_t kHeadSize = 40;
constexpr std::size_t kSegmentEntrySize = 42;
constexpr std::size_t kSegmentCount = 44;
constexpr std::size_t kSectionEntrySize = 46;
constexpr std::size_t kSectionCount = 48;
constexpr std::size_t kNameTable = 50;
constexpr std::size_t kFirstSegment = 52;

class ElfReader : public OpenFixture
{
protected:
    auto open(const Bytes &bytes) { return openAs<FileELF>("a.elf", bytes); }

    /// The position of field `field` (0 name, 16 offset, 20 size, 24 link, 36 entry size) of a
    /// section in the table.
    static std::size_t sectionField(const Bytes &bytes, std::size_t section, std::size_t field)
    {
        const std::size_t table = bytes[kSectionTableOffset] +
                                  bytes[kSectionTableOffset + 1] * std::size_t{256} +
                                  bytes[kSectionTableOffset + 2] * std::size_t{65536};
        return table + section * 40 + field;
    }

    [[nodiscard]] Message invalid() const
    {
        return {5, "Error: " + folder.path("a.elf") + " is an invalid ELF file"};
    }
};

Bytes dataOf(const SegmentData &segment)
{
    return {segment.data, segment.data + segment.size};
}

TEST_F(ElfReader, SegmentsStandSortedAtTheirPhysicalAddresses)
{
    auto elf = open(elfBytes(usualElf()));
    ASSERT_NE(elf, nullptr);
    ASSERT_EQ(elf->segmentCount, 2U);
    EXPECT_EQ(elf->segments[0].address, 0x8000000U);
    EXPECT_EQ(dataOf(elf->segments[0]), patternBytes(48, 2));
    EXPECT_EQ(elf->segments[1].address, 0x8000100U);
    EXPECT_EQ(dataOf(elf->segments[1]), patternBytes(64));
    EXPECT_EQ(elf->programHeaderCount, 3);
    EXPECT_EQ(elf->programHeaders[0].virtualAddress, 0x20000000U);
    EXPECT_EQ(elf->programHeaders[0].memorySize, 80U);
    EXPECT_EQ(elf->entry, 0x8000101U);
    EXPECT_EQ(elf->flags, 0x5000000U);
    EXPECT_EQ(std::pair(elf->osAbi, elf->abiVersion), std::pair(std::uint8_t{3}, std::uint8_t{4}));
    EXPECT_TRUE(log.all().empty());
}

TEST_F(ElfReader, TablesKeepNamesLinksAndSigns)
{
    auto elf = open(elfBytes(usualElf()));
    ASSERT_NE(elf, nullptr);
    ASSERT_EQ(elf->sectionCount, 8);
    EXPECT_EQ(elf->sections[2].name, ".bss");
    EXPECT_EQ(elf->sections[7].name, ".shstrtab");
    EXPECT_EQ(elf->sections[1].sectionFlags, 6U);
    EXPECT_EQ(elf->sections[1].fileOffset, 52U + 3 * 32 + 64 + 48 + 4);
    ASSERT_EQ(elf->symbolTable.size(), 4U);
    EXPECT_EQ(elf->symbolTable[1].name, "main");
    EXPECT_EQ(elf->symbolTable[2].name, "data_start");
    EXPECT_EQ(elf->symbolTable[2].bind, 1);
    EXPECT_EQ(elf->symbolTable[2].symbolType, 1);
    EXPECT_EQ(elf->symbolTable[3].name, "") << "a name outside the table";
    EXPECT_EQ(elf->symbolTable[3].sectionIndex, 0xFFF1);
    ASSERT_EQ(elf->relocationTable.size(), 1U);
    EXPECT_EQ(elf->relocationTable[0].addend, -4);
    EXPECT_EQ(elf->relocationTable[0].symbolIndex, 2U);
    EXPECT_EQ(elf->relocationTable[0].relocationType, 1U);
    ASSERT_EQ(elf->noteTable.size(), 2U);
    EXPECT_EQ(elf->noteTable[0].name, "GNU");
    EXPECT_NE(elf->noteTable[0].descriptor, nullptr);
    EXPECT_EQ(elf->noteTable[1].descriptor, nullptr);

    ElfPlan plan;
    plan.segments = {{1, 0x10, {1}}};
    plan.sections = {{".note", 7, Bytes(8) + Bytes{5, 0, 0, 0}}};
    elf = open(elfBytes(plan));
    ASSERT_TRUE(elf != nullptr && elf->noteTable.size() == 1) << "a note that is a head alone";
    EXPECT_EQ(elf->noteTable[0].noteType, 5U);
}

TEST_F(ElfReader, BigEndianFileIsReadButForRawSectionOffsets)
{
    ElfPlan plan;
    plan.isBigEndian = true;
    plan.segments = {{1, 0x1234, {1, 2}}};
    plan.sections = {{".symtab", 2, symbolBytes(0, 0x11223344, 1, 0x12, 3, true), 0, 16}};
    auto elf = open(elfBytes(plan));
    ASSERT_NE(elf, nullptr);
    EXPECT_EQ(elf->segments[0].address, 0x1234U);
    EXPECT_EQ(elf->sections[1].fileOffset, (52U + 32 + 2) << 24);
    EXPECT_EQ(elf->symbolTable[0].value, 0x11223344U);
    EXPECT_EQ(elf->symbolTable[0].sectionIndex, 3);
}

TEST_F(ElfReader, NeighboursJoinAndEmptySegmentsCount)
{
    ElfPlan plan;
    plan.segments = {{1, 0x10, {1}}, {1, 0x1B, {2}}};
    auto elf = open(elfBytes(plan));
    ASSERT_NE(elf, nullptr);
    EXPECT_EQ(dataOf(elf->segments.at(0)), Bytes({1}) + Bytes(10, 0xEE) + Bytes({2}));

    // Read as one block, unless an overlap leaves it to the order of joining which bytes win.
    plan.segments = {{1, 0, Bytes(12, 1)}, {1, 4, {2}}, {1, 8, {3}}, {1, 20, {4}}};
    elf = open(elfBytes(plan));
    ASSERT_NE(elf, nullptr);
    EXPECT_EQ(dataOf(elf->segments.at(0)), Bytes(4, 1) + Bytes{2} + Bytes(3, 1) + Bytes{3} +
                                               Bytes(3, 1) + Bytes(8, 0xEE) + Bytes{4});
    log.take();

    plan.segments = {{1, 0x10, {}}};
    // An offset outside the file doesn't matter where there are no bytes.
    elf = open(forged(elfBytes(plan), kFirstSegment + 4, 0xFFFFFFFF, 4));
    ASSERT_NE(elf, nullptr);
    EXPECT_EQ(elf->segmentCount, 1U);

    plan.segments = {{1, 0x10, {1, 2}}, {1, 0x11, {3}}};
    ASSERT_NE(open(elfBytes(plan)), nullptr);
    EXPECT_EQ(log.take(), (Messages{{4, "Warning: File corrupted. Two or more segments defines the "
                                        "same memory zone"}}));
}

TEST_F(ElfReader, BadHeadsAndProgramHeadersAreRefused)
{
    const Bytes good = elfBytes(usualElf());
    ElfPlan bare;
    bare.sections = {{".text", 1, {1}}};
    ElfPlan noteOnly;
    noteOnly.segments = {{4, 0x10, {1}}};
    const Bytes refused[] = {
        Bytes(good.begin(), good.begin() + 15),
        Bytes(good.begin(), good.begin() + 51),
        forged(good, 0, 0x7E, 1),
        forged(good, 4, 3, 1),
        forged(good, 5, 0, 1),
        forged(good, 6, 2, 1),
        forged(good, kHeadSize, 64, 2),
        forged(good, kSegmentEntrySize, 40, 2),
        forged(good, kSegmentCount, 0xFFFF, 2),
        forged(good, kFirstSegment + 4, good.size() - 63, 4),
        forged(good, kFirstSegment + 4, 0xFFFFFFF0, 4),
        forged(good, kFirstSegment + 64 + 16, 0x7FFFFFFF, 4),  // not even a PT_LOAD
        elfBytes(bare),
        elfBytes(noteOnly),
    };
    for (const Bytes &bytes : refused) {
        EXPECT_EQ(open(bytes), nullptr) << "case " << &bytes - refused;
        EXPECT_EQ(log.take(), Messages{invalid()}) << "case " << &bytes - refused;
    }
}

TEST_F(ElfReader, SixtyFourBitsAreNamedOnlyOnceTheFileLoads)
{
    ElfPlan plan = usualElf();
    plan.is64 = true;
    const Bytes good = elfBytes(plan);
    EXPECT_EQ(open(good), nullptr);
    EXPECT_EQ(log.take(), (Messages{{5, "Error: 64-bit ELF files are not supported"}}));
    EXPECT_EQ(open(Bytes(good.begin(), good.begin() + 63)), nullptr);
    EXPECT_EQ(log.take(), Messages{invalid()});
}

TEST_F(ElfReader, BadSectionsOnlyCostTheirOwnContents)
{
    const Bytes good = elfBytes(usualElf());
    const auto countsAfter = [this](const Bytes &bytes) {
        auto elf = open(bytes);
        return elf == nullptr
                   ? std::vector<std::size_t>{}
                   : std::vector<std::size_t>{elf->sectionCount, elf->symbolTable.size(),
                                              elf->relocationTable.size(), elf->noteTable.size()};
    };
    using Counts = std::vector<std::size_t>;
    EXPECT_EQ(countsAfter(forged(good, kSectionEntrySize, 64, 2)), (Counts{0, 0, 0, 0}));
    EXPECT_EQ(countsAfter(forged(good, kSectionTableOffset, 0xFFFFFFFF, 4)), (Counts{0, 0, 0, 0}));
    EXPECT_EQ(countsAfter(forged(good, kSectionCount, 0xFFFF, 2)), (Counts{8, 4, 1, 2}));
    EXPECT_EQ(countsAfter(forged(good, sectionField(good, 3, 20), 0xFFFFFFF0, 4)),
              (Counts{8, 0, 1, 2}));
    EXPECT_EQ(countsAfter(forged(good, sectionField(good, 3, 36), 15, 4)), (Counts{8, 0, 1, 2}));
    EXPECT_EQ(countsAfter(forged(good, sectionField(good, 3, 36), 64, 4)), (Counts{8, 1, 1, 2}));
    EXPECT_EQ(countsAfter(forged(good, sectionField(good, 5, 36), 11, 4)), (Counts{8, 4, 0, 2}));
    EXPECT_EQ(countsAfter(forged(good, sectionField(good, 5, 36), 0, 4)), (Counts{8, 4, 0, 2}));
    EXPECT_EQ(countsAfter(forged(good, sectionField(good, 6, 20), 35, 4)), (Counts{8, 4, 1, 1}));
    EXPECT_EQ(countsAfter(forged(good, sectionField(good, 6, 20), 11, 4)), (Counts{8, 4, 1, 0}));
    EXPECT_TRUE(log.all().empty());

    auto elf = open(forged(good, sectionField(good, 3, 24), 0x80000000, 4));
    ASSERT_NE(elf, nullptr);
    EXPECT_EQ(elf->symbolTable[1].name, "") << "a link to no section";
    elf = open(forged(good, sectionField(good, 4, 20), 12, 4));
    ASSERT_NE(elf, nullptr);
    EXPECT_EQ(elf->symbolTable[2].name, "data_s") << "a name that runs out";
    EXPECT_EQ(elf->sections[1].name, ".text");
}

TEST_F(ElfReader, SectionIsCopiedOutOfEveryKindOfFile)
{
    for (const bool is64 : {false, true}) {
        ElfPlan plan;
        plan.is64 = is64;
        plan.isBigEndian = is64;
        plan.sections = {{"a", 1, {1, 2}},
                         {"b", 8, {}, 0, 0, 0, 3},
                         {"a", 1, {3}},
                         {"huge", 8, {}, 0, 0, 0, 0x20000000}};
        const std::string path = folder.file("a.o", elfBytes(plan)).toStdString();
        std::uint8_t *data = nullptr;
        ASSERT_EQ(manager.GetDataFromSection(path, "a", &data), 2);
        EXPECT_EQ(Bytes(data, data + 2), (Bytes{1, 2}));
        std::free(data);
        ASSERT_EQ(manager.GetDataFromSection(path, "b", &data), 3);
        EXPECT_EQ(Bytes(data, data + 3), Bytes(3, 0));
        std::free(data);
        EXPECT_TRUE(log.take().empty());
        EXPECT_EQ(manager.GetDataFromSection(path, "huge", &data), 0);
        EXPECT_EQ(manager.GetDataFromSection(path, "A", &data), -1);
        EXPECT_EQ(log.take(), (Messages{{5, "Error: Unable to allocate memory"},
                                        {5, "Error: A does not name a section in this file"}}));
    }
    const std::string other = folder.file("x", std::string_view("no ELF")).toStdString();
    std::uint8_t *data = nullptr;
    EXPECT_EQ(manager.GetDataFromSection(other, "a", &data), -1);
    EXPECT_EQ(log.take()[0].text.toStdString(), "Error: " + other + " is not a valid ELF file");
}

/// Sections and names that all name the same bytes must not multiply them.
TEST_F(ElfReader, ForgedTablesThatShareBytesStayCheap)
{
    ElfPlan plan = usualElf();
    const Bytes text(3000000, 'a');
    Bytes entries;
    for (std::uint32_t i = 0; i < 40000; ++i) {
        const Bytes entry = symbolBytes(i, 0, 0, 0, 0);
        entries.insert(entries.end(), entry.begin(), entry.end());
    }
    plan.sections = {{".symtab", 2, entries, 2, 16}, {".strtab", 3, text}};
    auto elf = open(elfBytes(plan));
    ASSERT_NE(elf, nullptr);
    ASSERT_EQ(elf->symbolTable.size(), 40000U);
    EXPECT_EQ(elf->symbolTable[0].name.size(), text.size());
    EXPECT_EQ(elf->symbolTable[39999].name, "");

    plan.sections.assign(1000, {"t", 2, {}, 2, 16});
    plan.sections[0].bytes = entries;
    Bytes bytes = elfBytes(plan);
    for (std::size_t i = 2; i <= 1000; ++i) {
        const auto first = static_cast<std::ptrdiff_t>(sectionField(bytes, 1, 16));
        std::copy_n(bytes.begin() + first, 8,
                    bytes.begin() + static_cast<std::ptrdiff_t>(sectionField(bytes, i, 16)));
    }
    elf = open(bytes);
    ASSERT_NE(elf, nullptr);
    EXPECT_LE(elf->symbolTable.size(), 1048576U);
    EXPECT_GE(elf->symbolTable.size(), 40000U);
}

TEST_F(ElfReader, HeadersAndNamesThatShareBytesHaveABudget)
{
    using files::ErrorCode;
    constexpr std::uint32_t kBytes = 16 << 20;
    ElfPlan plan;
    for (std::uint32_t i = 0; i < 17; ++i) {
        plan.segments.push_back({1, i * 2 * kBytes, {}});
    }
    Bytes bytes = elfBytes(plan);
    for (std::size_t i = 0; i < 17; ++i) {
        bytes = forged(bytes, kFirstSegment + 32 * i + 16, kBytes, 4);
    }
    QFile sparse(folder.file("many.elf", bytes));
    ASSERT_TRUE(sparse.resize(kBytes + 4096));
    const auto read = files::readElf(sparse.fileName(), 0xFF);
    ASSERT_FALSE(read) << "272 MiB out of a file of 16";
    EXPECT_EQ(read.error().code, ErrorCode::NoMemory);

    plan.segments = {{1, 0, {1}}};
    plan.sections.assign(200, {"", 1, {}});
    plan.sections[0] = {"", 3, Bytes(1000000, 'n')};
    const auto elf = open(forged(elfBytes(plan), kNameTable, 1, 2));
    ASSERT_TRUE(elf);
    EXPECT_EQ(elf->sections[1].name.size(), 1000000U);
    EXPECT_EQ(elf->sections[200].name, "");
}

TEST(ElfLabels, UnknownValuesHaveFixedTexts)
{
    EXPECT_EQ(ELFtype(4), "Core");
    EXPECT_EQ(ELFtype(0), "Not specified");
    EXPECT_EQ(ELFmachine(183), "AArch64");
    EXPECT_EQ(ELFmachine(0), "No specific instruction set");
    EXPECT_EQ(secType(16), "PREINIT_ARRAY");
    EXPECT_EQ(secType(12), "No specific information");
    EXPECT_EQ(secFlag(6), "EXEC + ALLOC");
    EXPECT_EQ(secFlag(5), "Processor specific");
}

}  // namespace
