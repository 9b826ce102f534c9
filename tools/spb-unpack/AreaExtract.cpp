#include "AreaExtract.h"

#include "files/FileManager.h"
#include "files/base/SafeWriter.h"
#include "report/DisplayMng.h"

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
constexpr int kErrorLevel = 5;

enum class Format { Unknown, Binary, IntelHex, SRecord };

Format formatOf(const QString &path)
{
    const auto endsIn = [&path](const char *ending) {
        return path.endsWith(QLatin1String(ending), Qt::CaseInsensitive);
    };
    if (endsIn(".bin")) {
        return Format::Binary;
    }
    if (endsIn(".hex")) {
        return Format::IntelHex;
    }
    return endsIn(".srec") || endsIn(".s19") ? Format::SRecord : Format::Unknown;
}

bool save(Format format, FileData &firmware, const std::wstring &path)
{
    FileManager manager;
    switch (format) {
    case Format::Binary:
        return manager.SaveFile(&firmware, path) >= 0;
    case Format::IntelHex:
        return manager.SaveHexFile(&firmware, path);
    case Format::SRecord:
        return manager.SaveSrecFile(&firmware, path);
    case Format::Unknown:
        break;
    }
    return false;
}

}  // namespace

Result<std::vector<Run>> firmwareRuns(const OpenedImage &image)
{
    std::vector<std::size_t> order;
    for (std::size_t i = 0; i < image.plain.size(); ++i) {
        if (image.parsed.areas[i].prefix.letter == letter::kFirmware && !image.plain[i].empty()) {
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

bool isFirmwareName(const std::string &path)
{
    return formatOf(QFile::decodeName(path.c_str())) != Format::Unknown;
}

Result<void> writeFirmware(const OpenedImage &image, const std::string &path)
{
    auto runs = firmwareRuns(image);
    if (!runs) {
        return tl::unexpected(runs.error());
    }
    FileData firmware;
    for (Run &run : *runs) {
        firmware.segments.push_back(
            {run.address, static_cast<std::uint32_t>(run.bytes.size()), run.bytes.data()});
    }
    firmware.segmentCount = static_cast<std::uint32_t>(firmware.segments.size());
    const QString target = QFile::decodeName(path.c_str());
    const Format format = formatOf(target);
    const std::uint64_t span =
        runs->back().address + runs->back().bytes.size() - runs->front().address;
    if (format == Format::Binary && span > kMaxSpan) {
        return fail(ErrorCode::Refused, "the firmware spans " + std::to_string(span) +
                                            " bytes, a binary may have " +
                                            std::to_string(kMaxSpan));
    }
    // The writers report through the program's one sink; here their words become the error's.
    std::wstring refusal = L"the file can't be written";
    DisplayMng::getInstance().displayCallback = [&refusal](int level, const wchar_t *text) {
        refusal = level == kErrorLevel ? text : refusal;
    };
    const bool written = save(format, firmware, target.toStdWString());
    DisplayMng::getInstance().displayCallback = nullptr;
    if (!written) {
        const QString text = QString::fromStdWString(refusal).remove(QLatin1String("Error: "));
        return fail(ErrorCode::WriteFailed, text.toStdString());
    }
    return {};
}

Result<void> writeArea(const OpenedImage &image, std::uint32_t index, const std::string &path)
{
    if (index == 0 || index > image.plain.size()) {
        return fail(ErrorCode::Refused, "there is no area " + std::to_string(index) + " among " +
                                            std::to_string(image.plain.size()));
    }
    // The key area and provisioning files hold keys; both are for their owner alone.
    const std::uint8_t kind = image.parsed.areas[index - 1].prefix.letter;
    const auto secrecy = kind == letter::kKeyArea || kind == letter::kObk
                             ? files::Secrecy::SecretUnlessLocked
                             : files::Secrecy::Public;
    return files::writeWhole(QFile::decodeName(path.c_str()), image.plain[index - 1], secrecy);
}

}  // namespace unpack
