#pragma once
#include "files/base/Result.h"
#include "files/firmware/HexRecord.h"
#include "files/firmware/StagedSegment.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace files
{

/// Turns Intel HEX or S-record text, handed over piece by piece, into segments. Pure: no file, no
/// message. Segments come in the order of the text, unsorted and unjoined.
class HexText
{
public:
    /// Takes as many whole lines as `text` holds.
    /// @param text    the bytes behind those taken so far
    /// @param isLast  no text follows, so that a last line may end without a line feed
    /// @return how many bytes were taken: all of them when `isLast`, else all but an incomplete
    ///         line; or the refusal of line `lineNumber()`, after which the object is of no use
    Result<std::size_t> consume(std::span<const std::uint8_t> text, bool isLast);

    /// Ends the text. @return the segments, possibly none; NoMemory
    Result<std::vector<OwnedSegment>> finish();

    /// The line looked at last, from 1; pieces of long lines count as lines.
    [[nodiscard]] std::uint32_t lineNumber() const { return m_line; }

private:
    Result<std::size_t> takeQuickRecords(std::span<const std::uint8_t> text);
    Result<void> takeLine(std::span<const std::uint8_t> line);
    Result<void> addBytes(std::uint32_t address, std::size_t count);
    Result<void> closeSegment();

    HexSyntax m_syntax = HexSyntax::Unknown;
    std::uint32_t m_line = 0;
    std::uint32_t m_segmentBase = 0;
    std::uint32_t m_linearBase = 0;
    bool m_inSegment = false;
    std::uint32_t m_address = 0;  ///< of the open segment
    StagedSegment m_stage;
    std::vector<OwnedSegment> m_segments;
};

}  // namespace files
