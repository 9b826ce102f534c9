#include "files/firmware/FirmwareWriter.h"

#include "files/firmware/OutputBuffer.h"
#include "files/firmware/RecordText.h"
#include "files/firmware/SegmentList.h"

#include <algorithm>
#include <numeric>

namespace files
{

namespace
{

/// Small segments stand in memory in the order of their file, which may be far from their sorted
/// order: without a hint each of them would be waited for.
void fetchAhead(const std::vector<Piece> &pieces, std::size_t at)
{
    constexpr std::size_t kDistance = 16;
    if (at + kDistance < pieces.size()) {
        __builtin_prefetch(pieces[at + kDistance].bytes.data());
    }
}

OutputBuffer bufferFor(SafeWriter &writer)
{
    return OutputBuffer(
        [&writer](std::span<const std::uint8_t> bytes) { return writer.write(bytes).has_value(); });
}

tl::unexpected<Error> outOfMemory()
{
    return fail(ErrorCode::NoMemory, "Unable to allocate memory");
}

/// Puts the file in its place.
Result<void> complete(OutputBuffer &out, SafeWriter &writer)
{
    if (out.flush() && writer.commit()) {
        return {};
    }
    return fail(ErrorCode::WriteFailed, "Error occured while writing in the file");
}

}  // namespace

std::vector<Piece> piecesOf(const FileData &file)
{
    std::vector<Piece> pieces;
    const auto segments = countedSegments(file);
    pieces.reserve(segments.size());
    for (const SegmentData &segment : segments) {
        if (segment.size != 0) {
            pieces.push_back({segment.address, {segment.data, segment.size}});
        }
    }
    return pieces;
}

std::vector<Piece> piecesOf(const FileMCSV &modules)
{
    std::vector<Piece> pieces;
    const std::size_t count = std::min<std::size_t>(modules.moduleCount, modules.modules.size());
    for (const SegmentDataMCSV &module : std::span(modules.modules).first(count)) {
        if (module.moduleSize != 0) {
            pieces.push_back({module.address, {module.module, module.moduleSize}});
        }
    }
    return pieces;
}

std::vector<std::uint32_t> dropPiecesBeyondTheEnd(std::vector<Piece> &pieces)
{
    std::vector<std::uint32_t> dropped;
    std::erase_if(pieces, [&dropped](const Piece &piece) {
        const bool isBeyond = piece.bytes.size() - 1 > UINT32_MAX - piece.address;
        if (isBeyond) {
            dropped.push_back(piece.address);
        }
        return isBeyond;
    });
    return dropped;
}

Result<std::int64_t> writeBinary(SafeWriter &writer, const std::vector<Piece> &pieces,
                                 std::uint8_t padding)
{
    constexpr std::uint32_t kWidest = 0x1FFFFFFF;
    // In a sorted list the last start decides; asking each keeps an unsorted one from endless
    // holes.
    const bool isTooWide = std::any_of(pieces.begin(), pieces.end(), [&pieces](const Piece &piece) {
        return piece.address - pieces.front().address > kWidest;
    });
    if (isTooWide) {
        return fail(ErrorCode::TooLarge,
                    "Segments are widely spaced. Unable to create a binary file");
    }
    OutputBuffer out = bufferFor(writer);
    if (!out.isReady()) {
        return outOfMemory();
    }
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        fetchAhead(pieces, i);
        const std::uint32_t offset = pieces[i].address - pieces.front().address;
        if (out.position() < offset) {
            out.fill(offset - out.position(), padding);
        }
        out.append(pieces[i].bytes);
    }
    return complete(out, writer).map([&out] { return static_cast<std::int64_t>(out.position()); });
}

Result<void> writeHex(SafeWriter &writer, const std::vector<Piece> &pieces, bool hasEnd)
{
    OutputBuffer out = bufferFor(writer);
    if (!out.isReady()) {
        return outOfMemory();
    }
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        fetchAhead(pieces, i);
        appendIntelSegment(out, pieces[i].address, pieces[i].bytes);
    }
    if (hasEnd) {
        appendIntelRecord(out, 1, 0, {});
    }
    return complete(out, writer);
}

Result<void> writeSrec(SafeWriter &writer, const std::vector<Piece> &pieces)
{
    std::uint32_t top = 0;
    for (const Piece &piece : pieces) {
        top = std::max(top, piece.address + static_cast<std::uint32_t>(piece.bytes.size() - 1));
    }
    const SRecordWidth width = srecordWidth(top);
    OutputBuffer out = bufferFor(writer);
    if (!out.isReady()) {
        return outOfMemory();
    }
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        fetchAhead(pieces, i);
        appendSRecordSegment(out, pieces[i].address, pieces[i].bytes, width);
    }
    appendSRecordEnd(out, width);
    return complete(out, writer);
}

}  // namespace files

namespace
{

using files::OutputBuffer;

OutputBuffer bufferFor(QFile &file)
{
    return OutputBuffer([&file](std::span<const std::uint8_t> bytes) {
        const auto size = static_cast<qint64>(bytes.size());
        return file.write(reinterpret_cast<const char *>(bytes.data()), size) == size;
    });
}

std::span<const std::uint8_t> bytesBetween(const unsigned char *data, unsigned start, unsigned end)
{
    return {data, static_cast<std::size_t>(end) - start + 1};
}

}  // namespace

int IntelSave(QFile *file, unsigned char *data, unsigned int start, unsigned int end)
{
    if (end < start) {
        return 1;
    }
    OutputBuffer out = bufferFor(*file);
    if (out.isReady()) {
        files::appendIntelSegment(out, start, bytesBetween(data, start, end));
    }
    if (!out.flush()) {
        file->close();
    }
    return 1;
}

int put_rec(unsigned char *data, unsigned int offset, unsigned int address, unsigned int length,
            QFile *file)
{
    OutputBuffer out = bufferFor(*file);
    if (!out.isReady()) {
        return 1;
    }
    files::appendIntelRecord(out, 0, static_cast<std::uint16_t>(address), {data + offset, length});
    return out.flush() ? 0 : 1;
}

int MotorolaSave32(QFile *file, unsigned char *data, unsigned int start, unsigned int end,
                   unsigned int topAddress)
{
    if (start > end) {
        return 1;
    }
    OutputBuffer out = bufferFor(*file);
    if (out.isReady()) {
        files::appendSRecordSegment(out, start, bytesBetween(data, start, end),
                                    files::srecordWidth(topAddress));
        out.flush();
    }
    return 1;
}

unsigned checksum(unsigned char *data, unsigned int size)
{
    return std::accumulate(data, data + size, 0U);
}
