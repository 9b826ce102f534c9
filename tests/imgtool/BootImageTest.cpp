#include "files/FileManager.h"
#include "preparation/boot/BootBuilder.h"
#include "preparation/boot/BootVerifier.h"
#include "process/RunTool.h"
#include "support/ElfBytes.h"
#include "support/HexLines.h"
#include "support/ScratchFolder.h"

#include <gtest/gtest.h>

#include <QCoreApplication>

namespace
{

using namespace preparation;
using crypto::KeyPair;
using Bytes = std::vector<std::uint8_t>;

const KeyPair &key(const std::string &type)
{
    static std::map<std::string, KeyPair> made;
    const auto known = made.find(type);
    return known != made.end() ? known->second
                               : made.emplace(type, *KeyPair::make(type)).first->second;
}

BootRequest smallRequest()
{
    BootRequest request;
    request.version = {1, 2, 3, 4};
    request.padHeader = true;
    request.slot.size = 2048;
    request.slot.maxSectors = 4;
    return request;
}

struct SealCase {
    const char *name;
    const char *signer;
    const char *recipient;  ///< null for a readable image; "aes" for an AES key
    bool confirm;
    std::size_t step = 1;  ///< of the bits: each private RSA operation takes its time
};

class BootSeal : public ::testing::TestWithParam<SealCase>
{
};

TEST_P(BootSeal, NoFlippedBitPasses)
{
    const SealCase &seal = GetParam();
    const crypto::PublicKey signer = key(seal.signer).publicHalf();
    BootRequest request = smallRequest();
    request.securityCounter = 7;
    request.dependencies = {{1, {1, 0, 0, 0}}};
    request.signer = &key(seal.signer);
    request.confirm = seal.confirm;
    request.padSignature = seal.confirm;
    request.bootRecord = "NSPE";
    request.ownValues = {{0xA1, {1, 2}}};
    std::optional<crypto::PublicKey> recipient;
    const Bytes wrapKey = patternBytes(32);
    BootKeys keys = {&signer};
    const std::string_view recipientName = seal.recipient != nullptr ? seal.recipient : "";
    if (recipientName == "aes") {
        request.wrapKey = keys.wrapKey = wrapKey;
        request.imageKeyBytes = kLongImageKeyBytes;
    } else if (seal.recipient != nullptr) {
        recipient = key(seal.recipient).publicHalf();
        request.recipient = &*recipient;
        keys.recipient = &key(seal.recipient);
    }
    Bytes image = *buildBootImage(request, patternBytes(40));
    const auto isGood = [&] {
        const auto parsed = parseBootImage(image);
        return parsed && verifyBootImage(*parsed, keys);
    };
    ASSERT_TRUE(isGood());
    std::size_t accepted = 0;
    for (std::size_t bit = 0; bit < 8 * image.size(); bit += seal.step) {
        image[bit / 8] ^= static_cast<std::uint8_t>(1U << bit % 8);
        accepted += isGood() ? 1 : 0;
        EXPECT_EQ(accepted, 0U) << "bit " << bit;
        image[bit / 8] ^= static_cast<std::uint8_t>(1U << bit % 8);
    }
    image.pop_back();
    EXPECT_FALSE(isGood());
    image.insert(image.end(), 2, seal.confirm ? 0x80 : 0xFF);
    EXPECT_FALSE(isGood()) << "a byte more";
}

INSTANTIATE_TEST_SUITE_P(
    Keys, BootSeal,
    ::testing::Values(SealCase{"P256", "ecdsa-p256", nullptr, true},
                      SealCase{"Rsa2048ForP256", "rsa-2048", "ecdsa-p256", false},
                      SealCase{"Rsa3072", "rsa-3072", nullptr, false},
                      SealCase{"Ed25519ForX25519", "ed25519", "x25519", true},
                      SealCase{"P256ForRsa2048", "ecdsa-p256", "rsa-2048", false, 7},
                      SealCase{"P256ForAes", "ecdsa-p256", "aes", false}),
    [](const auto &seal) { return seal.param.name; });

TEST(BootVerifier, RefusesWhatAnotherKeyMadeOrNothingProtects)
{
    const crypto::PublicKey own = key("ecdsa-p256").publicHalf();
    const crypto::PublicKey foreign = key("ed25519").publicHalf();
    BootRequest request = smallRequest();
    const auto check = [&](BootKeys keys, const Bytes &behind = {}) {
        Bytes image = *buildBootImage(request, patternBytes(40));
        image.insert(image.end(), behind.begin(), behind.end());
        const auto parsed = parseBootImage(image);
        const auto verdict = verifyBootImage(*parsed, keys);
        return verdict ? std::string(verdict->isSignatureChecked ? "checked" : "not checked")
                       : verdict.error().text;
    };
    EXPECT_EQ(check({}), "not checked");
    EXPECT_EQ(check({&own}), "the image isn't signed");
    request.signer = &key("ecdsa-p256");
    EXPECT_EQ(check({&own}), "checked");
    EXPECT_EQ(check({&foreign}), "the image names another key");
    EXPECT_NE(check({&own}, Bytes(64, 0xFF)), "checked") << "no trailer's magic";
    const KeyPair another = *KeyPair::make("ecdsa-p256");
    request.recipient = &own;
    EXPECT_NE(check({&own}), "checked") << "encrypted, and nobody can look inside";
    EXPECT_EQ(check({&own, &another}), "the wrapped key isn't for this private key, or is damaged");
    EXPECT_EQ(check({&own, &key("ecdsa-p256")}), "checked");
    request.clear = true;
    EXPECT_EQ(check({&own, &key("ecdsa-p256")}), "checked");
}

// What the trailer keeps for each of two keys is room that the firmware doesn't have, in whole
// steps of the alignment.
TEST(BootBuilder, TrailerHasRoomForTheKeysItKeeps)
{
    const struct {
        const char *recipient;  ///< none: an AES key wraps
        std::size_t imageKeyBytes, room;
    } cases[] = {{"x25519", 16, 80},
                 {"ecdsa-p256", 16, 113},
                 {"rsa-2048", 16, 256},
                 {"", 16, 24},
                 {"", 32, 40}};
    const auto most = [](BootRequest request) {
        std::size_t size = 2048;
        while (size > 0 && !buildBootImage(request, Bytes(size, 1))) {
            --size;
        }
        return size;
    };
    for (const auto &[recipient, imageKeyBytes, room] : cases) {
        BootRequest request = smallRequest();
        request.slot.align = request.slot.maxAlign = 8;
        const Bytes wrapKey(imageKeyBytes, 7);
        const auto half = key(*recipient == '\0' ? "x25519" : recipient).publicHalf();
        request.recipient = *recipient == '\0' ? nullptr : &half;
        request.wrapKey = *recipient == '\0' ? crypto::ByteView(wrapKey) : crypto::ByteView();
        request.imageKeyBytes = imageKeyBytes;
        const std::size_t plain = most(request);
        request.keepWrappedKeys = true;
        EXPECT_EQ(plain - most(request), 2 * ((room + 7) / 8 * 8 - imageKeyBytes)) << recipient;
    }
}

TEST(BootBuilder, RefusesWhatWouldNotBoot)
{
    const struct {
        const char *name;
        std::function<void(BootRequest &)> change;
        Bytes firmware = Bytes(100, 1);
    } cases[] = {
        {"header of 31 bytes", [](auto &r) { r.headerSize = 31; }},
        {"code where the header goes", [](auto &r) { r.padHeader = false; }},
        {"header and nothing else", [](auto &r) { r.padHeader = false; }, Bytes(32)},
        {"no firmware", [](auto &) {}, {}},
        {"one byte too much", [](auto &) {}, Bytes(2048 - 4 * 3 - 4 * 8 - 16 - 32 - 40 + 1)},
        {"alignment of 3", [](auto &r) { r.slot.align = 3; }},
        {"alignment above the largest", [](auto &r) { r.slot.align = 16; }},
        {"erased byte of 1", [](auto &r) { r.slot.erased = 1; }},
        {"AES-256 for P-256",
         [](auto &r) {
             static const crypto::PublicKey recipient = key("ecdsa-p256").publicHalf();
             r.recipient = &recipient;
             r.imageKeyBytes = kLongImageKeyBytes;
         }},
        {"AES-256 wrapped by AES-128",
         [](auto &r) {
             static const Bytes wrapKey(16);
             r.wrapKey = wrapKey;
             r.imageKeyBytes = kLongImageKeyBytes;
         }},
        {"the format's own type",
         [](auto &r) {
             r.ownValues = {{0x40, {1}}};
         }},
        {"one type twice",
         [](auto &r) {
             r.ownValues = {{0xA0, {1}}, {0xA0, {2}}};
         }},
        {"more firmware than the slot", [](auto &) {}, Bytes(2049)},
        {"maximal alignment of 4", [](auto &r) { r.slot.maxAlign = 4; }},
        {"key of nobody", [](auto &r) { r.wholePublicKey = true; }},
        {"clear, and for nobody", [](auto &r) { r.clear = true; }},
        {"empty value",
         [](auto &r) {
             r.ownValues = {{0xA0, {}}};
         }},
        {"boot record of nobody", [](auto &r) { r.bootRecord = "SPE"; }},
        {"role of 13 characters",
         [](auto &r) {
             r.bootRecord = "thirteen char";
             r.signer = &key("ed25519");
         }},
        {"X25519 doesn't sign", [](auto &r) { r.signer = &key("x25519"); }},
        {"block beyond 16 bits",
         [](auto &r) {
             r.dependencies.resize(5000);
             r.slot.size = 1 << 20;
         }},
    };
    for (const auto &[name, change, firmware] : cases) {
        BootRequest request = smallRequest();
        change(request);
        EXPECT_FALSE(buildBootImage(request, firmware)) << name;
    }
    EXPECT_TRUE(buildBootImage(smallRequest(), Bytes(2048 - 4 * 3 - 4 * 8 - 16 - 32 - 40)));
}

TEST(BootVersion, TextsAreReadWhole)
{
    const std::pair<const char *, const char *> good[] = {
        {"1", "1.0.0+0"},
        {"1.2.3", "1.2.3+0"},
        {"255.255.65535+4294967295", "255.255.65535+4294967295"}};
    for (const auto &[text, expected] : good) {
        EXPECT_EQ(toText(parseBootVersion(text).value()), expected);
    }
    for (const char *const bad : {"", "1.", "256", "1.2.65536", "1.2.3+", "1.2.3-4", " 1", "-1"}) {
        EXPECT_FALSE(parseBootVersion(bad)) << bad;
    }
    EXPECT_EQ(parseBootDependencies("").value().size(), 0U);
    EXPECT_EQ(parseBootDependencies(" (1, 2.3),(4,5.6.7+8) ").value(),
              (std::vector<BootDependency>{{1, {2, 3, 0, 0}}, {4, {5, 6, 7, 8}}}));
    for (const char *const bad : {"1, 2.3", "(1 2.3)", "(1, 2.3", "(1, 2.3) x", "(256, 1)", "()"}) {
        EXPECT_FALSE(parseBootDependencies(bad)) << bad;
    }
}

/// The tool as it is installed, run in a folder of its own.
class BootTool : public ::testing::Test
{
protected:
    BootTool() { run({"keygen", "-k", "key.pem", "-t", "ed25519", "-e", "pub.pem"}); }

    QByteArray run(const QStringList &arguments)
    {
        const auto outcome =
            process::runTool(QCoreApplication::applicationDirPath() + "/Utilities/Linux/imgtool",
                             arguments, {}, folder.path(""));
        status = outcome.exitCode;
        return outcome.output;
    }
    QByteArray create(const QString &in, const QString &out, const QStringList &more = {})
    {
        return run(QStringList{"create", "--align", "8", "-v", "1.0", "-H", "32", "-S", "0x4000",
                               "--pad-header", "-k", "key.pem"} +
                   more + QStringList{in, out});
    }
    std::string contents(const char *name) const
    {
        return ScratchFolder::contents(folder.path(name));
    }

    ScratchFolder folder;
    int status = -1;
};

TEST_F(BootTool, EveryInputFormGivesTheSameImage)
{
    const Bytes code = patternBytes(100);
    const Bytes first(code.begin(), code.begin() + 40);
    const Bytes second(code.begin() + 60, code.end());
    Bytes holed = code;
    std::fill(holed.begin() + 40, holed.begin() + 60, 0xFF);
    folder.file("a.bin", holed);
    folder.file("a.hex", intelLine(4, 0, {0x08, 0x01}) + intelLine(0, 0x40, first) +
                             intelLine(0, 0x40 + 60, second) + intelLine(1, 0, {}));
    folder.file("a.s37",
                srecordLine('3', 0x08010040, first) + srecordLine('3', 0x08010040 + 60, second));
    ElfPlan elf;
    elf.segments = {{1, 0x08010040, first}, {1, 0x08010040 + 60, second}};
    folder.file("a.elf", elfBytes(elf));
    create("a.bin", "expected");
    ASSERT_EQ(status, 0);
    for (const char *const input : {"a.hex", "a.s37", "a.elf"}) {
        EXPECT_TRUE(create(input, "out.bin").contains("signed (Ed25519)"));
        EXPECT_EQ(contents("out.bin"), contents("expected")) << input;
    }
    create("a.s37", "out.hex");
    EXPECT_EQ(status, 0);
    EXPECT_NE(contents("out.hex").find(intelLine(4, 0, {0x08, 0x01})), std::string::npos);
    EXPECT_NE(contents("out.hex").find(":20002000"), std::string::npos)
        << "the header stands in front of the firmware's address";
    EXPECT_TRUE(run({"verify", "-k", "pub.pem", "out.hex"}).contains("it is the key's"));
    EXPECT_TRUE(run({"verify", "out.hex"}).contains("NOT CHECKED"));
    EXPECT_TRUE(run({"dumpinfo", "out.hex", "-s", "-o", "info.yml"}).isEmpty());
    EXPECT_NE(contents("info.yml").find("version: 1.0.0+0"), std::string::npos);
}

TEST_F(BootTool, FailuresLeaveTheFilesAndSayOneLine)
{
    folder.file("in.bin", patternBytes(50));
    folder.file("old.bin", std::string_view("old"));
    folder.file("far.hex", intelLine(0, 0, {1}) + intelLine(4, 0, {0xFF, 0xFF}) +
                               intelLine(0, 0, {1}) + intelLine(1, 0, {}));
    folder.file("twice.hex", intelLine(0, 0, {1, 2}) + intelLine(0, 1, {3}) + intelLine(1, 0, {}));
    const std::string pem = contents("key.pem");
    for (const auto &[in, out, more] : {std::tuple{"in.bin", "in.bin", QStringList{}},
                                        {"in.bin", "key.pem", {}},
                                        {"none.bin", "old.bin", {}},
                                        {"far.hex", "old.bin", {}},
                                        {"twice.hex", "old.bin", {}},
                                        {"in.bin", "old.elf", {}},
                                        {"in.bin", "old.bin", {"-S", "100"}},
                                        {"in.bin", "old.bin", {"-k", "pub.pem"}},
                                        {"in.bin", "old.bin", {"-E", "in.bin"}},
                                        {"in.bin", "old.bin", {"-e", "big"}},
                                        {"in.bin", "old.bin", {"-s", "more"}},
                                        {"in.bin", "old.bin", {"-R", "256"}},
                                        {"in.bin", "no/old.bin", {}}}) {
        const QByteArray said = create(in, out, more);
        EXPECT_EQ(status, 1) << in << out << more.join(' ').toStdString();
        EXPECT_EQ(said.count('\n'), 1) << said.data();
    }
    EXPECT_EQ(run({"create", "-v", "1.0", "in.bin", "old.bin"}).count('\n'), 1);
    EXPECT_EQ(contents("old.bin"), "old");
    EXPECT_EQ(contents("key.pem"), pem);
    EXPECT_EQ(contents("in.bin").size(), 50U);
}

TEST_F(BootTool, LockedKeysOpenWithTheirPhraseAlone)
{
    folder.file("phrase", std::string_view("open sesame\r\nsecond line"));
    folder.file("empty", std::string_view("\n"));
    folder.file("in.bin", patternBytes(50));
    for (const char *const type : {"ecdsa-p256", "ed25519"}) {
        const QString locked = QString(type) + ".pem";
        run({"keygen", "-k", locked, "-t", type, "-e", "pub.pem", "--pass-file", "phrase"});
        ASSERT_EQ(status, 0);
        EXPECT_EQ(ScratchFolder::contents(folder.path(locked)).find("-----BEGIN ENCRYPTED"), 0U);
        create("in.bin", "out.bin", {"-k", locked, "--pass-file", "phrase"});
        EXPECT_EQ(status, 0);
        EXPECT_TRUE(run({"verify", "-k", "pub.pem", "out.bin"}).contains("it is the key's"));
        EXPECT_TRUE(create("in.bin", "none.bin", {"-k", locked}).contains("no terminal"));
        EXPECT_TRUE(create("in.bin", "none.bin", {"-k", locked, "--pass-file", "in.bin"})
                        .contains("doesn't open"));
        EXPECT_TRUE(
            create("in.bin", "none.bin", {"-k", locked, "--pass-file", "empty"}).contains("empty"));
        EXPECT_TRUE(create("in.bin", "none.bin", {"-k", locked, "--pass-fd", "77"}).contains("77"));
    }
    EXPECT_EQ(contents("none.bin"), "(none)");
    run({"keygen", "-k", "asked.pem", "-t", "ed25519", "-e", "p.pem", "-p"});
    EXPECT_EQ(status, 1);
    EXPECT_EQ(contents("asked.pem"), "(none)") << "never without the phrase that was asked for";
}

TEST_F(BootTool, SignaturesMadeElsewhereFitOneImage)
{
    folder.file("in.bin", patternBytes(50));
    folder.file("other.bin", patternBytes(51));
    const auto base = [](const QString &in, const QString &out, const QStringList &more) {
        return QStringList{"sign", "--align", "8",  "-v",     "1.0",
                           "-H",   "32",      "-S", "0x4000", "--pad-header"} +
               more + QStringList{in, out};
    };
    create("in.bin", "whole.bin", {"--sig-out", "sig"});
    ASSERT_EQ(status, 0);
    const QStringList fixed = {"--fix-sig", "sig", "--fix-sig-pubkey", "pub.pem"};
    run(base("in.bin", "fixed.bin", fixed));
    EXPECT_EQ(status, 0);
    EXPECT_EQ(contents("fixed.bin"), contents("whole.bin"));
    EXPECT_TRUE(run(base("other.bin", "no.bin", fixed)).contains("isn't this image's"));
    run(base("in.bin", "payload", {"--vector-to-sign", "payload"}));
    EXPECT_EQ(contents("payload"), contents("whole.bin").substr(0, 82));
    run(base("in.bin", "digest", {"--vector-to-sign", "digest"}));
    EXPECT_NE(contents("whole.bin").find(contents("digest")), std::string::npos);
    for (const QStringList &wrong : {QStringList{"--fix-sig", "sig"},
                                     {"--fix-sig-pubkey", "pub.pem"},
                                     fixed + QStringList{"-k", "key.pem"},
                                     {"--sig-out", "sig"},
                                     {"--vector-to-sign", "digest", "-k", "key.pem"},
                                     {"-k", "key.pem", "--sig-out", "no.bin"},
                                     {"--custom-tlv", "0xa0", "0x123"},
                                     {"--sha", "512"},
                                     {"--is-pure"}}) {
        EXPECT_EQ(run(base("in.bin", "no.bin", wrong)).count('\n'), 1);
        EXPECT_EQ(status, 1) << wrong.join(' ').toStdString();
    }
    EXPECT_EQ(contents("no.bin"), "(none)");
}

TEST_F(BootTool, ImagesAreReadBackAsModules)
{
    folder.file("in.bin", patternBytes(50));
    create(
        "in.bin", "out.smu",
        {"-s", "auto", "-d", "(2, 1.0)", "--boot-record", "SPE", "--custom-tlv", "0xa0", "0x12"});
    FileType *opened = nullptr;
    ASSERT_TRUE(FileManager().Open(folder.path("out.smu").toStdWString(), &opened, 0xFF, 0, 0));
    const files::RecordOwner<FileSMU> image(static_cast<FileSMU *>(opened));
    EXPECT_EQ(image->magic, kBootMagic);
    EXPECT_EQ(image->imageSize, 50U);
    EXPECT_EQ(image->versionMajor, 1);
    std::string names;
    for (const auto *list : {&image->protectedTlvs, &image->tlvs}) {
        for (const TLV &entry : *list) {
            names += std::string(entry.name) + " " + std::to_string(entry.length) + " ";
        }
    }
    EXPECT_EQ(names, "SEC_CNT 4 BOOT_RECORD 91 DEPENDENCY 12 MODULE_INFO 1 SHA256 32 KEYHASH 32 "
                     "ED25519 64 ");
}

}  // namespace
