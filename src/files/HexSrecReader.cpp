#include "files/HexSrecReader.h"
#include "files/FileManager.h"
#include "files/base/ByteBuffer.h"
#include "files/firmware/HexText.h"
#include "report/DisplayMng.h"

#include <algorithm>

namespace files
{

namespace
{

/// Stays in the second-level cache, and is large enough that calls of `read` don't count.
constexpr std::size_t kPieceBytes = std::size_t{256} * 1024;

tl::unexpected<TextFault> refuse(std::uint32_t line, Error error)
{
    return tl::unexpected<TextFault>(TextFault{line, std::move(error)});
}

}  // namespace

tl::expected<std::vector<OwnedSegment>, TextFault> readHexText(QFile &file)
{
    ByteBuffer buffer = ByteBuffer::allocate(kPieceBytes);
    if (!buffer) {
        return refuse(0, {ErrorCode::NoMemory, "Unable to allocate memory"});
    }
    HexText text;
    std::size_t kept = 0;  // bytes of an incomplete line at the buffer's start
    bool isLast = false;
    while (!isLast) {
        const qint64 count = file.read(reinterpret_cast<char *>(buffer.data() + kept),
                                       static_cast<qint64>(buffer.size() - kept));
        if (count < 0) {
            return refuse(0, {ErrorCode::ReadFailed, "Error while reading the file"});
        }
        isLast = count == 0;
        const auto bytes = buffer.span().first(kept + static_cast<std::size_t>(count));
        const auto taken = text.consume(bytes, isLast);
        if (!taken) {
            return refuse(text.lineNumber(), taken.error());
        }
        const auto rest = bytes.subspan(*taken);
        std::copy(rest.begin(), rest.end(), buffer.data());
        kept = rest.size();
    }
    auto segments = text.finish();
    if (!segments) {
        return refuse(text.lineNumber(), segments.error());
    }
    return std::move(*segments);
}

}  // namespace files

namespace
{

void reportFault(const files::TextFault &fault)
{
    auto &display = DisplayMng::getInstance();
    display.logMessage(5, L"\nParsing fail");
    if (fault.line != 0) {
        display.logMessage(5, L"In line %d :", static_cast<int>(fault.line));
    }
    const std::wstring text = QString::fromStdString(fault.error.text).toStdWString();
    display.logMessage(5, L"%ls", text.c_str());
}

}  // namespace

bool FileManager::HexSrec_Parsing(QFile *file, FileData *data)
{
    const bool isHexName = file->fileName().endsWith(QLatin1String(".hex"), Qt::CaseInsensitive);
    data->type = isHexName ? file_type::kIntelHex : file_type::kSRecord;
    data->segmentCount = 0;
    auto segments = files::readHexText(*file);
    if (!segments) {
        reportFault(segments.error());
        return false;
    }
    if (segments->empty()) {
        DisplayMng::getInstance().logMessage(5, L"The file %ls is invalid",
                                             file->fileName().toStdWString().c_str());
        return false;
    }
    data->segments.reserve(segments->size());
    for (files::OwnedSegment &segment : *segments) {
        data->segments.push_back({segment.address, segment.size, segment.data.release()});
    }
    data->segmentCount = static_cast<std::uint32_t>(data->segments.size());
    FileSegmentsTri(data);
    if (ReduceFileSegment(data) != 0) {
        DisplayMng::getInstance().logMessage(
            4, L"File corrupted. Two or more segments defines the same memory zone");
    }
    return true;
}
