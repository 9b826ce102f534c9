#include "certif/PrepGenCertifDA.h"

#include "certif/Chain.h"
#include "certif/Keys.h"
#include "support/MessageLog.h"
#include "support/ScratchFolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <openssl/ec.h>
#include <openssl/pem.h>

namespace
{

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
}

void write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(content);
}

}  // namespace

/// A home folder of its own, and a shell script in the certificate tool's place.
class CertificateRequest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        m_home = qgetenv("HOME");
        qputenv("HOME", folder().toLocal8Bit());
        out = folder() + "/dev";
        toolPath = scratch.path("PSA_ADAC");
    }
    void TearDown() override { qputenv("HOME", m_home); }

    void tool(const QByteArray &script)
    {
        write(toolPath, "#!/bin/sh\n" + script);
        QFile::setPermissions(toolPath, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    bool generate()
    {
        QString usage = "STANDARD", lifecycle = "SECURED", constraint = "0", socClass = "0x5";
        QString id = "0x0", mask = "00000000_00000000_00000000_00000001", fallback = "fallback";
        PrepGenCertifDA request;
        request.tool = toolPath;
        return request.generateDACG(out, upper, issuer, subject, role, usage, lifecycle, constraint,
                                    socClass, id, -1, mask, fallback);
    }

    QString folder() const { return QFileInfo(scratch.path("x")).path(); }

    QStringList texts() const
    {
        QStringList all;
        for (const Message &message : messages.all()) {
            all << message.text;
        }
        return all;
    }

    ScratchFolder scratch;
    MessageLog messages;
    QString toolPath, out, upper, issuer = "i.pem", subject = "s.pem", role = "ROOT";

private:
    QByteArray m_home;
};

// Signs and makes "QUJD", the Base64 of three bytes.
constexpr const char *kGoodTool =
    "case $1 in sign) echo 'Writing certificate file x';; chain) printf QUJD > \"$3\";; esac\n";

TEST_F(CertificateRequest, EmptyFieldsAreRefusedBeforeTheOldDescriptionIsTouched)
{
    ASSERT_TRUE(QDir().mkpath(QFileInfo(PrepGenCertifDA::descriptionPath()).path()));
    write(PrepGenCertifDA::descriptionPath(), "old");
    out.clear();
    subject.clear();
    EXPECT_FALSE(generate());
    subject = "s.pem";
    EXPECT_FALSE(generate());
    out = "a\nrole: 1";
    EXPECT_FALSE(generate());
    EXPECT_EQ(texts(), (QStringList{"Error: Issuer Key & Subject Key should be filled!",
                                    "Error: A Certificate path should be entered!",
                                    "Error: The value of \"name\" holds a line end"}));
    EXPECT_EQ(contentOf(PrepGenCertifDA::descriptionPath()), "old");
}

TEST_F(CertificateRequest, AFolderThatCantBeMadeIsNamedWithTheReason)
{
    write(folder() + "/file", "");
    qputenv("HOME", (folder() + "/file").toLocal8Bit());
    EXPECT_FALSE(generate());
    EXPECT_EQ(texts(), QStringList("Error: Unable to create the folder " + folder() +
                                   "/file/Vendrelis/VDR32FlashBench: Not a directory"));
}

TEST_F(CertificateRequest, AnOutputThatIsAnInputIsRefusedBeforeTheToolRuns)
{
    tool("touch \"$0.ran\"\n" + QByteArray(kGoodTool));
    const QString words = " can't be written: it is an input of this certificate. Please choose "
                          "another certificate path.";
    role = "LEAF";
    upper = folder() + "/link.b64";
    write(out + ".b64", "QQ==");
    ASSERT_TRUE(QFile::link(out + ".b64", upper));
    EXPECT_FALSE(generate());
    upper = out + "_chain.b64";
    write(out + ".cert", "");
    issuer = out + ".cert";
    EXPECT_FALSE(generate());
    EXPECT_EQ(texts(), (QStringList{"Error: The file " + out + ".b64" + words,
                                    "Error: The file " + out + ".cert" + words}));
    EXPECT_FALSE(QFileInfo::exists(toolPath + ".ran"));
    EXPECT_EQ(contentOf(out + ".b64"), "QQ==");
    // The chain alone may be made longer in its own place.
    issuer = "i.pem";
    write(upper, "QQ==");
    EXPECT_TRUE(generate());
    EXPECT_EQ(contentOf(upper), QByteArray("AABC").toBase64());
}

TEST_F(CertificateRequest, RootHasNoChainFile)
{
    tool(kGoodTool);
    EXPECT_TRUE(generate());
    EXPECT_EQ(texts(), QStringList{"Root certificate is successfully generated"});
    EXPECT_FALSE(QFileInfo::exists(out + "_chain.b64"));
    EXPECT_TRUE(contentOf(PrepGenCertifDA::descriptionPath()).startsWith("name: " + out.toUtf8()));
}

TEST_F(CertificateRequest, ANameThatBeginsWithAMinusIsNoOption)
{
    tool("case $1 in sign) echo 'Writing certificate file x';;\n"
         "chain) echo \"$3 $4\" > \"$HOME/arguments\";; esac\n");
    out = "-o";
    EXPECT_TRUE(generate());
    EXPECT_EQ(contentOf(folder() + "/arguments"), "./-o.b64 ./-o.cert\n");
}

TEST_F(CertificateRequest, BelowTheRootEachTextIsDecodedAlone)
{
    tool(kGoodTool);
    role = "LEAF";
    upper = folder() + "/upper.b64";
    write(upper, "QQ==\r\nQkM=\n");
    EXPECT_TRUE(generate());
    EXPECT_EQ(contentOf(out + "_chain.b64"), QByteArray("ABCABC").toBase64());
    EXPECT_EQ(texts(), QStringList{" LEAF certificate was successfully chained"});
}

TEST_F(CertificateRequest, StopsBeforeTheToolWithoutADescriptionAndWhenCancelled)
{
    tool(kGoodTool);
    QString fallback = out;
    QString none;
    PrepGenCertifDA request;
    request.tool = toolPath;
    EXPECT_FALSE(request.generatecertifDA(none, fallback, role, upper));
    EXPECT_EQ(none, out);
    ASSERT_EQ(texts().size(), 1);
    EXPECT_TRUE(texts()[0].endsWith("ConfigGenCertifDA.yml \" is missing!"));
    ASSERT_TRUE(generate());
    QFile::remove(out + ".b64");
    request.watch.isCancelled = [] { return true; };
    EXPECT_FALSE(request.generatecertifDA(out, fallback, role, upper));
    EXPECT_FALSE(QFile::exists(out + ".b64"));
}

TEST_F(CertificateRequest, AKeyOnAnotherCurveIsNamedWithItsCurve)
{
    const crypto::EvpKey key(EVP_EC_gen("brainpoolP256t1"));
    const crypto::Bio memory(BIO_new(BIO_s_mem()));
    PEM_write_bio_PrivateKey(memory.get(), key.get(), nullptr, nullptr, 0, nullptr, nullptr);
    QByteArray pem(static_cast<int>(BIO_pending(memory.get())), '\0');
    BIO_read(memory.get(), pem.data(), pem.size());
    write(out, pem);
    for (const auto &read : {certif::readIssuerKey(out), certif::readSubjectKey(out)}) {
        ASSERT_FALSE(read);
        EXPECT_NE(read.error().text.find("brainpoolP256t1"), std::string::npos)
            << read.error().text;
    }
}

struct Failing {
    const char *name;
    const char *script;  ///< null: no tool
    const char *role;
    const char *upper;  ///< content; null: no file
    const char *message;
};

class FailingRequests : public CertificateRequest, public ::testing::WithParamInterface<Failing>
{
};

TEST_P(FailingRequests, EndWithOneMessageAndKeepAnOldChain)
{
    const Failing &row = GetParam();
    if (row.script != nullptr) {
        tool(row.script);
    }
    role = row.role;
    upper = folder() + "/upper.b64";
    if (row.upper != nullptr) {
        write(upper, row.upper);
    }
    write(out + "_chain.b64", "old");
    EXPECT_FALSE(generate());
    ASSERT_EQ(texts().size(), 1);
    EXPECT_EQ(texts()[0].replace(toolPath, "TOOL").replace(folder(), "DIR"),
              QString("Error: ") + row.message);
    EXPECT_EQ(contentOf(out + "_chain.b64"), "old");
}

INSTANTIATE_TEST_SUITE_P(
    Tools, FailingRequests,
    ::testing::Values(
        Failing{"Missing", nullptr, "ROOT", nullptr,
                "PSA ADAC tool \" TOOL \" is missing! Please check your VDR32 Seal Package Builder "
                "installation folder."},
        Failing{"WithoutTheWords", "echo nothing", "ROOT", nullptr,
                "Fail sign! Invalid input parameter\nnothing\n"},
        Failing{"CrashesAfterTheWords", "echo 'Writing certificate file x'; kill -SEGV $$", "ROOT",
                nullptr, "Fail sign! Invalid input parameter\nWriting certificate file x\n"},
        Failing{"FailsToChain",
                "case $1 in sign) echo 'Writing certificate file';; *) echo 'error: no';; esac",
                "ROOT", nullptr, "Fail chain\nerror: no\n"},
        Failing{"ChainCrashesInSilence",
                "case $1 in sign) echo 'Writing certificate file';; *) kill -SEGV $$;; esac",
                "ROOT", nullptr, "Fail chain\n"},
        Failing{"NoLowerText", "echo 'Writing certificate file'", "LEAF", "QUJD",
                "DIR/dev.b64 is empty !"},
        Failing{"NoUpperText", kGoodTool, "INTERMEDIATE", nullptr, "Root certificate is empty !"},
        Failing{"UpperIsNoBase64", kGoodTool, "LEAF", "QU?D",
                "Failed to chain certificate\nDIR/upper.b64: character 3 is no Base64 digit"}),
    [](const auto &row) { return row.param.name; });
