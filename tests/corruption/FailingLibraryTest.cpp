// OpenSSL fails in the middle of reading, opening and verifying: a file may then be refused, but
// must never be taken for what it isn't.
#include "support/FailingLibrary.h"
#include "corruption/Harness.h"

#include <gtest/gtest.h>

#include <QString>

namespace
{

using namespace corruption;

class FailingLibrary : public ::testing::TestWithParam<std::vector<Seed> (*)()>
{
};

TEST_P(FailingLibrary, LetsNoOtherContentPass)
{
    std::size_t tried = 0;
    for (const Seed &seed : GetParam()()) {
        Bytes damaged = seed.bytes;
        damaged.back() ^= 1;
        for (const Bytes &bytes : {seed.bytes, damaged}) {
            const auto whole = seed.read(bytes);
            tried += failing_library::failEverywhere([&] {
                const auto read = seed.read(bytes);
                EXPECT_TRUE(!read || read == whole) << seed.name;
            });
        }
    }
    EXPECT_GT(tried, 1000U);
}

INSTANTIATE_TEST_SUITE_P(Of, FailingLibrary, ::testing::Values(&packageSeeds, &certificateSeeds),
                         [](const auto &each) { return each.index == 0 ? "Packages" : "Keys"; });

}  // namespace
