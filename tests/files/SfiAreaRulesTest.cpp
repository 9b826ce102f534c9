#include "files/containers/SfiAreaRules.h"

#include <gtest/gtest.h>

#include <ctime>
#include <random>

namespace
{

using Areas = std::vector<SegmentSFI>;

/// The plain rules: all pairs, in the order of the areas.
std::optional<std::string> refusalLiterally(const Areas &areas)
{
    for (std::size_t i = 0; i + 1 < areas.size(); ++i) {
        for (std::size_t j = i + 1; j + 1 < areas.size(); ++j) {
            const char letter = static_cast<char>(areas[i].areaType);
            if (areas[j].areaType != areas[i].areaType || (letter != 'F' && letter != 'E')) {
                continue;
            }
            const std::uint64_t trailer = letter == 'E' ? 16 : 0;
            const std::uint64_t s = areas[i].address;
            const std::uint64_t e = s + areas[i].size - trailer;
            const std::uint64_t bs = areas[j].address;
            const std::uint64_t be = bs + areas[j].size - trailer;
            if ((s >= bs && s < be) || (bs < e && e < be) || (s <= bs && e > be)) {
                return "Overlap between SFI areas " + std::to_string(i + 1) + " and " +
                       std::to_string(j + 1);
            }
        }
    }
    for (const SegmentSFI &module : areas) {
        const std::uint64_t end = std::uint64_t{module.address} + module.size;
        for (const SegmentSFI &other : areas) {
            if (module.areaType == 'M' && other.address > module.address && end % 32 != 0 &&
                other.address < end / 32 * 32 + 32) {
                return "The area immediately following a module area starts in its last Flash word";
            }
        }
    }
    return std::nullopt;
}

TEST(SfiAreaRules, AgreeWithAllPairsOnRandomImages)
{
    std::mt19937 random(31);
    int refused = 0;
    for (int round = 0; round < 20000; ++round) {
        Areas areas(1 + random() % 8);
        const std::uint32_t base = round % 2 == 0 ? 0x1000 : 0xFFFFF000;
        for (SegmentSFI &area : areas) {
            area.areaType = static_cast<std::uint8_t>("FFEEMK"[random() % 6]);
            area.address = base + static_cast<std::uint32_t>(random() % 200);
            area.size = static_cast<std::uint32_t>(random() % 40) + (area.areaType == 'E' ? 16 : 0);
        }
        const auto expected = refusalLiterally(areas);
        const auto checked = files::checkSfiAreas(areas);
        ASSERT_EQ(!checked ? std::optional(checked.error().text) : std::nullopt, expected)
            << "round " << round;
        refused += expected ? 1 : 0;
    }
    EXPECT_GT(refused, 5000);
    EXPECT_LT(refused, 18000);
}

TEST(SfiAreaRules, AreCheapForTheLargestImage)
{
    // Every pair ends together, which no condition catches: all pairs would be looked at.
    Areas areas;
    for (std::uint32_t i = 0; i < 65534; ++i) {
        areas.push_back({i, 65534 - i, nullptr, 'F'});
        areas.push_back({0x10000 + i * 64, 33, nullptr, 'M'});
    }
    areas.push_back({0, 4, nullptr, 'C'});
    const std::clock_t start = std::clock();
    EXPECT_TRUE(files::checkSfiAreas(areas));
    EXPECT_LT(static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC, 0.5);
}

}  // namespace
