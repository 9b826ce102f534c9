#include "preparation/SfiBuilder.h"
#include "preparation/SfiRequestBuilder.h"

#include <gtest/gtest.h>

namespace
{

using namespace preparation;

/// What a sealer could do wrong without anyone noticing before the device does.
struct WrongSealer {
    const char *name;
    std::function<void(Plan &)> spoilPlan;
    std::function<void(QByteArray &)> spoilImage;
};

class SfiBuilder : public ::testing::TestWithParam<WrongSealer>
{
protected:
    files::Result<QByteArray> build(const SealFunction &seal)
    {
        SfiRequest request;
        request.firmware = &m_records.firmwareFile;
        request.optionBytes = &m_records.optionBytes;
        request.key = view(m_records.key);
        request.nonce = view(m_records.nonce);
        std::vector<std::string> notices;
        return buildSfi(request, notices, seal);
    }
    static ByteView view(const QByteArray &bytes)
    {
        return {reinterpret_cast<const std::uint8_t *>(bytes.constData()),
                static_cast<std::size_t>(bytes.size())};
    }

    SfiRequestBuilder m_records = std::move(SfiRequestBuilder().firmware(0x08000000, {1, 2, 3}));
};

TEST_P(SfiBuilder, GivesNoImageThatDiffersFromItsPlan)
{
    ASSERT_TRUE(build(&sealImage)) << "the request is good";
    const auto image = build([](const Plan &plan, ByteView key, ByteView nonce) {
        Plan spoilt;
        spoilt.version = plan.version;
        spoilt.imageVersion = plan.imageVersion;
        spoilt.profile = plan.profile;
        spoilt.areas = plan.areas;
        if (GetParam().spoilPlan) {
            GetParam().spoilPlan(spoilt);
        }
        auto sealed = sealImage(spoilt, key, nonce);
        if (sealed && GetParam().spoilImage) {
            GetParam().spoilImage(*sealed);
        }
        return sealed;
    });
    EXPECT_FALSE(image);
}

const std::uint8_t kOtherBytes[3] = {1, 2, 4};

INSTANTIATE_TEST_SUITE_P(
    Faults, SfiBuilder,
    ::testing::Values(
        WrongSealer{"OtherByte", [](Plan &plan) { plan.areas[0].pieces = {kOtherBytes}; }, {}},
        WrongSealer{"OtherAddress", [](Plan &plan) { plan.areas[0].address += 4; }, {}},
        WrongSealer{"AreaLeftOut", [](Plan &plan) { plan.areas.erase(plan.areas.begin()); }, {}},
        WrongSealer{"OtherImageVersion", [](Plan &plan) { plan.imageVersion ^= 1; }, {}},
        WrongSealer{"OtherProfile", [](Plan &plan) { plan.profile = kProfileH5; }, {}},
        WrongSealer{"DamagedTag",
                    {},
                    [](QByteArray &image) { image[42] = static_cast<char>(image[42] ^ 1); }},
        WrongSealer{"ByteTooFew", {}, [](QByteArray &image) { image.chop(1); }}),
    [](const auto &tested) { return tested.param.name; });

}  // namespace
