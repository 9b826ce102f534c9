#include "files/containers/SfiAreaRules.h"

#include "files/base/RangeConflicts.h"
#include "files/containers/SfiFormat.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace files
{

namespace
{

using Areas = std::span<const SegmentSFI>;

std::uint64_t comparedSize(const SegmentSFI &area)
{
    return area.areaType == letter::kExternal ? area.size - kTrailerBytes : area.size;
}

Range rangeOf(const SegmentSFI &area)
{
    return Range::of(area.address, comparedSize(area));
}

/// An area whose range can't be compared: a lie in its size or address.
Result<void> checkRange(const SegmentSFI &area, std::size_t ordinal)
{
    if (area.areaType == letter::kExternal && area.size < kTrailerBytes) {
        return fail(ErrorCode::BadValue,
                    "Area " + std::to_string(ordinal) + " is an external area of " +
                        std::to_string(area.size) + " bytes, its trailer alone takes " +
                        std::to_string(kTrailerBytes));
    }
    if (rangeOf(area).end > kAddressSpace) {
        return fail(ErrorCode::BadValue,
                    "Area " + std::to_string(ordinal) + " holds " +
                        std::to_string(comparedSize(area)) + " bytes, but only " +
                        std::to_string(kAddressSpace - area.address) +
                        " are left from its address to the end of the address space");
    }
    return {};
}

Result<void> checkRanges(Areas areas, std::string_view letters)
{
    for (std::size_t i = 0; i < areas.size(); ++i) {
        if (letters.find(static_cast<char>(areas[i].areaType)) == std::string_view::npos) {
            continue;
        }
        if (auto checked = checkRange(areas[i], i + 1); !checked) {
            return checked;
        }
    }
    return {};
}

/// @return the lowest index whose area overlaps a later one of the same letter; or areas.size()
std::size_t firstOverlapping(Areas areas, std::uint8_t letter)
{
    std::vector<Range> ranges;
    std::vector<std::size_t> indices;
    for (std::size_t i = 0; i < areas.size(); ++i) {
        if (areas[i].areaType == letter) {
            ranges.push_back(rangeOf(areas[i]));
            indices.push_back(i);
        }
    }
    std::size_t first = areas.size();
    RangeConflicts later(ranges);
    for (std::size_t k = ranges.size(); k-- > 0;) {
        if (later.anyConflictsWith(ranges[k])) {
            first = indices[k];
        }
        later.add(ranges[k]);
    }
    return first;
}

Result<void> checkOverlaps(Areas areas, std::string_view letters)
{
    if (areas.size() < 2) {
        return {};
    }
    const Areas compared = areas.first(areas.size() - 1);
    std::size_t first = compared.size();
    for (const char letter : letters) {
        first = std::min(first, firstOverlapping(compared, static_cast<std::uint8_t>(letter)));
    }
    for (std::size_t second = first + 1; second < compared.size(); ++second) {
        if (compared[second].areaType == compared[first].areaType &&
            conflicts(rangeOf(compared[first]), rangeOf(compared[second]))) {
            return fail(ErrorCode::Overlap, "Overlap between SFI areas " +
                                                std::to_string(first + 1) + " and " +
                                                std::to_string(second + 1));
        }
    }
    return {};
}

/// A Flash word is programmed at once, so a module's last one must not hold another area's start.
bool sharesLastFlashWord(Areas areas)
{
    std::vector<std::uint32_t> starts;
    starts.reserve(areas.size());
    for (const SegmentSFI &area : areas) {
        starts.push_back(area.address);
    }
    std::sort(starts.begin(), starts.end());
    return std::any_of(areas.begin(), areas.end(), [&starts](const SegmentSFI &area) {
        // A module's padding may run past the address space, so the end has 64 bits.
        const std::uint64_t end = std::uint64_t{area.address} + area.size;
        const auto next = std::upper_bound(starts.begin(), starts.end(), area.address);
        return area.areaType == letter::kModule && end % kFlashWordBytes != 0 &&
               next != starts.end() &&
               *next < end / kFlashWordBytes * kFlashWordBytes + kFlashWordBytes;
    });
}

}  // namespace

Result<void> checkSfiAreas(std::span<const SegmentSFI> areas)
{
    return checkRanges(areas, "FE")
        .and_then([&] { return checkOverlaps(areas, "FE"); })
        .and_then([&]() -> Result<void> {
            if (sharesLastFlashWord(areas)) {
                return fail(ErrorCode::Refused, "The area immediately following a module area "
                                                "starts in its last Flash word");
            }
            return {};
        });
}

Result<void> checkSsfiAreas(std::span<const SegmentSFI> areas)
{
    return checkRanges(areas, "F").and_then([&] { return checkOverlaps(areas, "F"); });
}

}  // namespace files
