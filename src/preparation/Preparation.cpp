#include "preparation/Preparation.h"

#include "preparation/AreaPlanner.h"
#include "preparation/ImageSealer.h"
#include "preparation/PlanRules.h"
#include "preparation/RamCutter.h"

#include <exception>

namespace
{

using namespace preparation;
using files::Result;

constexpr int kError = 5;
constexpr int kNotice = 7;

ByteView viewOf(const QByteArray &bytes)
{
    return {reinterpret_cast<const std::uint8_t *>(bytes.constData()),
            static_cast<std::size_t>(bytes.size())};
}

/// Plan, check, cut, check again, seal, open again, compare.
Result<QByteArray> buildSfi(const SfiRequest &request, std::vector<std::string> &notices)
{
    auto uncut = planAreas(request, notices);
    if (!uncut) {
        return tl::unexpected(uncut.error());
    }
    if (auto placed = checkPlacement(*uncut); !placed) {
        return tl::unexpected(placed.error());
    }
    const auto plan = cutForRam(std::move(*uncut), request.ramSize, request.tokenAddress);
    if (!plan) {
        return tl::unexpected(plan.error());
    }
    if (auto fits = checkContainer(*plan); !fits) {
        return tl::unexpected(fits.error());
    }
    auto image = sealImage(*plan, request.key, request.nonce);
    if (!image) {
        return image;
    }
    if (auto same = compareWithPlan(viewOf(*image), *plan, request.key); !same) {
        return tl::unexpected(same.error());
    }
    return image;
}

/// Messages of the builder are ASCII.
std::wstring wide(const std::string &text)
{
    return {text.begin(), text.end()};
}

}  // namespace

// The signature is fixed, two lists by value included.
// NOLINTBEGIN(performance-unnecessary-value-param)
QByteArray Preparation::SFIPreparation(FileData *firmware, bool combined, QList<FileOBK *> obkFiles,
                                       FileData *optionBytes, const QByteArray &key,
                                       const QByteArray &nonce, unsigned char imageVersion,
                                       bool hash, const QList<FileData *> &smiFiles,
                                       unsigned int ramSize, unsigned int tokenAddress,
                                       FileSFI *ssfi, FileMCSV *modules, unsigned int profile,
                                       FileData *externalFirmware, FileData *keyArea,
                                       QVector<ExtBinInfo> externalInfos)
// NOLINTEND(performance-unnecessary-value-param)
{
    const auto report = [this](int level, const wchar_t *text) {
        if (m_display != nullptr) {
            m_display(level, text);
        }
    };
    try {
        SfiRequest request;
        request.firmware = firmware;
        request.combined = combined;
        request.obkFiles.assign(obkFiles.cbegin(), obkFiles.cend());
        request.optionBytes = optionBytes;
        request.key = viewOf(key);
        request.nonce = viewOf(nonce);
        request.imageVersion = imageVersion;
        request.hash = hash;
        request.smiFiles.assign(smiFiles.cbegin(), smiFiles.cend());
        request.ramSize = ramSize;
        request.tokenAddress = tokenAddress;
        request.ssfi = ssfi;
        request.modules = modules;
        request.profile = profile;
        request.externalFirmware = externalFirmware;
        request.keyArea = keyArea;
        request.externalInfos.assign(externalInfos.cbegin(), externalInfos.cend());

        std::vector<std::string> notices;
        const auto image = buildSfi(request, notices);
        for (const std::string &notice : notices) {
            report(kNotice, wide(notice).c_str());
        }
        if (image) {
            return *image;
        }
        report(kError, (L"Error: " + wide(image.error().text)).c_str());
    } catch (const std::exception &) {
        // Only a lack of memory gets here; this report needs none.
        report(kError, L"Error: Unable to allocate memory");
    }
    return {};
}
