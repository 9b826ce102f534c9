#include "preparation/ModulePlanner.h"

#include "preparation/RecordView.h"
#include "preparation/smi/SmiFormat.h"

#include <algorithm>

namespace preparation
{

namespace
{

using files::ErrorCode;
using files::fail;
using files::Result;

constexpr std::size_t kIdentifierBytes = 16;
constexpr std::ptrdiff_t kIdentifierAt = 16;
constexpr std::array<std::uint8_t, kFlashWordBytes> kZeros{};

/// Modules are programmed in whole Flash words, so their areas end at one.
void padToFlashWord(PlanArea &area)
{
    const std::uint64_t over = (area.address + area.size) % kFlashWordBytes;
    area.append(ByteView(kZeros).first(over == 0 ? 0 : kFlashWordBytes - over));
}

ByteView moduleHead(Plan &plan, const SegmentDataMCSV &module)
{
    const std::uint32_t flags = module.licenceIsFile != 0 ? 1 : 0;
    const auto head = plan.newBlock(
        kModuleHeadBytes, {module.moduleSize, module.licenceSize, module.hsmFwIdSize, flags});
    std::copy_n(module.hsmFwId, module.hsmFwIdSize, head.begin() + kIdentifierAt);
    return head;
}

Result<void> checkModule(const SegmentDataMCSV &module, std::uint32_t ordinal)
{
    const std::string what = "Module " + std::to_string(ordinal);
    if (module.hsmFwIdSize > kIdentifierBytes) {
        return fail(ErrorCode::BadValue, what + " has an identifier of " +
                                             std::to_string(module.hsmFwIdSize) +
                                             " bytes, at most 16 are possible");
    }
    if ((module.moduleSize != 0 && module.module == nullptr) ||
        (module.licenceSize != 0 && module.licence == nullptr) ||
        (module.hsmFwIdSize != 0 && module.hsmFwId == nullptr)) {
        return fail(ErrorCode::BadValue, what + " of the modules list has no data");
    }
    return {};
}

}  // namespace

Result<void> addModules(Plan &plan, const FileMCSV *modules)
{
    if (modules == nullptr) {
        return {};
    }
    if (auto type = checkType(*modules, {file_type::kMcsv}, "modules list"); !type) {
        return type;
    }
    if (modules->moduleCount > modules->modules.size()) {
        return fail(ErrorCode::BadValue,
                    "The modules list counts " + std::to_string(modules->moduleCount) +
                        " modules and holds " + std::to_string(modules->modules.size()));
    }
    std::uint32_t ordinal = 0;
    for (const auto &module : std::span(modules->modules).first(modules->moduleCount)) {
        if (auto checked = checkModule(module, ++ordinal); !checked) {
            return checked;
        }
        PlanArea area;
        area.letter = module.licenceSize != 0 || module.hsmFwIdSize != 0 ? letter::kModule
                                                                         : letter::kFreeModule;
        area.address = module.address;
        area.source = Source::Module;
        area.ordinal = ordinal;
        area.append(moduleHead(plan, module));
        area.append({module.module, module.moduleSize});
        area.append({module.licence, module.licenceSize});
        padToFlashWord(area);
        area.extent = files::Range::of(module.address, module.moduleSize);
        plan.areas.push_back(std::move(area));
    }
    return {};
}

Result<void> addSmiFiles(Plan &plan, const std::vector<const FileData *> &smiFiles)
{
    std::uint32_t ordinal = 0;
    for (const FileData *smi : smiFiles) {
        const std::string what = "SMI file " + std::to_string(++ordinal);
        const auto segments = checkedSegments(smi, {file_type::kSmi}, what);
        if (!segments) {
            return tl::unexpected(segments.error());
        }
        if (segments->size() != 1) {
            return fail(ErrorCode::BadValue, what + " has " + std::to_string(segments->size()) +
                                                 " segments, it must have one");
        }
        const ByteView bytes((*segments)[0].data, (*segments)[0].size);
        const auto head = parseSmi(bytes, what);
        if (!head) {
            return tl::unexpected(head.error());
        }
        PlanArea area;
        area.letter = letter::kModule;
        area.address = head->loadAddress;
        area.source = Source::Smi;
        area.ordinal = ordinal;
        area.append(bytes);
        padToFlashWord(area);
        area.extent = files::Range::of(head->loadAddress, head->plainSize);
        plan.areas.push_back(std::move(area));
    }
    return {};
}

}  // namespace preparation
