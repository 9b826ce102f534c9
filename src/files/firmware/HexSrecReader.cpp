#include "files/firmware/HexSrecReader.h"

#include "files/base/ByteBuffer.h"
#include "files/base/Progress.h"
#include "files/firmware/HexText.h"

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
    const auto size = static_cast<std::uint64_t>(file.size());
    std::uint64_t done = 0;
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
        done += static_cast<std::uint64_t>(count);
        if (size > kProgressStep) {
            tellProgress(Activity::Reading, file.fileName(), std::min(done, size), size);
        }
    }
    auto segments = text.finish();
    if (!segments) {
        return refuse(text.lineNumber(), segments.error());
    }
    return std::move(*segments);
}

}  // namespace files
