#include "files/firmware/SegmentList.h"
#include "files/FileManager.h"
#include "files/SegmentBuilder.h"
#include "files/base/RangeConflicts.h"
#include "support/MessageLog.h"

#include <gtest/gtest.h>

#include <ctime>
#include <random>

namespace
{

using files::RecordOwner;

constexpr std::uint8_t kPadding = 0xA7;

/// The reduction one pair at a time, on plain values.
struct Reduced {
    std::vector<Piece> pieces;
    int result = 0;
};

Reduced reducedLiterally(std::vector<Piece> list)
{
    Reduced reduced;
    for (std::size_t i = 0; i + 1 < list.size();) {
        Piece &a = list[i];
        const Piece &b = list[i + 1];
        const auto size = static_cast<std::uint32_t>(a.bytes.size());
        const std::uint32_t end = a.address + size;
        const std::uint32_t gap = b.address - end;
        if (gap <= 31) {
            a.bytes.insert(a.bytes.end(), gap, kPadding);
            a.bytes.insert(a.bytes.end(), b.bytes.begin(), b.bytes.end());
        } else if (b.address >= end) {
            ++i;
            continue;
        } else {
            const std::uint32_t at = b.address - a.address;
            const auto bSize = static_cast<std::uint32_t>(b.bytes.size());
            const std::uint32_t bEnd = b.address + bSize;
            if (bEnd > end) {
                a.bytes.resize(at + bSize);
            }
            for (std::size_t k = 0; k < bSize && at + k < a.bytes.size(); ++k) {
                a.bytes[at + k] = b.bytes[k];
            }
            reduced.result = 1;
        }
        list.erase(list.begin() + static_cast<std::ptrdiff_t>(i) + 1);
    }
    reduced.pieces = std::move(list);
    return reduced;
}

Reduced reduced(const std::vector<Piece> &pieces)
{
    FileManager manager;
    manager.paddingByte = kPadding;
    const auto record = recordOf(pieces);
    Reduced outcome;
    outcome.result = manager.ReduceFileSegment(record.get());
    outcome.pieces = piecesOf(*record);
    EXPECT_EQ(record->segmentCount, record->segments.size());
    return outcome;
}

std::vector<std::uint8_t> run(std::size_t count, std::uint8_t value)
{
    return std::vector<std::uint8_t>(count, value);
}

std::vector<Piece> randomPieces(std::mt19937 &random, std::uint32_t base)
{
    std::vector<Piece> pieces(random() % 12);
    for (Piece &piece : pieces) {
        piece.address = base + static_cast<std::uint32_t>(random() % 300);
        piece.bytes = run(random() % 80, static_cast<std::uint8_t>(random()));
    }
    return pieces;
}

TEST(ReduceFileSegment, AgreesWithThePlainRuleOnRandomLists)
{
    std::mt19937 random(20261122);
    int overlaps = 0;
    for (int round = 0; round < 4000; ++round) {
        const std::uint32_t base = round % 2 == 0 ? 0x08000000 : 0xFFFFFF00;
        auto pieces = randomPieces(random, base);
        auto sorted = recordOf(pieces);
        FileSegmentsTri(sorted.get());
        std::stable_sort(pieces.begin(), pieces.end(),
                         [](const Piece &a, const Piece &b) { return a.address < b.address; });
        ASSERT_EQ(piecesOf(*sorted), pieces);
        const auto expected = reducedLiterally(pieces);
        const auto actual = reduced(pieces);
        ASSERT_EQ(actual.pieces, expected.pieces) << "round " << round;
        ASSERT_EQ(actual.result, expected.result) << "round " << round;
        overlaps += actual.result;
    }
    EXPECT_GT(overlaps, 1000);
}

TEST(ReduceFileSegment, HandlesManySegmentsInLinearTime)
{
    // Descending, in turns touching and overlapping: quadratic sorting or joining takes many
    // seconds.
    std::vector<Piece> pieces(200000);
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        const auto fromEnd = static_cast<std::uint32_t>(pieces.size() - i);
        pieces[i] = {fromEnd * 16, run(i % 2 == 0 ? 16 : 20, static_cast<std::uint8_t>(i))};
    }
    auto record = recordOf(pieces);
    FileManager manager;
    const std::clock_t start = std::clock();
    FileSegmentsTri(record.get());
    EXPECT_EQ(manager.ReduceFileSegment(record.get()), 1);
    const double seconds = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
    EXPECT_EQ(record->segmentCount, 1U);
    EXPECT_EQ(record->segments.at(0).size, 200000U * 16);
    EXPECT_LT(seconds, 0.5);
}

bool mergeConflictLiterally(const std::vector<std::vector<files::Range>> &list)
{
    for (std::size_t i = 0; i < list.size(); ++i) {
        for (std::size_t j = i + 1; j < list.size(); ++j) {
            for (const auto &a : list[i]) {
                for (const auto &b : list[j]) {
                    if ((b.begin <= a.begin && a.begin < b.end) ||
                        (b.begin < a.end && a.end < b.end) ||
                        (a.begin <= b.begin && a.end > b.end)) {
                        return true;
                    }
                }
            }
        }
    }
    return false;
}

/// Records without payload: merging reads addresses and sizes only.
RecordOwner<FileData> bare(const std::vector<SegmentData> &segments)
{
    RecordOwner<FileData> record(new FileData);
    record->segments = segments;
    record->segmentCount = static_cast<std::uint32_t>(segments.size());
    return record;
}

bool merges(const std::vector<RecordOwner<FileData>> &files)
{
    FileManager manager;
    std::vector<FileData *> list;
    for (const auto &file : files) {
        list.push_back(file.get());
    }
    FileData *merged = nullptr;
    const bool result = manager.MergeFiles(list, &merged);
    const files::RecordView<FileData> owner(merged);
    EXPECT_EQ(result, merged != nullptr);
    return result;
}

TEST(MergeFiles, AnOverlapIsReportedOnceAndTouchingIsNone)
{
    MessageLog log;
    std::vector<RecordOwner<FileData>> list;
    list.push_back(bare({{0x100, 0x10, nullptr}}));
    list.push_back(bare({{0x110, 0x10, nullptr}}));
    EXPECT_TRUE(merges(list));
    EXPECT_TRUE(log.take().empty());
    list.push_back(bare({{0x10F, 0x11, nullptr}}));
    EXPECT_FALSE(merges(list));
    EXPECT_EQ(log.take(),
              (Messages{{5, "Error: Overlap between segments, Unable to merge files"}}));
}

TEST(MergeFiles, AgreesWithAllPairsOnRandomLists)
{
    MessageLog log;
    std::mt19937 random(7);
    int conflicts = 0;
    for (int round = 0; round < 6000; ++round) {
        std::vector<RecordOwner<FileData>> list;
        std::vector<std::vector<files::Range>> ranges;
        const std::uint32_t base = round % 3 == 0 ? 0xFFFFFFC0 : 0x1000;
        for (std::size_t file = 0; file < 1 + random() % 4; ++file) {
            list.push_back(bare({}));
            ranges.emplace_back();
            for (std::size_t k = random() % 4; k > 0; --k) {
                const auto address = base + static_cast<std::uint32_t>(random() % 128);
                const auto size = static_cast<std::uint32_t>(random() % 16);
                list.back()->segments.push_back({address, size, nullptr});
                ranges.back().push_back(files::Range::wrapping(address, size));
            }
            list.back()->segmentCount = static_cast<std::uint32_t>(list.back()->segments.size());
        }
        const bool conflict = mergeConflictLiterally(ranges);
        ASSERT_EQ(merges(list), !conflict) << "round " << round;
        conflicts += conflict ? 1 : 0;
    }
    EXPECT_GT(conflicts, 1000);
    EXPECT_LT(conflicts, 5000);
}

TEST(MergeFiles, SortsSharesAndNeitherReducesNorComparesInsideOneFile)
{
    const auto first = recordOf({{0x300, run(4, 1)}, {0x302, run(4, 2)}, {0x100, run(4, 3)}});
    const auto second = recordOf({{0x104, run(4, 4)}, {0x80, run(4, 5)}});
    FileManager manager;
    FileData *out = nullptr;
    ASSERT_TRUE(manager.MergeFiles({first.get(), second.get()}, &out));
    const files::RecordView<FileData> merged(out);
    EXPECT_EQ(merged->type, file_type::kBinary);
    EXPECT_EQ(merged->segmentCount, 5U);
    std::vector<std::uint32_t> addresses;
    for (const auto &segment : merged->segments) {
        addresses.push_back(segment.address);
    }
    EXPECT_EQ(addresses, (std::vector<std::uint32_t>{0x80, 0x100, 0x104, 0x300, 0x302}));
    EXPECT_EQ(merged->segments[1].data, first->segments[2].data);
    EXPECT_TRUE(merges({}));
}

}  // namespace
