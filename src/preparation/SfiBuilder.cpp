#include "preparation/SfiBuilder.h"

#include "preparation/AreaPlanner.h"
#include "preparation/PlanRules.h"
#include "preparation/RamCutter.h"

namespace preparation
{

using files::Result;

Result<QByteArray> buildSfi(const SfiRequest &request, std::vector<std::string> &outNotices,
                            const SealFunction &seal)
{
    auto uncut = planAreas(request, outNotices);
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
    auto image = seal(*plan, request.key, request.nonce);
    if (!image) {
        return image;
    }
    if (auto same = compareWithPlan({reinterpret_cast<const std::uint8_t *>(image->constData()),
                                     static_cast<std::size_t>(image->size())},
                                    *plan, request.key);
        !same) {
        return tl::unexpected(same.error());
    }
    return image;
}

}  // namespace preparation
