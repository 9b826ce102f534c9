#include "preparation/RamCutter.h"

#include "preparation/PlanRules.h"

#include <algorithm>

namespace preparation
{

namespace
{

using files::ErrorCode;
using files::fail;
using files::Result;

bool everythingFits(const Plan &plan, std::uint32_t ramSize)
{
    std::uint64_t sum = 0;
    for (const PlanArea &area : plan.areas) {
        sum += plan.sizeOf(area);
    }
    return sum <= ramSize;
}

/// Bytes that one area, header included, may have.
Result<std::uint64_t> roomFor(const Plan &plan, std::uint32_t ramSize, std::uint32_t tokenAddress)
{
    const std::uint64_t tokenArea = areaHeaderBytes(plan.version) + kTokenAreaBytes;
    const std::uint64_t reserved = tokenAddress == 0 ? 0 : 2 * tokenArea;
    // A trailer and one Flash word must fit, or a piece could be empty.
    const std::uint64_t least = reserved + tokenArea + kFlashWordBytes;
    if (ramSize < least) {
        return fail(ErrorCode::TooLarge, "A RAM size of " + std::to_string(ramSize) +
                                             " bytes is too small, at least " +
                                             std::to_string(least) + " are needed");
    }
    return ramSize - reserved;
}

/// Appends one piece of a cut firmware area.
void appendPiece(Plan &plan, const PlanArea &whole, std::uint64_t offset, std::uint64_t bytes)
{
    const ByteView firmware = whole.pieces.front().subspan(offset, bytes);
    const auto address = static_cast<std::uint32_t>(whole.address + offset);
    if (whole.letter == letter::kExternal) {
        const ByteView trailer = whole.pieces.back();
        std::array<std::uint32_t, 3> region{};
        for (std::size_t i = 4; i < trailer.size(); ++i) {
            region[i / 4 - 1] |= std::uint32_t{trailer[i]} << (8 * (i % 4));
        }
        appendExternalArea(plan, address, firmware, region, whole.ordinal);
        return;
    }
    PlanArea piece;
    piece.letter = whole.letter;
    piece.address = address;
    piece.source = whole.source;
    piece.ordinal = whole.ordinal;
    piece.append(firmware);
    piece.extent = files::Range::of(address, bytes);
    plan.areas.push_back(std::move(piece));
}

Result<void> appendCut(Plan &plan, const PlanArea &whole, std::uint64_t room)
{
    const std::uint64_t most = room - areaHeaderBytes(plan.version) -
                               (whole.letter == letter::kExternal ? kTrailerBytes : 0);
    const std::uint64_t total = whole.pieces.front().size();
    std::uint64_t offset = 0;
    while (total - offset > most) {
        const std::uint64_t from = whole.address + offset;
        const std::uint64_t to = (from + most) / kFlashWordBytes * kFlashWordBytes;
        appendPiece(plan, whole, offset, to - from);
        offset += to - from;
        // A 4 GiB segment and a small RAM would give millions of pieces.
        if (plan.areas.size() > kMaxAreas) {
            return tl::unexpected(tooManyAreas(plan.areas.size()));
        }
    }
    appendPiece(plan, whole, offset, total - offset);
    return {};
}

PlanArea tokenArea(Plan &plan, Source source, std::uint32_t part, std::uint32_t parts,
                   std::uint32_t tokenAddress)
{
    PlanArea area;
    area.letter = source == Source::Pause ? letter::kPause : letter::kResume;
    area.address = tokenAddress;
    area.source = source;
    area.ordinal = part;
    area.append(plan.newBlock(kTokenAreaBytes, {part, parts, tokenAddress, 0}));
    return area;
}

/// Indices of the areas that begin a part, the first one included.
std::vector<std::size_t> partStarts(const Plan &plan, std::uint64_t room)
{
    std::vector<std::size_t> starts;
    std::uint64_t filled = 0;
    for (std::size_t i = 0; i < plan.areas.size(); ++i) {
        const std::uint64_t size = plan.sizeOf(plan.areas[i]);
        if (starts.empty() || filled + size > room) {
            starts.push_back(i);
            filled = 0;
        }
        filled += size;
    }
    return starts;
}

void insertTokens(Plan &plan, std::uint64_t room, std::uint32_t tokenAddress)
{
    const auto starts = partStarts(plan, room);
    if (starts.size() <= 1) {
        return;
    }
    const auto parts = static_cast<std::uint32_t>(starts.size());
    std::vector<PlanArea> uncut = std::move(plan.areas);
    plan.areas.clear();
    plan.areas.reserve(uncut.size() + 2 * starts.size());
    std::uint32_t part = 1;
    for (std::size_t i = 0; i < uncut.size(); ++i) {
        if (part < parts && i == starts[part]) {
            plan.areas.push_back(tokenArea(plan, Source::Pause, part, parts, tokenAddress));
            ++part;
            plan.areas.push_back(tokenArea(plan, Source::Resume, part, parts, tokenAddress));
        }
        plan.areas.push_back(std::move(uncut[i]));
    }
}

}  // namespace

Result<Plan> cutForRam(Plan plan, std::uint32_t ramSize, std::uint32_t tokenAddress)
{
    if (ramSize == 0 || everythingFits(plan, ramSize)) {
        return plan;
    }
    const auto room = roomFor(plan, ramSize, tokenAddress);
    if (!room) {
        return tl::unexpected(room.error());
    }
    std::vector<PlanArea> whole = std::move(plan.areas);
    plan.areas.clear();
    plan.areas.reserve(whole.size());
    for (PlanArea &area : whole) {
        if (plan.sizeOf(area) <= *room) {
            plan.areas.push_back(std::move(area));
            continue;
        }
        if (area.letter != letter::kFirmware && area.letter != letter::kExternal) {
            return fail(ErrorCode::TooLarge,
                        "The " + describe(area) + " can't be cut: with its header it has " +
                            std::to_string(plan.sizeOf(area)) + " bytes, the RAM has room for " +
                            std::to_string(*room));
        }
        if (auto cut = appendCut(plan, area, *room); !cut) {
            return tl::unexpected(cut.error());
        }
    }
    if (tokenAddress != 0) {
        insertTokens(plan, *room, tokenAddress);
    }
    return plan;
}

}  // namespace preparation
