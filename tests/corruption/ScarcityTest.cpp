// Memory runs out in the middle of reading, of ours or of OpenSSL: a file may then be refused, but
// is never taken for what it isn't.
#include "corruption/Harness.h"
#include "support/FailingLibrary.h"
#include "support/ScarceMemory.h"

#include <gtest/gtest.h>

#include <new>

namespace
{

using namespace corruption;

/// The content, and nothing when memory ran out where nobody but the program's edge catches it.
std::optional<std::string> readOrRefuse(const Seed &seed, const Bytes &bytes)
{
    try {
        return seed.read(bytes);
    } catch (const std::bad_alloc &) {
        return std::nullopt;
    }
}

struct Room {
    const char *name;
    std::vector<Seed> (*seeds)();
};

class Scarcity : public ::testing::TestWithParam<Room>
{
};

TEST_P(Scarcity, OfOwnMemoryLetsNoOtherContentPass)
{
    constexpr std::size_t kMost = 40;
    for (const Seed &seed : GetParam().seeds()) {
        const auto whole = seed.read(seed.bytes);
        std::size_t points = 0;
        {
            const ScarceMemory plenty(0, false, 1);
            readOrRefuse(seed, seed.bytes);
            points = ScarceMemory::count();
        }
        for (std::size_t at = 1; at <= points; at += points / kMost + 1) {
            for (const bool forEver : {false, true}) {
                std::optional<std::string> read;
                {
                    const ScarceMemory scarce(at, forEver, 1);
                    read = readOrRefuse(seed, seed.bytes);
                }
                EXPECT_TRUE(!read || read == whole) << seed.name << ", allocation " << at;
            }
        }
    }
}

TEST_P(Scarcity, OfTheLibrarysMemoryLetsNoOtherContentPass)
{
    for (const Seed &seed : GetParam().seeds()) {
        Bytes damaged = seed.bytes;
        damaged.back() ^= 1;
        for (const Bytes &bytes : {seed.bytes, damaged}) {
            const auto whole = seed.read(bytes);
            failing_library::failEverywhere([&] {
                const auto read = seed.read(bytes);
                EXPECT_TRUE(!read || read == whole) << seed.name;
            });
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    Of, Scarcity,
    ::testing::Values(Room{"Firmware", &firmwareSeeds}, Room{"Containers", &containerSeeds},
                      Room{"Packages", &packageSeeds}, Room{"Certificates", &certificateSeeds},
                      Room{"Tables", &tableSeeds}, Room{"Documents", &documentSeeds}),
    [](const auto &room) { return room.param.name; });

}  // namespace
