#pragma once
#include "files/base/Records.h"
#include "files/base/Result.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace files
{

/// A flash range and the slices that it is checked in. All sums count bytes.
struct CrcRange {
    std::uint32_t start = 0;
    std::uint32_t end = 0;  ///< one past the last byte
    std::uint32_t slice = 0;

    [[nodiscard]] std::uint32_t flashSize() const { return end - start; }
    /// One entry of four bytes for each slice of the whole range.
    [[nodiscard]] std::uint64_t tableBytes() const
    {
        return std::uint64_t{flashSize() / slice} * 4;
    }
};

/// @return Refused, with the message, for slices that don't fill the range
Result<void> checkRange(const CrcRange &range);

/// The sums of one segment.
struct CrcBlock {
    std::size_t segment = 0;   ///< index into the list
    std::uint32_t target = 0;  ///< address of the first sum
    std::vector<std::uint32_t> sums;
};

/// The table at the top of a flash range.
struct CrcArea {
    std::uint32_t address = 0;
    std::vector<CrcBlock> blocks;  ///< empty: no segment lies in the range
    std::vector<std::uint8_t> bytes;
    /// Segments that aren't looked at share addresses with the table.
    bool meetsSkipped = false;
};

/// Sums the slices of all segments that begin in the range and end before it does.
/// @param range    passed `checkRange`
/// @param padding  stands in entries of slices that no segment fills
/// @return Refused for a segment that begins inside a slice, Overlap for one that reaches into the
///         table; the text is the message
Result<CrcArea> makeCrcArea(std::span<const SegmentData> segments, const CrcRange &range,
                            std::uint8_t padding);

/// Adds zero bytes up to a multiple of four. @return false without memory
bool padToWords(SegmentData &segment);

}  // namespace files
