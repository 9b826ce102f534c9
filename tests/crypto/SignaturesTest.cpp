#include "crypto/CryptoTestSupport.h"

#include <openssl/param_build.h>

namespace
{

class Signatures : public CryptoTest
{
protected:
    /// Verifies `sig` over the message "abc", by OpenSSL alone.
    bool isGood()
    {
        const crypto::DigestContext context(EVP_MD_CTX_new());
        EVP_DigestVerifyInit(context.get(), nullptr, EVP_sha256(), nullptr, rsaKey());
        return EVP_DigestVerify(context.get(), sig, sigLen, message, 3) == 1;
    }
    ~Signatures() override { service.Buffer_Cleanup(sig); }

    Crypto service;
    Chars message = Chars("abc");
    unsigned char hash[32] = {};
    unsigned long hashLen = 0;
    unsigned char *sig = nullptr;
    unsigned long sigLen = 0;
};

TEST_F(Signatures, StandUpToOpenSslAndReportTheirSteps)
{
    ASSERT_EQ(service.CalculateDigest(message, 3, hash, &hashLen), 1);
    EXPECT_EQ(QByteArray(reinterpret_cast<char *>(hash), 32).toHex(),
              "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    ERR_raise(ERR_LIB_RSA, ERR_R_INTERNAL_ERROR);  // a stranger's failure must not count
    ASSERT_EQ(service.sign(hash, hashLen, &sig, &sigLen, rsaKey(), true), 1);
    EXPECT_EQ(sigLen, 256u);
    EXPECT_TRUE(isGood());
    EXPECT_EQ(messages(), (QStringList{"1|signature generated\n",
                                       "1|signature verification: ", "2|SUCCESS \n"}));
}

/// A pair whose public exponent isn't that of its private one: it signs, and no one can verify.
crypto::EvpKey tornPair()
{
    crypto::SecretNumber n;
    crypto::SecretNumber d;
    for (const auto &[name, number] : {std::pair("n", &n), std::pair("d", &d)}) {
        BIGNUM *raw = nullptr;
        EVP_PKEY_get_bn_param(rsaKey(), name, &raw);
        number->reset(raw);
    }
    const std::unique_ptr<OSSL_PARAM_BLD, files::FreeWith<&OSSL_PARAM_BLD_free>> build(
        OSSL_PARAM_BLD_new());
    OSSL_PARAM_BLD_push_BN(build.get(), "n", n.get());
    OSSL_PARAM_BLD_push_BN(build.get(), "d", d.get());
    OSSL_PARAM_BLD_push_ulong(build.get(), "e", 17);
    const std::unique_ptr<OSSL_PARAM, files::FreeWith<&OSSL_PARAM_free>> parameters(
        OSSL_PARAM_BLD_to_param(build.get()));
    const crypto::KeyContext context(EVP_PKEY_CTX_new_id(EVP_PKEY_RSA, nullptr));
    EVP_PKEY *made = nullptr;
    EVP_PKEY_fromdata_init(context.get());
    EVP_PKEY_fromdata(context.get(), &made, EVP_PKEY_KEYPAIR, parameters.get());
    return crypto::EvpKey(made);
}

TEST_F(Signatures, AreVerifiedBeforeTheyCountAsGood)
{
    const crypto::EvpKey torn = tornPair();
    ASSERT_TRUE(torn);
    EXPECT_EQ(service.sign(hash, 32, &sig, &sigLen, torn.get(), false), 0);
    EXPECT_EQ(messages(), QStringList("5|Error: FAIL \n"));
}

TEST_F(Signatures, RefusalsNameTheStep)
{
    const struct {
        EVP_PKEY *key;
        unsigned char *digest;
        unsigned long length;
        const char *text;
    } cases[] = {
        {nullptr, hash, 32, "Error: creating signing context fails\n"},
        {p256Key(), hash, 32, "Error: RSA padding fails\n"},
        {rsaKey(), nullptr, 32, "Error: unvalid hash pointer \n"},
        {rsaKey(), hash, 31, "Error: creating signature fails\n"},
    };
    for (const auto &refused : cases) {
        EXPECT_EQ(service.sign(refused.digest, refused.length, &sig, &sigLen, refused.key, true),
                  -1);
        EXPECT_EQ(messages(), QStringList(QString("5|Error: ") + refused.text));
        EXPECT_EQ(sig, nullptr);
    }
}

TEST_F(Signatures, OfAMessageTakeTheKeyFromItsFile)
{
    Chars file = bytesAt("key.pem");
    Chars password("secret");
    ASSERT_EQ(service.SaveEncPrvKey(file, rsaKey(), password, EVP_aes_256_cbc()), 1);
    const auto generate = [&](Chars word) {
        int result = 0;
        const std::string printed = printedBy([&] {
            result =
                service.GenerateSignature(message, 3, file, word, &sig, &sigLen, false, nullptr);
        });
        return result;
    };
    EXPECT_EQ(generate(password), 1);
    EXPECT_TRUE(isGood());
    const QString reading = "1|Reading Private Key File... \n";
    EXPECT_EQ(messages(), QStringList(reading));
    EXPECT_EQ(generate(Chars("wrong")), -1);
    EXPECT_EQ(messages(),
              (QStringList{reading, "5|Error: Error: reading encrypted private key file fails\n",
                           "5|Error: Error: reading private key file fails\n"}));
    ASSERT_EQ(service.SaveEncPrvKey(file, p256Key(), password, EVP_aes_256_cbc()), 1);
    EXPECT_EQ(generate(password), -1);
    EXPECT_EQ(messages(), (QStringList{reading, "5|Error: Error: RSA padding fails\n",
                                       "5|Error: Error: signing fails \n"}));
}

}  // namespace
