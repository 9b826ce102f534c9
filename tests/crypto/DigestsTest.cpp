#include "crypto/primitives/Digests.h"
#include "crypto/primitives/AesGcm.h"

#include <gtest/gtest.h>

#include <QByteArray>

#include <vector>

namespace
{

std::vector<std::uint8_t> hex(const char *digits)
{
    const QByteArray bytes = QByteArray::fromHex(digits);
    return {bytes.begin(), bytes.end()};
}

std::string hexOf(crypto::ByteView bytes)
{
    return QByteArray(reinterpret_cast<const char *>(bytes.data()), static_cast<int>(bytes.size()))
        .toHex()
        .toStdString();
}

const std::string kText = "what do ya want for nothing?";
const crypto::ByteView kTextBytes(reinterpret_cast<const std::uint8_t *>(kText.data()),
                                  kText.size());

// The examples of the standards themselves, each in more than one piece.
TEST(Digests, AreThoseOfTheStandards)
{
    crypto::Sha256 sha;
    for (const std::size_t cut : {0, 1, 28}) {  // one object, used again
        sha.begin();
        sha.update(kTextBytes.first(cut));
        sha.update(kTextBytes.subspan(cut));
        EXPECT_EQ(*sha.finish(), *crypto::sha256(kTextBytes)) << cut;
    }
    EXPECT_EQ(hexOf(*crypto::sha256({})),
              "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
    crypto::HmacSha256 mac(hex("4a656665"));  // RFC 4231, case 2
    mac.update(kTextBytes.first(10));
    mac.update(kTextBytes.subspan(10));
    EXPECT_EQ(hexOf(*mac.finish()),
              "5bdcc146bf60754e6a042426089575c75a003f089d2739839dec58b964ec3843");
    // RFC 5869, case 3: neither salt nor info.
    EXPECT_EQ(hexOf(crypto::hkdfSha256(std::vector<std::uint8_t>(22, 0x0B), {}, 42)->span()),
              "8da4e775a563c18f715f802a063c5a31b8a11f5c5ee1879ec3454e5f3c738d2d"
              "9d201395faa4b61a96c8");
}

TEST(AesGcm, IsThatOfTheStandardAndSeesEachChange)
{
    // Test case 4 of the GCM document by McGrew and Viega.
    const auto key = hex("feffe9928665731c6d6a8f9467308308");
    const auto plain = hex("d9313225f88406e5a55909c5aff5269a86a7a9531534f7da2e4c303d8a318a72"
                           "1c3c0c95956809532fcf0e2449a6b525b16aedf5aa0de657ba637b39");
    const auto associated = hex("feedfacedeadbeeffeedfacedeadbeefabaddad2");
    const crypto::GcmIv iv = {0xCA, 0xFE, 0xBA, 0xBE, 0xFA, 0xCE,
                              0xDB, 0xAD, 0xDE, 0xCA, 0xF8, 0x88};
    crypto::AesGcm sealer(crypto::AesGcm::Direction::Seal, key);
    std::vector<std::uint8_t> sealed(plain.size());
    sealer.begin(iv, crypto::ByteView(associated).first(4));
    sealer.associate(crypto::ByteView(associated).subspan(4));
    sealer.update(crypto::ByteView(plain).first(17), sealed.data());
    sealer.update(crypto::ByteView(plain).subspan(17), sealed.data() + 17);
    auto tag = sealer.finishSealing();
    ASSERT_TRUE(tag);
    EXPECT_EQ(hexOf(sealed).substr(0, 32), "42831ec2217774244b7221b784d0d49c");
    EXPECT_EQ(hexOf(*tag), "5bc94fbc3221a5db94fae95ae7121a47");

    crypto::AesGcm opener(crypto::AesGcm::Direction::Open, key);
    const auto opens = [&](crypto::ByteView bytes, crypto::ByteView front, crypto::ByteView mark) {
        std::vector<std::uint8_t> opened(bytes.size());
        opener.begin(iv, front);
        opener.update(bytes, opened.data());
        const auto verdict = opener.finishOpening(mark);
        return verdict && *verdict && opened == plain;
    };
    EXPECT_TRUE(opens(sealed, associated, *tag));
    EXPECT_FALSE(opens(sealed, crypto::ByteView(associated).first(19), *tag));
    EXPECT_FALSE(opens(sealed, associated, crypto::ByteView(*tag).first(15))) << "a short tag";
    sealed[0] ^= 1;
    EXPECT_FALSE(opens(sealed, associated, *tag));
    sealed[0] ^= 1;
    (*tag)[15] ^= 0x80;
    EXPECT_FALSE(opens(sealed, associated, *tag));
    (*tag)[15] ^= 0x80;
    EXPECT_TRUE(opens(sealed, associated, *tag)) << "a refusal doesn't stick";

    crypto::AesGcm shortKey(crypto::AesGcm::Direction::Seal, crypto::ByteView(key).first(15));
    shortKey.begin(iv, associated);
    EXPECT_FALSE(shortKey.finishSealing());
}

TEST(Bytes, AreEqualOnlyInFull)
{
    const auto one = hex("00010203");
    EXPECT_TRUE(crypto::isEqual(one, hex("00010203")));
    EXPECT_FALSE(crypto::isEqual(one, hex("00010202")));
    EXPECT_FALSE(crypto::isEqual(one, hex("01010203")));
    EXPECT_FALSE(crypto::isEqual(one, hex("000102")));
    EXPECT_TRUE(crypto::isEqual({}, {}));
    std::vector<std::uint8_t> random(64);
    ASSERT_TRUE(crypto::fillRandom(random));
    EXPECT_NE(random, std::vector<std::uint8_t>(64));
}

TEST(AesGcm, TakesNoKeyAndNoTagOfAnotherSize)
{
    const std::vector<std::uint8_t> key(16, 7);
    crypto::AesGcm seal(crypto::AesGcm::Direction::Seal, key);
    seal.begin({}, kTextBytes);
    const auto tag = seal.finishSealing();
    ASSERT_TRUE(tag);
    for (const std::size_t size : {0, 15, 16, 17}) {
        std::vector<std::uint8_t> offered(tag->begin(), tag->end());
        offered.resize(size);
        crypto::AesGcm open(crypto::AesGcm::Direction::Open, key);
        open.begin({}, kTextBytes);
        EXPECT_EQ(open.finishOpening(offered).value_or(false), size == tag->size()) << size;
    }
    crypto::AesGcm shortKey(crypto::AesGcm::Direction::Seal, crypto::ByteView(key).first(15));
    shortKey.begin({}, {});
    EXPECT_FALSE(shortKey.finishSealing());
}

}  // namespace
