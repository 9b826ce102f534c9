// The certificate tool as it is installed, judged by another library's eyes.
#include "certif/Certificates.h"
#include "process/RunTool.h"
#include "support/ScratchFolder.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

#include <openssl/bn.h>
#include <openssl/ecdsa.h>
#include <openssl/pem.h>

namespace
{

class PsaAdac : public ::testing::Test
{
protected:
    PsaAdac()
    {
        folder.file("root.pem", kRootKey);
        folder.file("middle.pem", kMiddleKey);
        folder.file("leaf.pem", kLeafKey);
    }

    QByteArray run(const QStringList &arguments)
    {
        const auto outcome =
            process::runTool(QCoreApplication::applicationDirPath() + "/Utilities/Linux/PSA_ADAC",
                             arguments, {}, folder.path(""));
        status = outcome.exitCode;
        return outcome.output;
    }

    QByteArray sign(int role, const QString &issuer, const QString &subject)
    {
        const QString lines =
            QStringLiteral(
                "name: %1\nissuer-key: %2.pem\nsubject-key: %1.pem\nrole: %3\nusage: 1\n"
                "lifecycle: 0x30\noem_constraint: 0x1234\nsoc_class: 0x5\nsoc_id: 0x0102\n"
                "permissions_mask: 0x00000000_00000000_00000000_80000001\n")
                .arg(subject, issuer)
                .arg(role);
        folder.file(subject + ".yml", lines.toStdString());
        return run({"sign", subject + ".yml"});
    }

    /// Whether the key's public half accepts the last 64 of 212 bytes over the first 148.
    static bool verifies(const std::string &certificate, const char *pem)
    {
        const auto *bytes = reinterpret_cast<const unsigned char *>(certificate.data());
        ECDSA_SIG *const pair = ECDSA_SIG_new();
        ECDSA_SIG_set0(pair, BN_bin2bn(bytes + 148, 32, nullptr),
                       BN_bin2bn(bytes + 180, 32, nullptr));
        unsigned char *der = nullptr;
        const int size = i2d_ECDSA_SIG(pair, &der);
        BIO *const text = BIO_new_mem_buf(pem, -1);
        EVP_PKEY *const key = PEM_read_bio_PrivateKey(text, nullptr, nullptr, nullptr);
        EVP_MD_CTX *const context = EVP_MD_CTX_new();
        EVP_DigestVerifyInit(context, nullptr, EVP_sha256(), nullptr, key);
        const int verdict =
            EVP_DigestVerify(context, der, static_cast<std::size_t>(size), bytes, 148);
        EVP_MD_CTX_free(context);
        EVP_PKEY_free(key);
        BIO_free(text);
        OPENSSL_free(der);
        ECDSA_SIG_free(pair);
        return verdict == 1;
    }

    std::string contents(const char *name) const
    {
        return ScratchFolder::contents(folder.path(name));
    }

    ScratchFolder folder;
    int status = -1;
};

TEST_F(PsaAdac, MakesAChainOfThreeThatAnotherLibraryAccepts)
{
    EXPECT_EQ(sign(1, "root", "root"), "Writing certificate file root.cert\n");
    EXPECT_EQ(status, 0);
    sign(2, "root", "middle");
    sign(3, "middle", "leaf");
    const std::string leafBytes = contents("leaf.cert");
    ASSERT_EQ(leafBytes.size(), 212u);
    // By the table of the standard: version, types, role, usage, lifecycle, constraint.
    EXPECT_EQ(leafBytes.substr(0, 12), std::string("\1\0\1\1\3\1\0\0\x30\0\x34\x12", 12));
    EXPECT_EQ(leafBytes.substr(16, 8), std::string("\5\0\0\0\2\1\0\0", 8));
    EXPECT_EQ(leafBytes.substr(36, 5), std::string("\1\0\0\x80\0", 5));
    EXPECT_TRUE(verifies(contents("root.cert"), kRootKey));
    EXPECT_TRUE(verifies(contents("middle.cert"), kRootKey));
    EXPECT_TRUE(verifies(leafBytes, kMiddleKey));
    EXPECT_FALSE(verifies(leafBytes, kRootKey));
    sign(3, "middle", "leaf");
    EXPECT_EQ(contents("leaf.cert"), leafBytes) << "the same description gives the same bytes";

    EXPECT_EQ(run({"chain", "-o", "all.b64", "root.cert", "middle.cert", "leaf.cert"}), "");
    const QByteArray chain = QByteArray::fromStdString(contents("all.b64"));
    ASSERT_TRUE(chain.endsWith('\n') && chain.count('\n') == 1);
    const QByteArray records = QByteArray::fromBase64(chain);
    ASSERT_EQ(records.size(), 3 * (8 + 212));
    EXPECT_EQ(records.mid(440, 8), QByteArray("\0\0\1\2\xD4\0\0\0", 8));
    EXPECT_EQ(records.mid(448).toStdString(), leafBytes);
    const auto shown = QJsonDocument::fromJson(run({"show", "--json", "all.b64"}));
    const QJsonArray shownChain = shown[0]["certificates"].toArray();
    ASSERT_EQ(shownChain.size(), 3);
    for (const QJsonValue each : shownChain) {
        EXPECT_EQ(each["issuer"], "matches");
        EXPECT_EQ(each["faults"].toArray().size(), 0);
    }
}

TEST_F(PsaAdac, RefusesInOneLineAndWritesNothing)
{
    folder.file("locked.pem", kLockedKey);
    EXPECT_EQ(sign(1, "locked", "root"),
              "error: locked.pem: the key is behind a pass phrase; a key without one is needed\n");
    EXPECT_EQ(status, 1);
    EXPECT_EQ(contents("root.cert"), "(none)");
    EXPECT_EQ(sign(4, "root", "root"), "error: root.yml, line 4: \"role\" can't be \"4\"\n");
    EXPECT_EQ(contents("root.cert"), "(none)");

    sign(1, "root", "root");
    sign(3, "middle", "leaf");
    EXPECT_EQ(run({"chain", "-o", "all.b64", "root.cert", "leaf.cert"}),
              "error: leaf.cert: it is not signed by the key of the certificate above\n");
    EXPECT_EQ(status, 1);
    EXPECT_EQ(contents("all.b64"), "(none)");
    EXPECT_TRUE(run({"chain", "-o", "no/folder.b64", "root.cert"}).startsWith("error: "));
    EXPECT_EQ(status, 1);
    EXPECT_TRUE(run({"chain", "root.cert"}).startsWith("error: "));
    EXPECT_EQ(status, 1);
}

}  // namespace
