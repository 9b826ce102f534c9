#include "certif/Examination.h"

#include "certif/Certificates.h"

#include <gtest/gtest.h>

#include <functional>

using namespace certif;

TEST(Certificate, EachFlippedBitIsNoticedByParserOrSignature)
{
    const auto bytes = encode(leaf());
    ASSERT_EQ(bytes.size(), kCertificateBytes);
    for (std::size_t bit = 0; bit < 8 * bytes.size(); ++bit) {
        auto flipped = bytes;
        flipped[bit / 8] = static_cast<std::uint8_t>(flipped[bit / 8] ^ 1U << bit % 8);
        const auto parsed = parseCertificate(flipped);
        EXPECT_TRUE(!parsed || examine({root(), *parsed})[1].issuer == Issuer::Differs) << bit;
    }
}

TEST(Certificate, IsRefusedWhenCutLongerOrOfAnotherKind)
{
    const auto bytes = encode(root());
    for (std::size_t size = 0; size < bytes.size(); ++size) {
        EXPECT_FALSE(parseCertificate(std::span(bytes).first(size))) << size;
    }
    auto longer = bytes;
    longer.push_back(0);
    EXPECT_EQ(parseCertificate(longer).error().code, files::ErrorCode::WrongSize);
    auto other = bytes;
    other[3] = 5;
    EXPECT_EQ(parseCertificate(other).error().text,
              "keys of the kind Ed25519 can't be checked here");
}

TEST(Chain, ComesBackAsWritten)
{
    const Chain chain{root(), certificate(Role::Intermediate, kMiddleKey, kRootKey),
                      certificate(Role::Leaf, kLeafKey, kMiddleKey)};
    const QByteArray one = text(chain);
    QByteArray wrapped = one;
    wrapped.insert(64, "\r\n");
    const QByteArray parts = text({chain[0]}) + "\n" + text({chain[1]}) + text({chain[2]}) + "\n";
    for (const QByteArray &form : {one, wrapped, parts, QByteArray::fromBase64(one)}) {
        const auto read = readChain(form);
        ASSERT_TRUE(read) << read.error().text;
        ASSERT_EQ(read->size(), 3U);
        for (std::size_t i = 0; i < read->size(); ++i) {
            EXPECT_EQ(encode((*read)[i]), encode(chain[i]));
            EXPECT_TRUE(examine(*read)[i].faults.empty());
        }
    }
    for (const QByteArray &bad :
         {QByteArray(), one.chopped(1), one + "!", QByteArray("AAEC"), one.left(400)}) {
        EXPECT_FALSE(readChain(bad)) << bad.constData();
    }
}

struct Useless {
    const char *name;
    std::function<Chain()> chain;
    const char *fault;
};

class ChainFaults : public ::testing::TestWithParam<Useless>
{
};

TEST_P(ChainFaults, AreNamedAtTheLastCertificate)
{
    const auto steps = examine(GetParam().chain());
    ASSERT_EQ(steps.back().faults.size(), 1U);
    EXPECT_EQ(steps.back().faults[0], GetParam().fault);
}

INSTANTIATE_TEST_SUITE_P(
    Chains, ChainFaults,
    ::testing::Values(
        Useless{"NoRoot", [] { return Chain{leaf()}; },
                "The chain begins with no root certificate"},
        Useless{"RootOfAnotherKey",
                [] { return Chain{certificate(Role::Root, kRootKey, kLeafKey)}; },
                "The root certificate is not signed by its own key"},
        Useless{"WrongIssuer",
                [] {
                    return Chain{root(), certificate(Role::Leaf, kLeafKey, kMiddleKey)};
                },
                "It is not signed by the key of the certificate above"},
        Useless{"SecondRoot",
                [] {
                    return Chain{root(), certificate(Role::Root, kMiddleKey, kRootKey)};
                },
                "A second root certificate stands below the first"},
        Useless{"BelowALeaf",
                [] {
                    return Chain{root(), leaf(), certificate(Role::Leaf, kLeafKey, kLeafKey)};
                },
                "Nothing may stand below a leaf certificate"},
        Useless{"RightNotGranted",
                [] {
                    return Chain{root(), leaf([](auto &c) {
                                     c.permissions[0] = 0x31;
                                     c.permissions[1] = 0x07;
                                 })};
                },
                "Rights that the chain above doesn't grant, bits 4, 5, 8 to 10"},
        Useless{"OtherClass",
                [] {
                    return Chain{root(), leaf([](auto &c) { c.socClass = 6; })};
                },
                "The SoC class differs from the one above"},
        Useless{
            "OtherDevice",
            [] {
                const auto bound = [](std::uint8_t id) {
                    return [id](Certificate &c) { c.socId[3] = id; };
                };
                return Chain{certificate(Role::Root, kRootKey, kRootKey, bound(1)), leaf(bound(2))};
            },
            "The SoC identifier differs from the one above"},
        Useless{
            "OtherConstraint",
            [] {
                const auto bound = [](std::uint16_t constraint) {
                    return [constraint](Certificate &c) { c.oemConstraint = constraint; };
                };
                return Chain{certificate(Role::Root, kRootKey, kRootKey, bound(1)), leaf(bound(2))};
            },
            "The OEM constraint differs from the one above"}),
    [](const auto &row) { return row.param.name; });

TEST(Chain, RightsOnlyEverShrink)
{
    const auto steps = examine({root(), leaf([](auto &c) { c.permissions[0] = 0x13; })});
    EXPECT_EQ(steps[1].remaining[0], 0x03);
    EXPECT_EQ(steps[1].remaining[15], 0);
}
