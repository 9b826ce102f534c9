#include "files/firmware/CrcArea.h"

#include "files/base/LittleEndian.h"
#include "files/base/Range.h"
#include "files/firmware/Crc32.h"

#include <algorithm>
#include <cstdlib>

namespace files
{

namespace
{

constexpr std::uint32_t kEntryBytes = 4;

/// As the rule has it: a segment that ends with the range is outside.
bool isInside(const SegmentData &segment, const CrcRange &range)
{
    return segment.address >= range.start &&
           std::uint64_t{segment.address} + segment.size < range.end;
}

std::vector<std::uint32_t> sumsOf(const SegmentData &segment, std::uint32_t slice)
{
    std::vector<std::uint32_t> sums;
    for (std::uint32_t at = 0; at < segment.size;) {
        const std::uint32_t bytes = std::min(slice, segment.size - at);
        sums.push_back(CRC32(segment.data + at, bytes));
        at += bytes;
    }
    return sums;
}

std::vector<std::uint8_t> tableOf(const CrcArea &area, std::uint64_t bytes, std::uint8_t padding)
{
    std::vector<std::uint8_t> table;
    table.reserve(static_cast<std::size_t>(bytes));
    for (const CrcBlock &block : area.blocks) {
        table.resize(block.target - area.address, padding);
        for (const std::uint32_t sum : block.sums) {
            appendU32le(table, sum);
        }
    }
    table.resize(static_cast<std::size_t>(bytes), padding);
    return table;
}

/// The table must lie in the range, and on no firmware that it sums.
Result<void> checkPlace(std::span<const SegmentData> segments, const CrcRange &range, CrcArea &area)
{
    if (range.tableBytes() > range.flashSize()) {
        return fail(ErrorCode::Overlap, "The CRCs area is larger than the flash");
    }
    const Range table = {area.address, range.end};
    for (std::size_t i = 0; i < segments.size(); ++i) {
        const Range bytes = Range::of(segments[i].address, segments[i].size);
        if (bytes.empty() || !overlaps(bytes, table)) {
            continue;
        }
        if (isInside(segments[i], range)) {
            return fail(ErrorCode::Overlap, "The segment " + std::to_string(i + 1) + " of " +
                                                std::to_string(segments.size()) +
                                                " reaches into the CRCs area");
        }
        area.meetsSkipped = true;
    }
    return {};
}

}  // namespace

Result<void> checkRange(const CrcRange &range)
{
    if (range.flashSize() < range.slice) {
        return fail(ErrorCode::Refused, "The slice size is larger than the flash size");
    }
    if (range.slice == 0 || range.flashSize() % range.slice != 0) {
        return fail(ErrorCode::Refused, "The slice size is invalid");
    }
    return {};
}

Result<CrcArea> makeCrcArea(std::span<const SegmentData> segments, const CrcRange &range,
                            std::uint8_t padding)
{
    CrcArea area;
    area.address = range.end - static_cast<std::uint32_t>(range.tableBytes());
    for (std::size_t i = 0; i < segments.size(); ++i) {
        const SegmentData &segment = segments[i];
        if (!isInside(segment, range)) {
            continue;
        }
        if (segment.address % range.slice != 0) {
            return fail(ErrorCode::Refused,
                        "The segment " + std::to_string(i + 1) + " of " +
                            std::to_string(segments.size()) +
                            " does not start at the beginning of a flash slice");
        }
        const std::uint32_t entry = (segment.address - range.start) / range.slice;
        area.blocks.push_back(
            {i, area.address + entry * kEntryBytes, sumsOf(segment, range.slice)});
    }
    if (area.blocks.empty()) {
        return area;
    }
    if (auto fits = checkPlace(segments, range, area); !fits) {
        return tl::unexpected<Error>(std::move(fits).error());
    }
    area.bytes = tableOf(area, range.tableBytes(), padding);
    return area;
}

bool padToWords(SegmentData &segment)
{
    const std::uint32_t missing = (kEntryBytes - segment.size % kEntryBytes) % kEntryBytes;
    if (missing == 0) {
        return true;
    }
    const std::size_t size = std::size_t{segment.size} + missing;
    auto *grown = static_cast<std::uint8_t *>(std::realloc(segment.data, size + 1));
    if (grown == nullptr) {
        return false;
    }
    std::fill_n(grown + segment.size, missing + 1, std::uint8_t{0});
    segment.data = grown;
    segment.size = static_cast<std::uint32_t>(size);
    return true;
}

}  // namespace files
