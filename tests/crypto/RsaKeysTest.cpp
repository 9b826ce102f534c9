#include "crypto/CryptoTestSupport.h"
#include "crypto/service/KeyErrors.h"

#include <QRegularExpression>

#include <sys/wait.h>

namespace
{

/// Replaces slot 2, so that most tests get by without the seconds that 4096 bits take.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
class QuickCrypto : public Crypto
{
public:
    int KeyGen(evp_pkey_st **key) override
    {
        EVP_PKEY_up_ref(rsaKey());
        *key = rsaKey();
        return result;
    }
    int result = 1;
};
#pragma GCC diagnostic pop

class RsaKeys : public CryptoTest
{
protected:
    int generate(Crypto &service, int cipher, const QString &prv = "prv.pem",
                 const QString &pub = "pub.pem")
    {
        int result = 0;
        m_printed = printedBy([&] {
            result = service.GenerateKeys(Chars(bytesAt(prv)), Chars(bytesAt(pub)),
                                          Chars(bytesAt("hash.bin")), Chars("secret"),
                                          static_cast<CIHERTYPE>(cipher));
        });
        return result;
    }
    /// The encrypted file without its armour.
    QByteArray der(const QString &name) const
    {
        return QByteArray::fromBase64(contents(name).split('-').value(10));
    }
    std::string m_printed;
};

const QString kAes128 = "1|AES_128_cbc algorithm is selected for private key encription\n";
const QString kAes256 = "1|AES_256_cbc algorithm is selected for private key encription\n";
const QString kStart = "5|Error: Generating RSA private key... \n";
const QString kSaving = "1|Saving RSA private key...\n";
const QString kPrivateDone = "1|Private key PEM file created\n";

TEST_F(RsaKeys, RealPairOf4096BitsIsWrittenWithoutAHash)
{
    Crypto service;
    ERR_raise(ERR_LIB_EVP, ERR_R_INTERNAL_ERROR);  // a stranger's failure must not count
    ASSERT_EQ(generate(service, 0), 1);
    EXPECT_EQ(messages(),
              (QStringList{kAes128, kStart, "1|RSA key ok \n", kSaving, kPrivateDone,
                           "1|Public key PEM file created\n", "5|Error: Not supported operation\n",
                           "5|Error: Error: calculating PubKey hash fails\n",
                           "1|Key generation done\n"}));
    EXPECT_EQ(m_printed, "Error: converting public Key to DER Format fails \n");
    EXPECT_EQ(entries(), (QStringList{"prv.pem", "pub.pem"}));
    EXPECT_EQ(mode("prv.pem"), 0400);
    EXPECT_EQ(mode("pub.pem"), 0444);
    EVP_PKEY *found = nullptr;
    ASSERT_EQ(service.ReadPubKey(Chars(bytesAt("pub.pem")), &found), 1);
    const crypto::EvpKey key(found);
    EXPECT_EQ(EVP_PKEY_get_bits(found), 4096);
}

TEST_F(RsaKeys, TheCipherTypePicksTheCipher)
{
    QuickCrypto service;
    const auto aes = QByteArray::fromHex("0609608648016503040102");
    const auto aes256 = QByteArray::fromHex("060960864801650304012a");
    EXPECT_EQ(generate(service, 0), 1);
    EXPECT_TRUE(der("prv.pem").contains(aes));
    EXPECT_EQ(generate(service, 1), 1);
    EXPECT_TRUE(der("prv.pem").contains(aes256));
    EXPECT_EQ(messages().count(kAes256), 1);
    EXPECT_EQ(generate(service, 2, "other.pem"), -1);
    EXPECT_EQ(messages(),
              QStringList("1|Unsupported algorithm selected for private key encription\n"));
    EXPECT_EQ(entries(), (QStringList{"prv.pem", "pub.pem"}));
}

TEST_F(RsaKeys, TheFirstFailureEndsTheWorkflow)
{
    QuickCrypto service;
    EXPECT_EQ(generate(service, 0, "missing/prv.pem"), -1);
    EXPECT_EQ(messages(),
              (QStringList{kAes128, kStart, kSaving, "5|Error: Error: creating Key File fails\n",
                           "5|Error: Error: creating PEM file fails\n"}));
    EXPECT_EQ(generate(service, 0, "prv.pem", "missing/pub.pem"), -1);
    EXPECT_EQ(messages(), (QStringList{kAes128, kStart, kSaving, kPrivateDone,
                                       "5|Error: Error: creating key file fails\n",
                                       "5|Error: Error: creating Pubkey.pem fails\n"}));
    EXPECT_EQ(entries(), QStringList("prv.pem"));
    service.result = 0;
    EXPECT_EQ(generate(service, 0, "again.pem"), -1);
    EXPECT_EQ(messages(),
              (QStringList{kAes128, kStart,
                           "5|Error: Error: fail occured while generating RSA private key\n"}));
}

TEST_F(RsaKeys, ParametersArePrintedAlsoOnAWideStream)
{
    // A stream that was opened anew has no orientation yet, so the first print decides it.
    const pid_t child = ::fork();
    if (child == 0) {
        const bool opened = std::freopen(bytesAt("wide.txt").constData(), "w", stdout) != nullptr;
        const int printed = Crypto().DisplayRSAKeyParams(rsaKey());
        const int after = std::fwprintf(stdout, L"after\n");
        std::fflush(stdout);
        ::_exit(opened && printed == 1 && after == 6 ? 0 : 1);
    }
    int status = 1;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    const QString number = "0x[0-9A-F]+\n";
    const QRegularExpression expected("^p = " + number + "q = " + number + "n = " + number +
                                      "e = 0x010001\nd = " + number + "after\n$");
    EXPECT_TRUE(expected.match(contents("wide.txt")).hasMatch());
}

TEST_F(RsaKeys, CheckFaultsAreReportedUntilAStrangersError)
{
    ERR_clear_error();
    ERR_raise(ERR_LIB_RSA, RSA_R_P_NOT_PRIME);
    ERR_raise(ERR_LIB_RSA, RSA_R_Q_NOT_PRIME);
    ERR_raise(ERR_LIB_RSA, ERR_R_MALLOC_FAILURE);
    ERR_raise(ERR_LIB_RSA, RSA_R_D_E_NOT_CONGRUENT_TO_1);
    crypto::reportKeyErrors();
    // The reasons are shorter than what is skipped of them.
    EXPECT_EQ(messages(), (QStringList{"5|Error: RSA key error: ", "5|Error: ",
                                       "5|Error: RSA key error: ", "5|Error: "}));
    EXPECT_EQ(ERR_GET_REASON(ERR_get_error()), ERR_R_MALLOC_FAILURE);
    EXPECT_NE(ERR_get_error(), 0u);
    EXPECT_EQ(ERR_get_error(), 0u);
}

TEST(CryptoLayout, VirtualOperationsKeepTheirSlots)
{
    // By this platform's ABI the first word of a pointer to a virtual member is its offset + 1.
    const auto slot = [](auto member) {
        std::uintptr_t words[2] = {};
        static_assert(sizeof member == sizeof words);
        std::memcpy(words, &member, sizeof words);
        return (words[0] - 1) / sizeof(void *);
    };
    EXPECT_EQ(slot(&Crypto::GetPubKeyBin), 0u);
    EXPECT_EQ(slot(&Crypto::KeyGen), 1u);
    EXPECT_EQ(slot(&Crypto::sign), 2u);
    EXPECT_EQ(sizeof(Crypto), 3 * sizeof(void *));
}

}  // namespace
