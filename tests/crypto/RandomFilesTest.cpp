// The random source is swapped through the old method table; there is no other way to see it fail.
#define OPENSSL_SUPPRESS_DEPRECATED
#include "crypto/CryptoTestSupport.h"

#include <openssl/rand.h>

namespace
{

using RandomFiles = CryptoTest;

struct BrokenSource {
    BrokenSource()
    {
        static RAND_METHOD broken = {
            nullptr, [](unsigned char *, int) { return 0; }, nullptr, nullptr, nullptr, nullptr};
        RAND_set_rand_method(&broken);
    }
    ~BrokenSource() { RAND_set_rand_method(RAND_OpenSSL()); }
};

TEST_F(RandomFiles, HaveTheirSizeAndAreTheOwnersAloneUnderAnyMask)
{
    const mode_t before = ::umask(0);
    Crypto crypto;
    EXPECT_EQ(crypto.generateSspKey(at("ssp.bin")), 0);
    EXPECT_EQ(crypto.generateEncryptionandNonce(at("nonce %s.bin"), 12), 0);
    EXPECT_EQ(crypto.generateEncryptionandNonce(at("empty.bin"), -1), 0);
    ::umask(before);
    EXPECT_EQ(contents("ssp.bin").size(), 16);
    EXPECT_EQ(contents("nonce %s.bin").size(), 12);
    EXPECT_EQ(contents("empty.bin"), "");
    for (const QString &name : entries()) {
        EXPECT_EQ(mode(name), 0600) << name.toStdString();
    }
    EXPECT_EQ(entries().size(), 3);
    EXPECT_EQ(messages(), QStringList());
}

TEST_F(RandomFiles, ReplaceALongerOldFileWithAWarning)
{
    put("old %ls.bin", QByteArray(40, 'x'));
    QByteArray path = bytesAt("old %ls.bin");
    auto *name = reinterpret_cast<unsigned char *>(path.data());
    EXPECT_EQ(Crypto().generateEncryptionandNonce(name, 12), 0);
    EXPECT_EQ(contents("old %ls.bin").size(), 12);
    EXPECT_EQ(mode("old %ls.bin"), 0600);
    EXPECT_EQ(messages(), QStringList("4|Warning: The file " + at("old %ls.bin") +
                                      " already exists, it will be overwritten"));
}

TEST_F(RandomFiles, AFailedSourceLeavesNoFile)
{
    put("old.bin", "old");
    const BrokenSource broken;
    EXPECT_EQ(randomByte(), -1);
    EXPECT_EQ(Crypto().generateSspKey(at("new.bin")), -1);
    EXPECT_EQ(Crypto().generateSspKey(at("old.bin")), -1);
    EXPECT_EQ(entries(), QStringList("old.bin"));
    EXPECT_EQ(contents("old.bin"), "old");
    const QString text = "5|Error: The random source failed, no file was written : ";
    EXPECT_EQ(messages(), (QStringList{text + at("new.bin"), text + at("old.bin")}));
}

TEST_F(RandomFiles, TargetsThatCannotBeOpenedAreRefusedUntouched)
{
    QDir(at("")).mkdir("folder");
    put("locked.bin", "old", 0444);
    const PlainUser user(bytesAt(""));
    ASSERT_TRUE(user.done());
    for (const char *name : {"missing/key.bin", "folder", "locked.bin"}) {
        EXPECT_EQ(Crypto().generateSspKey(at(name)), -1) << name;
        const QString known = "5|Error: Failed to create output file : " + at(name) + '\n';
        const QString said = messages().last();
        EXPECT_TRUE(said.startsWith(known) && said.size() > known.size())
            << "the reason stands behind it";
    }
    EXPECT_EQ(contents("locked.bin"), "old");
    EXPECT_EQ(entries(), (QStringList{"folder", "locked.bin"}));
}

}  // namespace
