// Files that lie, of every format. All changes of all seeds are tried when SPB_CORRUPTION=all, as
// scripts/corruption.sh does; else a sample.
#include "corruption/Harness.h"

#include "preparation/SealedPackages.h"
#include "preparation/listing/PackageKinds.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace
{

using namespace corruption;

struct Room {
    const char *name;
    std::vector<Seed> (*seeds)();
};

class Corruption : public ::testing::TestWithParam<Room>
{
};

TEST_P(Corruption, IsJudgedByTheAcceptList)
{
    constexpr std::size_t kSample = 300;
    const char *wish = std::getenv("SPB_CORRUPTION");
    const bool isAll = wish != nullptr && std::string_view(wish) == "all";
    Tally tally;
    for (const Seed &seed : GetParam().seeds()) {
        tryAll(seed, isAll ? 0 : kSample, tally);
    }
    std::printf("%s: %zu seeds, %zu cases: %zu refused, %zu read as before, %zu read otherwise\n",
                GetParam().name, tally.seeds, tally.cases, tally.verdicts[kRefused],
                tally.verdicts[kSame], tally.verdicts[kOther]);
    EXPECT_TRUE(tally.faults.empty()) << tally.faultText().substr(0, 20000);
}

INSTANTIATE_TEST_SUITE_P(
    Of, Corruption,
    ::testing::Values(Room{"Firmware", &firmwareSeeds}, Room{"Containers", &containerSeeds},
                      Room{"Packages", &packageSeeds}, Room{"Certificates", &certificateSeeds},
                      Room{"Tables", &tableSeeds}, Room{"Documents", &documentSeeds}),
    [](const auto &room) { return room.param.name; });

TEST(PackageReport, OfAGoodPackageIsOfItsKindAndAuthenticUnderItsKeyAlone)
{
    const Bytes wrong(16, 8);
    for (const SealedPackage &package : sealedPackages()) {
        const auto kind = preparation::kindOf(package.file);
        ASSERT_TRUE(kind) << package.name;
        const bool onBrainpool = package.name.find("brainpool") != std::string::npos;
        for (const bool isRight : {true, false}) {
            const auto report = preparation::openPackage(
                *kind, package.file, package.body,
                {isRight ? packageKey() : wrong, &packageSigner(onBrainpool == isRight)});
            EXPECT_EQ(report && report->isAuthentic(), isRight) << package.name;
        }
    }
}

TEST(PackageReport, LettersThatSteerATerminalAreQuestionMarks)
{
    preparation::PackageReport report("licence");
    report.add("device", "Device", std::string("a\x1b[2J\x9c\xe2\x80\xae\xc3\xa9"));
    // What isn't UTF-8 is the replacement character.
    EXPECT_EQ(report.fields().at(0).at(1), "a?[2J\xef\xbf\xbd?\xc3\xa9");
}

}  // namespace
