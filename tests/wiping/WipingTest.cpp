// Keys must not stay behind in memory that was given back: each operation is run once, and every
// block that it freed is searched for what it handled.
#include "crypto/primitives/DeterministicSigner.h"
#include "crypto/primitives/Digests.h"
#include "crypto/service/Crypto.h"
#include "files/base/KeyFile.h"
#include "obk/Generation.h"
#include "obk/SystemTools.h"
#include "preparation/SfiRequestBuilder.h"
#include "preparation/boot/BootBuilder.h"
#include "preparation/boot/BootVerifier.h"
#include "preparation/sealing/ImageKeys.h"
#include "report/DisplayMng.h"
#include "support/FakeTool.h"
#include "support/FreedBlocks.h"
#include "support/ScratchFolder.h"

#include <gtest/gtest.h>

#include <openssl/ec.h>
#include <openssl/pem.h>

#include <QCoreApplication>

namespace
{

using crypto::ByteView;

ByteView viewOf(const QByteArray &bytes)
{
    return {reinterpret_cast<const std::uint8_t *>(bytes.constData()),
            static_cast<std::size_t>(bytes.size())};
}

/// A key file's content, hard to meet by chance.
const QByteArray kKey = QByteArray::fromHex("9d61b19deffd5a60ba844af492ec2cc4");

TEST(Wiping, TheSearchFindsWhatNobodyWiped)
{
    const FreedBlocks freed;
    {
        const std::vector<std::uint8_t> careless(kKey.begin(), kKey.end());
        EXPECT_EQ(FreedBlocks::holding(viewOf(kKey)), 0U);
    }
    EXPECT_EQ(FreedBlocks::holding(viewOf(kKey)), 1U);
}

TEST(Wiping, KeyFilesLeaveNothing)
{
    const ScratchFolder folder;
    const QString path = folder.file("key.bin", kKey.toStdString());
    const FreedBlocks freed;
    {
        auto key = files::readKeyFile(path, 16);
        ASSERT_TRUE(key);
        files::SecretBytes moved = std::move(*key);
        ASSERT_EQ(moved.data()[0], 0x9D);
        moved = files::SecretBytes(3);
        EXPECT_FALSE(files::readKeyFile(path, 12)) << "refused ones neither";
    }
    EXPECT_EQ(FreedBlocks::holding(viewOf(kKey)), 0U);
}

TEST(Wiping, AnImageLeavesNeitherItsKeyNorWhatWasDerivedFromIt)
{
    SfiRequestBuilder request;
    request.key = kKey;
    request.hash = true;
    request.firmware(0x08000000, {1, 2, 3});
    // Another image of the same inputs tells the nonce, and with it the derived keys.
    const QByteArray known = request.build();
    ASSERT_GT(known.size(), 28);
    const auto derived =
        preparation::ImageKeys::derive(viewOf(kKey), 0xFF, viewOf(known).subspan(12, 16));
    const auto nonceKey = preparation::deriveNonceKey(viewOf(kKey), "SFI");
    ASSERT_TRUE(derived && nonceKey);
    const FreedBlocks freed;
    EXPECT_EQ(request.build(), known);
    EXPECT_EQ(FreedBlocks::holding(viewOf(kKey)), 0U);
    EXPECT_EQ(FreedBlocks::holding(derived->imageKey()), 0U);
    EXPECT_EQ(FreedBlocks::holding(nonceKey->span()), 0U);
}

TEST(Wiping, RandomKeysLeaveNothing)
{
    const ScratchFolder folder;
    const FreedBlocks freed;
    ASSERT_EQ(Crypto().generateEncryptionandNonce(folder.path("key.bin"), 16), 0);
    const auto made = files::readKeyFile(folder.path("key.bin"), 16);
    ASSERT_TRUE(made);
    EXPECT_EQ(FreedBlocks::holding(made->span()), 0U);
}

// QProcess copies what it reads twice and wipes neither; more must not be left.
TEST(Wiping, WhatAToolPrintsLeavesQtsCopiesAlone)
{
    const QByteArray secret = kKey.toHex();
    FakeTool tool(QCoreApplication::applicationDirPath() + "/Utilities/Linux/imgtool");
    for (const int status : {0, 1}) {
        tool.setOrders({"print " + QString::fromLatin1(secret), QString("exit %1").arg(status)});
        const FreedBlocks freed;
        {
            auto output = obk::systemTools().runImageTool({});
            ASSERT_EQ(output.has_value(), status == 0);
            if (output) {
                ASSERT_TRUE(output->startsWith(secret));
                files::wipe(*output);
            }
        }
        EXPECT_LE(FreedBlocks::holding(viewOf(secret)), 2U) << "exit " << status;
    }
}

TEST(Wiping, PasswordsAndOpenedFirmwareLeaveNothing)
{
    const QByteArray password = kKey.toHex();
    const QString typed = QString::fromLatin1(password);
    const auto signer = crypto::KeyPair::make("ecdsa-p256").value();
    const auto half = signer.publicHalf();
    preparation::BootRequest request;
    request.padHeader = true;
    request.slot.size = 4096;
    request.signer = &signer;
    request.wrapKey = viewOf(kKey);
    const auto file = preparation::buildBootImage(request, viewOf(password)).value();
    const auto image = preparation::parseBootImage(file).value();
    const FreedBlocks freed;
    EXPECT_GT(obk::passwordFileBytes(typed).size(), 32U);
    EXPECT_TRUE(preparation::verifyBootImage(image, {&half, nullptr, viewOf(kKey)}));
    EXPECT_EQ(FreedBlocks::holding(viewOf(password)), 0U);
}

class CurveKey : public ::testing::Test
{
protected:
    CurveKey()
    {
        const crypto::EvpKey key(EVP_EC_gen("P-256"));
        const crypto::Bio memory(BIO_new(BIO_s_mem()));
        PEM_write_bio_PrivateKey(memory.get(), key.get(), nullptr, nullptr, 0, nullptr, nullptr);
        char *text = nullptr;
        const long size = BIO_get_mem_data(memory.get(), &text);
        m_pem = QByteArray(text, static_cast<int>(size));
        const auto parsed = crypto::EcKey::readPrivate(viewOf(m_pem), nullptr);
        const auto scalar = parsed->scalar();
        m_scalar.assign(scalar->span().begin(), scalar->span().end());
        // The line of Base64 in which the private number stands.
        m_line = m_pem.split('\n').at(1).mid(8, 48);
    }

    QByteArray m_pem;
    QByteArray m_line;
    std::vector<std::uint8_t> m_scalar;
};

TEST_F(CurveKey, SigningLeavesNoPrivateNumber)
{
    const FreedBlocks freed;
    {
        const auto key = crypto::EcKey::readPrivate(viewOf(m_pem), nullptr);
        ASSERT_TRUE(key);
        ASSERT_TRUE(crypto::signDeterministic(*key, crypto::Digest{1}));
    }
    EXPECT_EQ(FreedBlocks::holding(m_scalar), 0U);
    EXPECT_EQ(FreedBlocks::holding(viewOf(m_line)), 0U);
}

TEST_F(CurveKey, TheKeyServiceLeavesNoKeyFile)
{
    const ScratchFolder folder;
    QByteArray from = QFile::encodeName(folder.file("key.pem", m_pem.toStdString()));
    QByteArray to = QFile::encodeName(folder.path("copy.pem"));
    const auto path = [](QByteArray &name) {
        return reinterpret_cast<unsigned char *>(name.data());
    };
    const FreedBlocks freed;
    {
        Crypto service;
        EVP_PKEY *raw = nullptr;
        ASSERT_EQ(service.ReadPrvKey(path(from), &raw, nullptr), 1);
        const crypto::EvpKey key(raw);
        ASSERT_EQ(service.SavePrvKey(path(to), key.get()), 1);
    }
    EXPECT_EQ(FreedBlocks::holding(m_scalar), 0U);
    EXPECT_EQ(FreedBlocks::holding(viewOf(m_line)), 0U);
}

}  // namespace
