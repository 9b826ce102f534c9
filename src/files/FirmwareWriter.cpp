#include "files/FirmwareWriter.h"
#include "files/FileManager.h"
#include "files/base/SafeWriter.h"
#include "files/firmware/OutputBuffer.h"
#include "files/firmware/RecordText.h"
#include "report/DisplayMng.h"

#include <QFileInfo>

#include <algorithm>
#include <numeric>
#include <optional>

namespace
{

using files::OutputBuffer;
using files::SafeWriter;

/// A piece of an image on its way out.
struct Piece {
    std::uint32_t address = 0;
    std::span<const std::uint8_t> bytes;
};

/// Small segments stand in memory in the order of their file, which may be far from their sorted
/// order: without a hint each of them would be waited for.
void fetchAhead(const std::vector<Piece> &pieces, std::size_t at)
{
    constexpr std::size_t kDistance = 16;
    if (at + kDistance < pieces.size()) {
        __builtin_prefetch(pieces[at + kDistance].bytes.data());
    }
}

void reportError(const wchar_t *text)
{
    DisplayMng::getInstance().logMessage(5, L"%ls", text);
}

/// The common start of all writers.
/// @param shown  how a target that can't be made is called
/// @return nothing after a report
std::optional<SafeWriter> openTarget(const std::wstring &path, const std::wstring &shown)
{
    const QString target = QString::fromStdWString(path);
    if (QFileInfo::exists(target)) {
        DisplayMng::getInstance().logMessage(4,
                                             L"The file %ls already exists, it will be overwritten",
                                             QFileInfo(target).fileName().toStdWString().c_str());
    }
    auto writer = SafeWriter::open(target);
    if (!writer) {
        DisplayMng::getInstance().logMessage(5, L"Unable to create the file %ls", shown.c_str());
        return std::nullopt;
    }
    return std::move(*writer);
}

OutputBuffer bufferFor(SafeWriter &writer)
{
    return OutputBuffer(
        [&writer](std::span<const std::uint8_t> bytes) { return writer.write(bytes).has_value(); });
}

/// Puts the file in its place. @return false after a report
bool complete(OutputBuffer &out, SafeWriter &writer)
{
    if (out.flush() && writer.commit()) {
        return true;
    }
    reportError(L"Error occured while writing in the file");
    return false;
}

/// @return the size of the file, or -1 after a report
std::int64_t saveBinary(const std::vector<Piece> &pieces, std::uint8_t padding,
                        const std::wstring &path)
{
    constexpr std::uint32_t kWidest = 0x1FFFFFFF;
    auto writer =
        openTarget(path, QFileInfo(QString::fromStdWString(path)).fileName().toStdWString());
    if (!writer) {
        return -1;
    }
    // In a sorted list the last start decides; asking each keeps an unsorted one from endless
    // holes.
    const bool isTooWide = std::any_of(pieces.begin(), pieces.end(), [&pieces](const Piece &piece) {
        return piece.address - pieces.front().address > kWidest;
    });
    if (isTooWide) {
        reportError(L"Segments are widely spaced. Unable to create a binary file");
        return -1;
    }
    OutputBuffer out = bufferFor(*writer);
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        fetchAhead(pieces, i);
        const std::uint32_t offset = pieces[i].address - pieces.front().address;
        if (out.position() < offset) {
            out.fill(offset - out.position(), padding);
        }
        out.append(pieces[i].bytes);
    }
    return complete(out, *writer) ? static_cast<std::int64_t>(out.position()) : -1;
}

/// The segments that a text file shows: those with bytes and with an end in the address space.
std::vector<Piece> textPieces(const FileData &file)
{
    std::vector<Piece> pieces;
    const std::size_t count = std::min<std::size_t>(file.segmentCount, file.segments.size());
    pieces.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        const SegmentData &segment = file.segments[i];
        if (segment.size == 0) {
            continue;
        }
        if (segment.size - 1 > UINT32_MAX - segment.address) {
            DisplayMng::getInstance().logMessage(
                4, L"The segment at 0x%08X runs past the end of the address space, it is left out",
                segment.address);
            continue;
        }
        pieces.push_back({segment.address, {segment.data, segment.size}});
    }
    return pieces;
}

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

std::int64_t FileManager::SaveFile(FileData *file, const std::wstring &path)
{
    std::vector<Piece> pieces;
    const std::size_t count = std::min<std::size_t>(file->segmentCount, file->segments.size());
    for (std::size_t i = 0; i < count; ++i) {
        const SegmentData &segment = file->segments[i];
        pieces.push_back({segment.address, {segment.data, segment.size}});
    }
    return saveBinary(pieces, paddingByte, path);
}

std::int64_t FileManager::SaveFileModule(FileMCSV *modules, const std::wstring &path)
{
    std::vector<Piece> pieces;
    const std::size_t count = std::min<std::size_t>(modules->moduleCount, modules->modules.size());
    for (std::size_t i = 0; i < count; ++i) {
        const SegmentDataMCSV &module = modules->modules[i];
        pieces.push_back({module.address, {module.module, module.moduleSize}});
    }
    return saveBinary(pieces, paddingByte, path);
}

bool FileManager::SaveHexFile(FileData *file, const std::wstring &path)
{
    auto writer = openTarget(path, path);
    if (!writer) {
        return false;
    }
    OutputBuffer out = bufferFor(*writer);
    const std::vector<Piece> pieces = textPieces(*file);
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        fetchAhead(pieces, i);
        files::appendIntelSegment(out, pieces[i].address, pieces[i].bytes);
    }
    if (file->segmentCount != 0) {
        files::appendIntelRecord(out, 1, 0, {});
    }
    return complete(out, *writer);
}

bool FileManager::SaveSrecFile(FileData *file, const std::wstring &path)
{
    auto writer = openTarget(path, path);
    if (!writer) {
        return false;
    }
    const std::vector<Piece> pieces = textPieces(*file);
    std::uint32_t top = 0;
    for (const Piece &piece : pieces) {
        top = std::max(top, piece.address + static_cast<std::uint32_t>(piece.bytes.size() - 1));
    }
    const files::SRecordWidth width = files::srecordWidth(top);
    OutputBuffer out = bufferFor(*writer);
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        fetchAhead(pieces, i);
        files::appendSRecordSegment(out, pieces[i].address, pieces[i].bytes, width);
    }
    files::appendSRecordEnd(out, width);
    return complete(out, *writer);
}

int IntelSave(QFile *file, unsigned char *data, unsigned int start, unsigned int end)
{
    if (end < start) {
        return 1;
    }
    OutputBuffer out = bufferFor(*file);
    files::appendIntelSegment(out, start, bytesBetween(data, start, end));
    if (!out.flush()) {
        file->close();
    }
    return 1;
}

int put_rec(unsigned char *data, unsigned int offset, unsigned int address, unsigned int length,
            QFile *file)
{
    OutputBuffer out = bufferFor(*file);
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
    files::appendSRecordSegment(out, start, bytesBetween(data, start, end),
                                files::srecordWidth(topAddress));
    out.flush();
    return 1;
}

unsigned checksum(unsigned char *data, unsigned int size)
{
    return std::accumulate(data, data + size, 0U);
}
