#include "AreaExtract.h"

#include "files/base/SafeWriter.h"

#include <QFile>

#include <algorithm>

namespace unpack
{

namespace
{

using files::ErrorCode;
using files::fail;
using files::Result;
using namespace preparation;

constexpr std::uint64_t kMaxSpan = 0x1FFFFFFF;

}  // namespace

Result<std::vector<Run>> firmwareRuns(const OpenedImage &image)
{
    std::vector<std::size_t> order;
    for (std::size_t i = 0; i < image.plain.size(); ++i) {
        if (image.parsed.areas[i].prefix.type == 'F' && !image.plain[i].empty()) {
            order.push_back(i);
        }
    }
    if (order.empty()) {
        return fail(ErrorCode::Refused, "the image holds no firmware area");
    }
    const auto addressOf = [&image](std::size_t i) { return image.parsed.areas[i].prefix.address; };
    std::stable_sort(order.begin(), order.end(), [&](std::size_t left, std::size_t right) {
        return addressOf(left) < addressOf(right);
    });
    std::vector<Run> runs;
    std::uint64_t end = 0;
    for (const std::size_t i : order) {
        const auto &bytes = image.plain[i];
        const std::uint64_t address = addressOf(i);
        if ((!runs.empty() && address < end) || address + bytes.size() > kAddressSpace) {
            return fail(ErrorCode::Refused, "firmware area " + std::to_string(i + 1) +
                                                " lies over another one or past 0xFFFFFFFF");
        }
        if (runs.empty() || address != end) {
            runs.push_back({static_cast<std::uint32_t>(address), {}});
        }
        runs.back().bytes.insert(runs.back().bytes.end(), bytes.begin(), bytes.end());
        end = address + bytes.size();
    }
    return runs;
}

Result<void> writeBinary(const std::vector<Run> &runs, const std::string &path)
{
    const std::uint64_t start = runs.front().address;
    const std::uint64_t span = runs.back().address + runs.back().bytes.size() - start;
    if (span > kMaxSpan) {
        return fail(ErrorCode::Refused, "the firmware spans " + std::to_string(span) +
                                            " bytes, a binary may have " +
                                            std::to_string(kMaxSpan));
    }
    std::vector<std::uint8_t> binary(span, 0xFF);
    for (const Run &run : runs) {
        std::copy(run.bytes.begin(), run.bytes.end(),
                  binary.begin() + static_cast<std::ptrdiff_t>(run.address - start));
    }
    return files::writeWhole(QFile::decodeName(path.c_str()), binary);
}

bool isFirmwareName(const std::string &path)
{
    return QFile::decodeName(path.c_str()).endsWith(".bin", Qt::CaseInsensitive);
}

Result<void> writeFirmware(const OpenedImage &image, const std::string &path)
{
    const auto runs = firmwareRuns(image);
    if (!runs) {
        return tl::unexpected(runs.error());
    }
    return writeBinary(*runs, path);
}

Result<void> writeArea(const OpenedImage &image, std::uint32_t index, const std::string &path)
{
    if (index == 0 || index > image.plain.size()) {
        return fail(ErrorCode::Refused, "there is no area " + std::to_string(index) + " among " +
                                            std::to_string(image.plain.size()));
    }
    return files::writeWhole(QFile::decodeName(path.c_str()), image.plain[index - 1]);
}

}  // namespace unpack
