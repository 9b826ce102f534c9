#include "preparation/ImageOpener.h"

#include "preparation/PlanRules.h"
#include "preparation/SfiRequestBuilder.h"

#include <gtest/gtest.h>

#include <random>

namespace
{

using namespace preparation;

struct Image {
    Bytes bytes;
    Bytes key;
};

Image smallImage(bool hash, unsigned int profile)
{
    SfiRequestBuilder request;
    request.hash = hash;
    request.profile = profile;
    request.firmware(0x08000000, {1, 2, 3, 4, 5}).obk(0x100, 1, {6});
    return {bytesOf(request.build()), bytesOf(request.key)};
}

/// The area that holds a byte of the image; none for the head.
std::optional<std::size_t> areaOf(const ParsedImage &image, std::size_t byte)
{
    std::size_t end = kHeadBytes;
    for (std::size_t i = 0; i < image.areas.size(); ++i) {
        end += image.areas[i].header.size() + image.areas[i].data.size();
        if (byte >= kHeadBytes && byte < end) {
            return i;
        }
    }
    return std::nullopt;
}

class FlippedBit : public ::testing::TestWithParam<std::tuple<bool, unsigned int>>
{
};

TEST_P(FlippedBit, IsNeverAuthenticWhereverItIs)
{
    const auto [hash, profile] = GetParam();
    Image image = smallImage(hash, profile);
    const auto whole = openImage(image.bytes, ByteView(image.key));
    ASSERT_TRUE(whole && whole->authentic);
    EXPECT_EQ(whole->profile, profile);
    for (std::size_t bit = 0; bit < image.bytes.size() * 8; ++bit) {
        image.bytes[bit / 8] ^= static_cast<std::uint8_t>(1 << bit % 8);
        const auto opened = openImage(image.bytes, ByteView(image.key));
        image.bytes[bit / 8] ^= static_cast<std::uint8_t>(1 << bit % 8);
        if (!opened) {
            continue;  // not an image any more, so nothing of it is taken for good
        }
        EXPECT_FALSE(opened->authentic) << "bit " << bit;
        EXPECT_TRUE(opened->plain.empty()) << "bit " << bit;
        const auto area = areaOf(opened->parsed, bit / 8);
        for (std::size_t i = 0; i < opened->verdicts.size(); ++i) {
            EXPECT_TRUE(opened->verdicts[i] != Verdict::Authentic || (area && *area != i))
                << "bit " << bit << " area " << i + 1;
            // The other areas of a damaged image are still told apart.
            EXPECT_TRUE(!area || *area == i || opened->verdicts[i] == Verdict::Authentic)
                << "bit " << bit << " area " << i + 1;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Images, FlippedBit,
                         ::testing::Combine(::testing::Bool(), ::testing::Values(0xFFU, 0x484U)));

struct Forgery {
    const char *name;
    std::size_t at;
    Bytes bytes;
    const char *text;
};

/// Keeps addresses of this run out of the test's name.
void PrintTo(const Forgery &forgery, std::ostream *out)
{
    *out << forgery.name;
}

class Structure : public ::testing::TestWithParam<Forgery>
{
};

// Head 28, area 1 `O` at 28 with 30 + 13, area 2 `F` at 71 with 30 + 5, area 3 `C` at 106.
TEST_P(Structure, IsRefusedWithPlaceAndNumbers)
{
    Bytes bytes = smallImage(false, 0xFF).bytes;
    ASSERT_EQ(bytes.size(), 140U);
    for (std::size_t i = 0; i < GetParam().bytes.size(); ++i) {
        bytes[GetParam().at + i] = GetParam().bytes[i];
    }
    const auto opened = openImage(bytes, std::nullopt);
    ASSERT_FALSE(opened);
    EXPECT_EQ(opened.error().text, GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    Lies, Structure,
    ::testing::Values(
        Forgery{"Magic", 7, {'c'}, "It does not begin with SFIMAGIC"},
        Forgery{"Version", 8, {3}, "Its format version is 3, only 1 and 2 are known"},
        Forgery{"NoAreas", 10, {0}, "The image has no areas"},
        Forgery{"CountAboveTheAreas", 10, {4}, "The header of area 1 counts 3 areas, the head 4"},
        Forgery{"Index", 71 + 2, {1}, "The header of area 2 has the index 1"},
        Forgery{"RepeatedCount", 71 + 12, {0}, "The header of area 2 counts 0 areas, the head 3"},
        Forgery{"SizeThatWraps",
                28 + 4,
                {0xFF, 0xFF, 0xFF, 0xFF},
                "The data of area 1 has 4294967295 bytes, the image only 82 more"},
        Forgery{"EarlyC", 71, {'C'}, "The option bytes area is area 2 of 3, it must be the last"},
        Forgery{"NoC", 106, {'F'}, "The image does not end with an option bytes area"},
        Forgery{"BytesBehind", 106 + 4, {3}, "1 bytes stand behind the option bytes area"}),
    [](const auto &forgery) { return forgery.param.name; });

TEST(Structure, EveryCutIsRefused)
{
    const Bytes bytes = smallImage(true, 0xFF).bytes;
    for (std::size_t size = 0; size < bytes.size(); ++size) {
        EXPECT_FALSE(openImage(ByteView(bytes).first(size), std::nullopt)) << size;
    }
}

TEST(Overlap, SortedSearchFindsThePairThatComparingAllWouldFindFirst)
{
    std::mt19937 random(7);
    const auto draw = [&random](std::uint64_t below) { return random() % below; };
    int found = 0;
    for (int round = 0; round < 20000; ++round) {
        std::vector<files::Range> extents(draw(8));
        for (files::Range &extent : extents) {
            extent.begin = draw(60);
            extent.end = extent.begin + draw(10);
        }
        std::optional<std::pair<std::size_t, std::size_t>> expected;
        for (std::size_t i = 0; i < extents.size() && !expected; ++i) {
            for (std::size_t j = i + 1; j < extents.size() && !expected; ++j) {
                // Two ranges share an address when the larger begin lies below the smaller end.
                if (std::max(extents[i].begin, extents[j].begin) <
                    std::min(extents[i].end, extents[j].end)) {
                    expected = {i, j};
                }
            }
        }
        ASSERT_EQ(firstOverlap(extents), expected);
        found += expected ? 1 : 0;
    }
    EXPECT_GT(found, 5000);  // otherwise the draw tests nothing
    EXPECT_LT(found, 15000);
}

}  // namespace
