#include "files/firmware/HexText.h"
#include "files/firmware/QuickRecord.h"

#include <algorithm>
#include <cstring>

namespace files
{

namespace
{

constexpr std::size_t kRecordRoom = RecordRoom::extent;

tl::unexpected<Error> outOfMemory()
{
    return fail(ErrorCode::NoMemory, "Unable to allocate memory");
}

/// @return characters of the next line, its line feed included; 0 when the line isn't complete yet
std::size_t lineLength(std::span<const std::uint8_t> text, bool isLast)
{
    const std::size_t most = std::min(text.size(), kMostLineCharacters);
    const void *end = most == 0 ? nullptr : std::memchr(text.data(), '\n', most);
    if (end != nullptr) {
        return static_cast<std::size_t>(static_cast<const std::uint8_t *>(end) - text.data()) + 1;
    }
    return most == kMostLineCharacters || isLast ? most : 0;
}

}  // namespace

Result<std::size_t> HexText::consume(std::span<const std::uint8_t> text, bool isLast)
{
    std::size_t at = 0;
    while (true) {
        auto quick = takeQuickRecords(text.subspan(at));
        if (!quick) {
            return quick;
        }
        at += *quick;
        const auto rest = text.subspan(at);
        const std::size_t length = lineLength(rest, isLast);
        if (length == 0) {
            return at;
        }
        ++m_line;
        if (const auto taken = takeLine(rest.first(length)); !taken) {
            return tl::unexpected<Error>(taken.error());
        }
        at += length;
    }
}

/// Takes the run of usual data records at the start of `text`. Near the end of `text`, where a line
/// might not be whole, it leaves off.
/// @return how many bytes were taken
Result<std::size_t> HexText::takeQuickRecords(std::span<const std::uint8_t> text)
{
    if (m_syntax == HexSyntax::Unknown) {
        return 0;
    }
    const auto decode = m_syntax == HexSyntax::IntelHex ? quickIntelRecord : quickSRecord;
    std::size_t at = 0;
    while (text.size() - at >= kMostLineCharacters) {
        std::uint8_t *tail = m_stage.tail(kRecordRoom);
        if (tail == nullptr) {
            break;  // reported where the line is looked at again
        }
        const QuickRecord record =
            decode(text.subspan(at).first<kMostLineCharacters>(), RecordRoom(tail, kRecordRoom));
        if (record.characters == 0) {
            break;
        }
        ++m_line;
        const std::uint32_t address = m_segmentBase + m_linearBase + record.address;
        if (const auto added = addBytes(address, record.size); !added) {
            return tl::unexpected<Error>(added.error());
        }
        at += record.characters;
    }
    return at;
}

Result<void> HexText::takeLine(std::span<const std::uint8_t> line)
{
    if (m_syntax == HexSyntax::Unknown) {
        if (line[0] != 'S' && line[0] != ':') {
            return {};
        }
        m_syntax = line[0] == 'S' ? HexSyntax::SRecord : HexSyntax::IntelHex;
    }
    const auto record =
        m_syntax == HexSyntax::SRecord ? decodeSRecordLine(line) : decodeIntelLine(line);
    if (!record) {
        return tl::unexpected<Error>(record.error());
    }
    switch (record->kind) {
    case HexRecord::Kind::Nothing:
        break;
    case HexRecord::Kind::EndOfData:
        return closeSegment();
    case HexRecord::Kind::SegmentBase:
        m_segmentBase = record->value;
        break;
    case HexRecord::Kind::LinearBase:
        m_linearBase = record->value;
        break;
    case HexRecord::Kind::Data:
        if (record->size == 0) {
            break;  // fills and blank records neither open nor close a segment
        }
        std::uint8_t *tail = m_stage.tail(kRecordRoom);
        if (tail == nullptr) {
            return outOfMemory();
        }
        std::copy_n(record->data.begin(), record->size, tail);
        return addBytes(m_segmentBase + m_linearBase + record->value, record->size);
    }
    return {};
}

/// Adds `count` bytes that already stand behind the staged ones.
Result<void> HexText::addBytes(std::uint32_t address, std::size_t count)
{
    if (m_inSegment && address == m_address + static_cast<std::uint32_t>(m_stage.size())) {
        m_stage.keep(count);
        return {};
    }
    if (m_inSegment) {
        std::array<std::uint8_t, kRecordRoom> record;
        std::copy_n(m_stage.tail(count), count, record.begin());
        if (auto closed = closeSegment(); !closed) {
            return closed;
        }
        std::uint8_t *tail = m_stage.tail(kRecordRoom);
        if (tail == nullptr) {
            return outOfMemory();
        }
        std::copy_n(record.begin(), count, tail);
    }
    m_inSegment = true;
    m_address = address;
    m_stage.keep(count);
    return {};
}

Result<void> HexText::closeSegment()
{
    if (!m_inSegment) {
        return {};
    }
    m_inSegment = false;
    OwnedSegment segment = m_stage.finish(m_address);
    if (segment.data == nullptr) {
        return outOfMemory();
    }
    m_segments.push_back(std::move(segment));
    return {};
}

Result<std::vector<OwnedSegment>> HexText::finish()
{
    if (const auto closed = closeSegment(); !closed) {
        return tl::unexpected<Error>(closed.error());
    }
    return std::move(m_segments);
}

}  // namespace files
