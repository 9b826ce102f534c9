#include "preparation/AreaPlanner.h"

#include "preparation/ModulePlanner.h"
#include "preparation/RecordView.h"

#include <algorithm>

namespace preparation
{

namespace
{

using files::ErrorCode;
using files::fail;
using files::Result;

Result<void> checkParameters(const SfiRequest &request)
{
    if (request.key.size() != kKeyBytes) {
        return fail(ErrorCode::WrongSize, "The encryption key has " +
                                              std::to_string(request.key.size()) +
                                              " bytes, it must have 16");
    }
    if (request.nonce.size() != kNonceFileBytes) {
        return fail(ErrorCode::WrongSize, "The nonce has " + std::to_string(request.nonce.size()) +
                                              " bytes, it must have 12");
    }
    if (request.profile != kProfileUsual && request.profile != kProfileH5) {
        return fail(ErrorCode::BadValue, "Unknown device profile " + hexText(request.profile));
    }
    return {};
}

Result<void> addSsfi(Plan &plan, const FileSFI *ssfi)
{
    if (ssfi == nullptr) {
        return {};
    }
    if (auto type = checkType(*ssfi, {file_type::kSsfi}, "SSFI file"); !type) {
        return type;
    }
    PlanArea area;
    area.letter = letter::kSsfi;
    area.source = Source::Ssfi;
    bool whole = ssfi->header != nullptr || ssfi->headerSize == 0;
    if (whole) {
        area.append({ssfi->header, ssfi->headerSize});
    }
    // The areas, not the segments: those repeat them for readers that want a firmware image.
    for (const SegmentSFI &part : ssfi->areas) {
        whole = whole && (part.areaHeader != nullptr || part.areaHeaderSize == 0) &&
                (part.data != nullptr || part.size == 0);
        if (whole) {
            area.append({part.areaHeader, part.areaHeaderSize});
            area.append({part.data, part.size});
        }
    }
    if (!whole || area.size == 0) {
        return fail(ErrorCode::BadValue, "The SSFI file's record holds no data");
    }
    plan.areas.push_back(std::move(area));
    return {};
}

Result<void> addObkFiles(Plan &plan, const std::vector<const FileOBK *> &obkFiles)
{
    std::uint32_t ordinal = 0;
    for (const FileOBK *obk : obkFiles) {
        ++ordinal;
        const std::string what = "OBK file " + std::to_string(ordinal);
        const auto segments = checkedSegments(obk, {file_type::kObk}, what);
        if (!segments) {
            return tl::unexpected(segments.error());
        }
        PlanArea area;
        area.letter = letter::kObk;
        area.address = obk->obkAddress;
        area.source = Source::Obk;
        area.ordinal = ordinal;
        area.append(plan.newBlock(kObkHeadBytes, {obk->obkAddress, obk->obkSize, obk->obkWord3}));
        for (const SegmentData &segment : *segments) {
            area.append({segment.data, segment.size});
        }
        plan.areas.push_back(std::move(area));
    }
    return {};
}

/// Key area and option bytes: the whole record is one area without a destination.
Result<PlanArea> tableArea(const FileData *record, std::uint8_t letter, Source source,
                           const std::string &what)
{
    const auto segments = checkedSegments(record, {file_type::kCsv}, what);
    if (!segments) {
        return tl::unexpected(segments.error());
    }
    PlanArea area;
    area.letter = letter;
    area.source = source;
    for (const SegmentData &segment : *segments) {
        area.append({segment.data, segment.size});
    }
    return area;
}

Result<void> addKeyArea(Plan &plan, const FileData *record)
{
    if (record == nullptr) {
        return {};
    }
    auto area = tableArea(record, letter::kKeyArea, Source::KeyArea, "key area");
    if (!area) {
        return tl::unexpected(area.error());
    }
    plan.areas.push_back(std::move(*area));
    return {};
}

Result<void> addOptionBytes(Plan &plan, const FileData *record)
{
    if (record == nullptr) {
        return fail(ErrorCode::BadValue, "Option bytes are missing");
    }
    auto area = tableArea(record, letter::kOptionBytes, Source::OptionBytes, "option bytes");
    if (!area) {
        return tl::unexpected(area.error());
    }
    if (area->size == 0 || area->size % 4 != 0) {
        return fail(ErrorCode::WrongSize,
                    "The option bytes have " + std::to_string(area->size) +
                        " bytes, they must have a multiple of 4 and not be empty");
    }
    plan.areas.push_back(std::move(*area));
    return {};
}

/// A non-empty segment and its place in the record, from 1.
struct NumberedSegment {
    const SegmentData *segment = nullptr;
    std::uint32_t ordinal = 0;
};

/// The non-empty segments of a firmware image, by ascending address.
Result<std::vector<NumberedSegment>> sortedSegments(const FileData *firmware, const char *what)
{
    std::vector<NumberedSegment> sorted;
    if (firmware == nullptr) {
        return sorted;
    }
    const auto segments = checkedSegments(
        firmware, {file_type::kBinary, file_type::kIntelHex, file_type::kSRecord, file_type::kElf},
        what);
    if (!segments) {
        return tl::unexpected(segments.error());
    }
    std::uint32_t ordinal = 0;
    for (const SegmentData &segment : *segments) {
        ++ordinal;
        if (segment.size != 0) {
            sorted.push_back({&segment, ordinal});
        }
    }
    std::stable_sort(sorted.begin(), sorted.end(),
                     [](const NumberedSegment &left, const NumberedSegment &right) {
                         return left.segment->address < right.segment->address;
                     });
    return sorted;
}

Result<void> addFirmware(Plan &plan, const FileData *firmware)
{
    const auto segments = sortedSegments(firmware, "firmware");
    if (!segments) {
        return tl::unexpected(segments.error());
    }
    for (const auto &[segment, ordinal] : *segments) {
        PlanArea area;
        area.letter = letter::kFirmware;
        area.address = segment->address;
        area.source = Source::Firmware;
        area.ordinal = ordinal;
        area.append({segment->data, segment->size});
        area.extent = files::Range::of(segment->address, segment->size);
        plan.areas.push_back(std::move(area));
    }
    return {};
}

Result<void> addExternalFirmware(Plan &plan, const SfiRequest &request,
                                 std::vector<std::string> &notices)
{
    const auto segments = sortedSegments(request.externalFirmware, "external firmware");
    if (!segments) {
        return tl::unexpected(segments.error());
    }
    std::vector<ExtBinInfo> infos = request.externalInfos;
    const auto before = [](const ExtBinInfo &left, const ExtBinInfo &right) {
        return left.startAddress < right.startAddress;
    };
    std::stable_sort(infos.begin(), infos.end(), before);
    for (const auto &[segment, ordinal] : *segments) {
        std::array<std::uint32_t, 3> region = {0, 0, 0};
        ExtBinInfo wanted;
        wanted.startAddress = segment->address;
        auto info = std::upper_bound(infos.begin(), infos.end(), wanted, before);
        if (info == infos.begin()) {
            notices.push_back("External firmware segment " + std::to_string(ordinal) + " (" +
                              hexText(segment->address) +
                              ") has no region record: region and key address are 0");
        } else {
            // Of several with the same start the first one counts.
            wanted.startAddress = (info - 1)->startAddress;
            info = std::lower_bound(infos.begin(), infos.end(), wanted, before);
            region = {info->regionNumber, info->regionMode, info->keyAddress};
        }
        appendExternalArea(plan, segment->address, {segment->data, segment->size}, region, ordinal);
    }
    return {};
}

}  // namespace

Result<Plan> planAreas(const SfiRequest &request, std::vector<std::string> &notices)
{
    Plan plan;
    plan.version = request.hash ? 2 : 1;
    plan.imageVersion = request.imageVersion;
    plan.profile = request.profile;
    if (!request.combined && !request.smiFiles.empty()) {
        notices.push_back(std::to_string(request.smiFiles.size()) +
                          " SMI files are not used: the image is not a combined one");
    }
    auto done =
        checkParameters(request)
            .and_then([&] { return addSsfi(plan, request.ssfi); })
            .and_then([&] { return addModules(plan, request.modules); })
            .and_then([&] {
                return request.combined ? addSmiFiles(plan, request.smiFiles) : Result<void>();
            })
            .and_then([&] { return addObkFiles(plan, request.obkFiles); })
            .and_then([&] { return addKeyArea(plan, request.keyArea); })
            .and_then([&] { return addFirmware(plan, request.firmware); })
            .and_then([&] { return addExternalFirmware(plan, request, notices); })
            .and_then([&] { return addOptionBytes(plan, request.optionBytes); });
    if (!done) {
        return tl::unexpected(done.error());
    }
    return plan;
}

}  // namespace preparation
