#include "preparation/PlanRules.h"

#include <algorithm>
#include <numeric>

namespace preparation
{

namespace
{

using files::ErrorCode;
using files::fail;
using files::Range;
using files::Result;

/// Which extents share an address with any other one. `order` lists the non-empty ones by begin.
std::vector<bool> overlappingOnes(const std::vector<Range> &extents,
                                  const std::vector<std::size_t> &order)
{
    std::vector<bool> marked(extents.size(), false);
    std::uint64_t reached = 0;
    for (std::size_t k = 0; k < order.size(); ++k) {
        const Range &extent = extents[order[k]];
        const bool above = k + 1 < order.size() && extents[order[k + 1]].begin < extent.end;
        marked[order[k]] = above || extent.begin < reached;
        reached = std::max(reached, extent.end);
    }
    return marked;
}

Result<void> checkOverlap(const Plan &plan, const std::vector<std::size_t> &members)
{
    std::vector<Range> extents;
    extents.reserve(members.size());
    for (const std::size_t member : members) {
        extents.push_back(plan.areas[member].extent);
    }
    if (const auto pair = firstOverlap(extents)) {
        return fail(ErrorCode::Refused, "Overlap between " +
                                            describe(plan.areas[members[pair->first]]) + " and " +
                                            describe(plan.areas[members[pair->second]]));
    }
    return {};
}

/// @param firmware  indices of the `F` areas, which stand by ascending address
Result<void> checkFlashWord(const Plan &plan, const PlanArea &module,
                            const std::vector<std::size_t> &firmware)
{
    const std::uint64_t end = module.extent.end;
    if (module.extent.empty() || end % kFlashWordBytes == 0) {
        return {};
    }
    const std::uint64_t word = end - end % kFlashWordBytes;
    const auto next = std::lower_bound(firmware.begin(), firmware.end(), word,
                                       [&plan](std::size_t index, std::uint64_t address) {
                                           return plan.areas[index].extent.begin < address;
                                       });
    if (next != firmware.end() && plan.areas[*next].extent.begin < word + kFlashWordBytes) {
        return fail(ErrorCode::Refused, "The " + describe(plan.areas[*next]) +
                                            " starts in the last Flash word of " +
                                            describe(module));
    }
    return {};
}

}  // namespace

std::optional<std::pair<std::size_t, std::size_t>> firstOverlap(const std::vector<Range> &extents)
{
    std::vector<std::size_t> order;
    order.reserve(extents.size());
    for (std::size_t i = 0; i < extents.size(); ++i) {
        if (!extents[i].empty()) {
            order.push_back(i);
        }
    }
    std::stable_sort(order.begin(), order.end(), [&extents](std::size_t left, std::size_t right) {
        return extents[left].begin < extents[right].begin;
    });
    const auto marked = overlappingOnes(extents, order);
    // The first one that overlaps any other can only overlap later ones.
    const auto first = std::find(marked.begin(), marked.end(), true);
    if (first == marked.end()) {
        return std::nullopt;
    }
    const auto i = static_cast<std::size_t>(first - marked.begin());
    std::size_t j = i + 1;
    while (extents[j].empty() || !overlaps(extents[i], extents[j])) {
        ++j;
    }
    return std::pair{i, j};
}

Result<void> checkPlacement(const Plan &plan)
{
    std::vector<std::size_t> internal;
    std::vector<std::size_t> firmware;
    std::vector<std::size_t> external;
    for (std::size_t i = 0; i < plan.areas.size(); ++i) {
        const PlanArea &area = plan.areas[i];
        if (area.extent.end > kAddressSpace) {
            return fail(ErrorCode::Refused, "The " + describe(area) + " ends above 0xFFFFFFFF");
        }
        const bool isModule = area.source == Source::Module || area.source == Source::Smi;
        if (isModule || area.letter == letter::kFirmware) {
            internal.push_back(i);
        }
        if (area.letter == letter::kFirmware) {
            firmware.push_back(i);
        }
        if (area.letter == letter::kExternal) {
            external.push_back(i);
        }
    }
    auto checked =
        checkOverlap(plan, internal).and_then([&] { return checkOverlap(plan, external); });
    for (std::size_t k = 0; checked && k < internal.size(); ++k) {
        if (plan.areas[internal[k]].letter != letter::kFirmware) {
            checked = checkFlashWord(plan, plan.areas[internal[k]], firmware);
        }
    }
    return checked;
}

files::Error tooManyAreas(std::size_t atLeast)
{
    return {ErrorCode::TooLarge, "The image needs " + std::to_string(atLeast) +
                                     " areas or more, at most " + std::to_string(kMaxAreas) +
                                     " are possible"};
}

Result<void> checkContainer(const Plan &plan)
{
    if (plan.areas.size() > kMaxAreas) {
        return tl::unexpected(tooManyAreas(plan.areas.size()));
    }
    std::uint64_t bytes = kHeadBytes;
    bool firmwareSeen = false;
    bool externalSeen = false;
    for (const PlanArea &area : plan.areas) {
        bytes += plan.sizeOf(area);
        if (area.letter != letter::kFirmware && area.letter != letter::kExternal) {
            continue;
        }
        // Readers add in 32 bits: an end of 2^32 is 0 to them, and looks like an overlap with
        // every area of the same letter that they compare it with.
        bool &seen = area.letter == letter::kFirmware ? firmwareSeen : externalSeen;
        if (seen && area.extent.end == kAddressSpace) {
            return fail(ErrorCode::Refused, "The " + describe(area) +
                                                " ends at 0xFFFFFFFF behind another area of its "
                                                "kind, which readers take for an overlap");
        }
        seen = true;
    }
    if (bytes > kMaxImageBytes) {
        return fail(ErrorCode::TooLarge, "The image would have " + std::to_string(bytes) +
                                             " bytes, at most " + std::to_string(kMaxImageBytes) +
                                             " are possible");
    }
    return {};
}

}  // namespace preparation
