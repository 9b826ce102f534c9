#include "crypto/CryptoTestSupport.h"
#include "crypto/service/EC_Crypto.h"

#include <QCryptographicHash>

#include <gmock/gmock.h>
#include <openssl/core_names.h>
#include <openssl/param_build.h>

namespace
{

QByteArray hex(const char *digits)
{
    return QByteArray::fromHex(digits);
}

unsigned char *raw(QByteArray &bytes)
{
    return reinterpret_cast<unsigned char *>(bytes.data());
}

QByteArray sha256(const QByteArray &bytes)
{
    return QCryptographicHash::hash(bytes, QCryptographicHash::Sha256);
}

// RFC 6979, A.2.5: a P-256 pair. RFC 5903, 8.1: two P-256 pairs and what they agree on.
const char *const kOwnNumber = "C9AFA9D845BA75166B5C215767B1D6934E50C3DB36E89B127B8A622B120F6721";
const char *const kOwnPoint = "60FED4BA255A9D31C961EB74C6356D68C049B8923B61FA6CE669622E60F29FB6"
                              "7903FE1008B8BC99A41AE9E95628BC64F2F1B20C2D7E9F5177A3C294D4462299";
const char *const kInitiator = "C88F01F510D9AC3F70A292DAA2316DE544E9AAB8AFE84049C62A9C57862D1433";
const char *const kInitiatorPoint =
    "04DAD0B65394221CF9B051E1FECA5787D098DFE637FC90B9EF945D0C3772581180"
    "5271A0461CDB8252D61F1C456FA3E59AB1F45B33ACCF5F58389E0577B8990BB3";
const char *const kResponder = "C6EF9C5D78AE012A011164ACB397CE2088685D8F06BF9BE0B283AB46476BEE53";
const char *const kResponderPoint =
    "04D12DFB5289C8D4F81208B70270398C342296970A0BCCB74C736FC7554494BF63"
    "56FBF3CA366CC23E8157854C13C58D6AAC23F046ADA30F8353E74F33039872AB";
const char *const kAgreed = "D6840F6B42F6EDAFD13116E0E12565202FEF8E9ECE7DCE03812464D04B9442DE";

crypto::EvpKey keyOf(const char *number, const char *point)
{
    const QByteArray publicPart = hex(point);
    const crypto::SecretNumber d(
        BN_bin2bn(reinterpret_cast<const unsigned char *>(hex(number).constData()), 32, nullptr));
    OSSL_PARAM_BLD *build = OSSL_PARAM_BLD_new();
    OSSL_PARAM_BLD_push_utf8_string(build, OSSL_PKEY_PARAM_GROUP_NAME, "P-256", 0);
    OSSL_PARAM_BLD_push_BN(build, OSSL_PKEY_PARAM_PRIV_KEY, d.get());
    OSSL_PARAM_BLD_push_octet_string(build, OSSL_PKEY_PARAM_PUB_KEY, publicPart.constData(),
                                     static_cast<std::size_t>(publicPart.size()));
    OSSL_PARAM *params = OSSL_PARAM_BLD_to_param(build);
    const crypto::KeyContext context(EVP_PKEY_CTX_new_from_name(nullptr, "EC", nullptr));
    EVP_PKEY *key = nullptr;
    EVP_PKEY_fromdata_init(context.get());
    EVP_PKEY_fromdata(context.get(), &key, EVP_PKEY_KEYPAIR, params);
    OSSL_PARAM_free(params);
    OSSL_PARAM_BLD_free(build);
    return crypto::EvpKey(key);
}

/// Whether OpenSSL alone finds a raw signature right.
bool isRight(EVP_PKEY *key, const QByteArray &digest, const unsigned char *sig)
{
    ECDSA_SIG *numbers = ECDSA_SIG_new();
    ECDSA_SIG_set0(numbers, BN_bin2bn(sig, 32, nullptr), BN_bin2bn(sig + 32, 32, nullptr));
    unsigned char *der = nullptr;
    const int size = i2d_ECDSA_SIG(numbers, &der);
    ECDSA_SIG_free(numbers);
    const crypto::Buffer owner(der);
    const crypto::KeyContext context(EVP_PKEY_CTX_new(key, nullptr));
    EVP_PKEY_verify_init(context.get());
    return EVP_PKEY_verify(context.get(), der, static_cast<std::size_t>(size),
                           reinterpret_cast<const unsigned char *>(digest.constData()),
                           static_cast<std::size_t>(digest.size())) == 1;
}

class EcKeys : public CryptoTest
{
protected:
    EC_Crypto service;
    unsigned char *out = nullptr;
    unsigned long outLen = 0;
};

TEST_F(EcKeys, CurvesAreStoredBeforeTheyAreJudged)
{
    EXPECT_EQ(EC_Crypto(928).curveNID, 928);
    EXPECT_TRUE(messages().isEmpty());
    EXPECT_EQ(service.SetCurveNID(415), 1);
    EXPECT_EQ(service.SetCurveNID(928), 1);
    EXPECT_EQ(service.SetCurveNID(716), -1);
    EXPECT_EQ(service.curveNID, 716);
    EXPECT_EQ(messages(), (QStringList{"1|Prime256v1 curve is selected. \n",
                                       "1|brainpoolP256t1 curve is selected.\n",
                                       "5|Error: Unsupported curve NID!\n"}));
    EVP_PKEY *key = nullptr;
    EXPECT_EQ(service.KeyGen(&key), 1);  // 716 is a curve that OpenSSL knows
    EVP_PKEY_free(key);
    service.curveNID = 1;
    EXPECT_EQ(service.KeyGen(&key), 0);
}

TEST_F(EcKeys, PairsGoToThreeFilesAndComeBackRaw)
{
    for (const int curve : {415, 928}) {
        service.curveNID = curve;
        ASSERT_EQ(service.GenerateKeys(Chars(bytesAt("prv.pem")), Chars(bytesAt("pub.pem")),
                                       Chars(bytesAt("hash.bin")), Chars("secret"),
                                       CIHERTYPE_AES_256_CBC),
                  1);
        EXPECT_EQ(messages().last(), "1|public key hash file created \n");
        Crypto &base = service;  // what the hash goes through
        EXPECT_EQ(service.GetPubKeyBinDer(Chars(bytesAt("pub.pem")), &out, &outLen), 1);
        const QByteArray der(reinterpret_cast<char *>(out), static_cast<int>(outLen));
        service.Buffer_Cleanup(out);
        EXPECT_EQ(der.size(), curve == 415 ? 91 : 92);
        ASSERT_EQ(service.GetPubKeyBin(Chars(bytesAt("pub.pem")), &out, &outLen), 1);
        EXPECT_EQ(QByteArray(reinterpret_cast<char *>(out), static_cast<int>(outLen)),
                  der.right(64));
        service.Buffer_Cleanup(out);
        EXPECT_EQ(contents("hash.bin"), sha256(der.right(64)));
        EVP_PKEY *key = nullptr;
        ASSERT_EQ(base.ReadEncPrvKey(Chars(bytesAt("prv.pem")), &key, Chars("secret"), nullptr), 1);
        EVP_PKEY_free(key);
    }
}

TEST_F(EcKeys, NothingIsMadeWithoutAKeyACurveOrAPlaceForIt)
{
    service.curveNID = 415;
    const Chars file = bytesAt("a.pem");
    const auto path = [&file] { return file; };
    ASSERT_EQ(service.SavePrvKey(path(), p256Key()), 1);
    messages();
    unsigned char digest[32] = {};
    const std::function<int()> calls[] = {
        [&] { return service.ReadPrvKey(path(), nullptr, nullptr); },
        [&] { return service.ReadPubKey(path(), nullptr); },
        [&] { return service.ReadEncPrvKey(path(), nullptr, Chars("x"), nullptr); },
        [&] { return service.SavePrvKey(Chars(bytesAt("b.pem")), nullptr); },
        [&] { return service.SavePubKey(Chars(bytesAt("b.pem")), nullptr); },
        [&] {
            return service.SaveEncPrvKey(Chars(bytesAt("b.pem")), nullptr, Chars("x"), nullptr);
        },
        [&] { return service.SaveHashPubKey(nullptr, Chars(bytesAt("b.bin"))); },
        [&] { return service.GetPubKeyDER(static_cast<EVP_PKEY *>(nullptr), &out, &outLen); },
        [&] { return service.GetPrvKeyBin(path(), nullptr); },
        [&] { return service.sign(digest, sizeof digest, &out, &outLen, nullptr); },
        [&] { return service.sign(digest, sizeof digest, &out, &outLen, nullptr, false); },
        [&] { return service.DisplayRSAKeyParams(nullptr); },
        [&] {
            service.curveNID = 7;
            return service.GenerateKeys(Chars(bytesAt("b.pem")), Chars(bytesAt("c.pem")),
                                        Chars(bytesAt("b.bin")), Chars("x"), CIHERTYPE_AES_128_CBC);
        },
    };
    for (std::size_t i = 0; i < std::size(calls); ++i) {
        EXPECT_LE(calls[i](), 0) << i;
    }
    EXPECT_EQ(entries(), QStringList{"a.pem"});
    EXPECT_EQ(service.generateSspKey(Chars(bytesAt("ssp.bin"))), 0);
    EXPECT_EQ(contents("ssp.bin").size(), 16);
}

TEST_F(EcKeys, AFailedHashFailsTheRequestAndLeavesThePemFiles)
{
    service.curveNID = 415;
    EXPECT_EQ(service.GenerateKeys(Chars(bytesAt("prv.pem")), Chars(bytesAt("pub.pem")),
                                   Chars(bytesAt("none/hash.bin")), Chars("secret"),
                                   CIHERTYPE_AES_128_CBC),
              -1);
    EXPECT_EQ(messages().last(), "5|Error: Error occured while creating public key hash file!\n");
    EXPECT_EQ(entries(), (QStringList{"prv.pem", "pub.pem"}));
    EXPECT_EQ(service.GenerateKeys(Chars(bytesAt("p.pem")), Chars(bytesAt("none/pub.pem")),
                                   Chars(bytesAt("hash.bin")), Chars("secret"),
                                   CIHERTYPE_AES_128_CBC),
              -1);
    EXPECT_EQ(messages().last(), "5|Error: Error occured while creating public key PEM file!\n");
    EXPECT_FALSE(entries().contains("hash.bin"));
}

TEST_F(EcKeys, AFileWithoutAPublicKeyGivesNothing)
{
    put("no.pem", "-----BEGIN PUBLIC KEY-----\nAAAA\n-----END PUBLIC KEY-----\n");
    EXPECT_EQ(service.GetPubKeyBinDer(Chars(bytesAt("no.pem")), &out, &outLen), 0);
    EXPECT_EQ(service.GetPubKeyBinDer(Chars(bytesAt("none.pem")), &out, &outLen), 0);
    EXPECT_EQ(messages().last(), "5|Error: Reading public key fails \n");
    EXPECT_EQ(service.GetPubKeyBin(Chars(bytesAt("no.pem")), &out, &outLen), -1);
    EXPECT_EQ(out, nullptr);
}

TEST_F(EcKeys, SignaturesAreRAndSAndStandUpToOpenSsl)
{
    const auto key = keyOf(kOwnNumber, (std::string("04") + kOwnPoint).c_str());
    ASSERT_EQ(service.GetPubKeyBin(key.get(), &out, &outLen), 1);  // curve 0 cuts 27 bytes
    EXPECT_EQ(QByteArray(reinterpret_cast<char *>(out), static_cast<int>(outLen)), hex(kOwnPoint));
    service.Buffer_Cleanup(out);
    messages();
    QByteArray digest = sha256("sample");
    // Enough that numbers with a leading zero byte come up: one in 128.
    for (int i = 0; i < 300; ++i) {
        ASSERT_EQ(service.sign(raw(digest), 32, &out, &outLen, key.get()), 1);
        ASSERT_EQ(outLen, 64u);
        ASSERT_TRUE(isRight(key.get(), digest, out));
        service.Buffer_Cleanup(out);
    }
    EXPECT_EQ(messages().mid(0, 3), (QStringList{"1|ECDSA signature generated.\n",
                                                 "1|signature verification: ", "2|SUCCESS \n"}));
}

TEST_F(EcKeys, RefusedSignaturesNameTheStep)
{
    QByteArray digest = sha256("sample");
    EXPECT_EQ(service.sign(raw(digest), 32, &out, &outLen, rsaKey()), -1);
    EXPECT_EQ(service.sign(nullptr, 32, &out, &outLen, p256Key()), -1);
    const crypto::EvpKey wide(EVP_EC_gen("P-384"));
    EXPECT_EQ(messages(), (QStringList{"5|Error: Error: determining signing buffer length fails \n",
                                       "5|Error: Error: unvalid hash pointer \n"}));
    EXPECT_EQ(service.sign(raw(digest), 32, &out, &outLen, wide.get()), -1);
    service.Buffer_Cleanup(out);
}

class Agreement : public CryptoTest
{
protected:
    int agree(const char *number, const QByteArray &point)
    {
        QByteArray own = hex(number);
        QByteArray peer = point;
        unsigned char *target = raw(secret);
        return service.EC_DH(&target, raw(own), raw(peer), 32);
    }
    Crypto service;
    QByteArray secret = QByteArray(32, 'x');
};

TEST_F(Agreement, BothSidesDeriveTheSameSecret)
{
    const QByteArray derived = sha256(hex(kAgreed) + hex("00000001"));
    EXPECT_EQ(agree(kInitiator, hex(kResponderPoint)), 32);
    EXPECT_EQ(secret, derived);
    EXPECT_EQ(agree(kResponder, hex(kInitiatorPoint)), 32);
    EXPECT_EQ(secret, derived);
    EXPECT_TRUE(messages().isEmpty());
    EXPECT_EQ(service.TestEC_DH(), 1);
    EXPECT_EQ(messages(), QStringList("2|ECDH Work correctly yeaaah\n"));
}

TEST_F(Agreement, APointOffTheCurveNeverGivesASecret)
{
    QByteArray off = hex(kResponderPoint);
    off[64] = static_cast<char>(off[64] ^ 1);
    QByteArray compressed = hex(kResponderPoint);
    compressed[0] = 3;
    for (const QByteArray &bad : {off, compressed, QByteArray(65, '\0')}) {
        EXPECT_LE(agree(kInitiator, bad), 0);
        EXPECT_EQ(secret, QByteArray(32, 'x'));
        EXPECT_FALSE(messages().isEmpty());
    }
    unsigned char *none = nullptr;
    QByteArray own = hex(kInitiator);
    EXPECT_EQ(service.EC_DH(&none, raw(own), raw(off), 32), 0);
    EXPECT_EQ(messages(), (QStringList{"5|Error: Failed EC_KEY_new().\n",
                                       "5|Error: Failed to allocate memory for secret.\n"}));
}

TEST_F(Agreement, WholeBlocksOfALongKeyLieOverEachOther)
{
    const auto block = [](int counter) {
        return sha256(QByteArray("in") + QByteArray(3, '\0') + static_cast<char>(counter));
    };
    for (const auto &[size, expected] : {std::pair<std::size_t, QByteArray>{5, block(1).left(5)},
                                         {64, block(1) + block(2)},
                                         {70, block(2) + QByteArray(32, '.') + block(3).left(6)}}) {
        QByteArray out(static_cast<int>(size), '.');
        std::size_t wanted = size;
        EXPECT_NE(KeyDerivationFunction("in", 2, out.data(), &wanted), nullptr);
        EXPECT_EQ(out, expected);
    }
    unsigned char reversed[3] = {};
    const unsigned char bytes[] = {1, 2, 3};
    EC_Crypto().bn_Copy(reversed, bytes, 3);
    EXPECT_THAT(reversed, ::testing::ElementsAre(3, 2, 1));
}

}  // namespace
