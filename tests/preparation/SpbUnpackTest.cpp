#include "crypto/primitives/DeterministicSigner.h"
#include "crypto/primitives/EcKey.h"
#include "preparation/PackageInputs.h"
#include "preparation/Preparation.h"
#include "preparation/SfiRequestBuilder.h"
#include "preparation/licence/LicenceFormat.h"
#include "preparation/sfu/SfuSealer.h"
#include "preparation/smi/SmiSealer.h"
#include "preparation/ssp/SspSealer.h"
#include "support/ImageBytes.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

namespace
{

/// Runs the real program over files in a folder of its own.
class SpbUnpack : public ::testing::Test
{
protected:
    QString put(const char *name, const QByteArray &bytes)
    {
        QFile file(path(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        EXPECT_EQ(file.write(bytes), bytes.size());
        return file.fileName();
    }

    [[nodiscard]] QString path(const char *name) const { return m_folder.filePath(name); }

    QByteArray contents(const char *name)
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no file)");
    }

    int run(const QStringList &arguments)
    {
        QProcess process;
        process.start(QStringLiteral(SPB_UNPACK), arguments);
        EXPECT_TRUE(process.waitForFinished(20000));
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
        out = process.readAllStandardOutput();
        err = process.readAllStandardError();
        return process.exitCode();
    }

    QByteArray out;
    QByteArray err;

private:
    QTemporaryDir m_folder;
};

/// One area of every kind the program knows, two firmware runs that touch and one behind a hole.
SfiRequestBuilder everyKind()
{
    SfiRequestBuilder request;
    request.hash = true;
    request.combined = true;
    request.ssfiArea(ramp(1, 1, 46), ramp(7, 1, 40));
    request.module(0x08100000, ramp(3, 1, 50), ramp(8, 1, 20));
    request.module(0x08200000, ramp(4, 1, 33), {}, "FW-ID-1");
    request.smi(smiFile(0x08300000, 40));
    request.obk(0x0FFD0000, 0, ramp(5, 1, 16));
    request.firmware(0x08000010, {5, 6, 7}).firmware(0x08000000, ramp(0, 1, 16));
    request.firmware(0x08000018, {9});
    request.external(0x90000000, ramp(6, 1, 64));
    request.regions = {{0x90000000, 2, 3, 0x0800F000}};
    return request;
}

TEST_F(SpbUnpack, TableShowsHeadsAndTrailersOnlyToTheKey)
{
    SfiRequestBuilder request = everyKind();
    const QString image = put("a.dat", request.build());  // the magic counts, not the name
    const QString key = put("key.bin", request.key);
    ASSERT_EQ(run({image}), 0) << err.constData();
    EXPECT_TRUE(out.contains("10     C     Configuration  1        0x00000000  4     not checked"))
        << out.constData();
    EXPECT_FALSE(out.contains("FW-ID-1"));
    ASSERT_EQ(run({image, "--key", key}), 0) << err.constData();
    EXPECT_TRUE(out.contains("10     C     Configuration  1        0x00000000  4     authentic"));
    EXPECT_TRUE(
        out.contains("\nModules\nIndex  Type  Module  Licence  Identifier  Flags       Text\n"
                     "2      M     50      20       0           0x00000001\n"
                     "3      M     33      0        7           0x00000000  FW-ID-1\n"))
        << out.constData();
    EXPECT_TRUE(out.contains("\n9      E     0x90000000     2       3     0x0800F000\n"))
        << out.constData();
    EXPECT_TRUE(out.contains("\n4      M     1       0x00000000  0x08300000    40      "));
    EXPECT_TRUE(err.isEmpty());
}

TEST_F(SpbUnpack, JsonTellsEveryField)
{
    SfiRequestBuilder request;
    request.profile = 0x484;
    request.imageVersion = 200;
    request.firmware(0xFFFFFF00, {1, 2, 3});
    const QByteArray bytes = request.build();
    const QString image = put("a.sfi", bytes);
    ASSERT_EQ(run({"--json", image}), 0);
    QJsonObject object = QJsonDocument::fromJson(out).object();
    EXPECT_EQ(object["version"], 1);
    EXPECT_EQ(object["count"], 2);
    EXPECT_EQ(object["nonce"].toString().toLatin1(), bytes.mid(12, 16).toHex());
    EXPECT_TRUE(object["profile"].isNull());
    EXPECT_EQ(object["authentic"], false);
    const QJsonObject area = object["areas"].toArray()[0].toObject();
    EXPECT_EQ(area, (QJsonObject{{"index", 1},
                                 {"type", "F"},
                                 {"label", "Firmware"},
                                 {"imageVersion", 200},
                                 {"address", 4294967040.0},
                                 {"size", 3},
                                 {"tag", QString::fromLatin1(bytes.mid(42, 16).toHex())},
                                 {"hash", ""},
                                 {"verdict", "not checked"}}));
    ASSERT_EQ(run({"--json", image, "--key", put("key.bin", request.key)}), 0);
    object = QJsonDocument::fromJson(out).object();
    EXPECT_EQ(object["profile"], 0x484);
    EXPECT_EQ(object["authentic"], true);
}

TEST_F(SpbUnpack, WritesFirmwareWithHolesFilledAndSingleAreas)
{
    SfiRequestBuilder request = everyKind();
    const QString image = put("a.sfi", request.build());
    const QString key = put("key.bin", request.key);
    ASSERT_EQ(run({image, "--key", key, "--out", path("out.bin")}), 0) << err.constData();
    EXPECT_EQ(contents("out.bin").toHex(), "000102030405060708090a0b0c0d0e0f050607ffffffffff09");
    // The hole between 0x08000013 and 0x08000018 stays one.
    ASSERT_EQ(run({image, "--key", key, "--out", path("out.HEX")}), 0) << err.constData();
    EXPECT_EQ(contents("out.HEX").count(":01001800"), 1) << contents("out.HEX").constData();
    ASSERT_EQ(run({image, "--key", key, "--out", path("out.s19")}), 0) << err.constData();
    EXPECT_EQ(contents("out.s19").count("S30608000018"), 1) << contents("out.s19").constData();
    EXPECT_TRUE(err.isEmpty()) << err.constData();
    ASSERT_EQ(run({image, "--key", key, "--area", "10", "--out", path("options")}), 0);
    EXPECT_EQ(contents("options").toHex(), "01020304");
    EXPECT_EQ(run({image, "--key", key, "--area", "11", "--out", path("none")}), 4);
    EXPECT_EQ(contents("none"), "(no file)");
}

TEST_F(SpbUnpack, WritesAreasOfKeysForTheirOwnerOnly)
{
    SfiRequestBuilder request;
    request.obk(0x0FFD0000, 0, {1}).firmware(0, {2});
    request.keyArea.segments = {request.segment(0, {3})};
    request.keyArea.segmentCount = 1;
    const QString image = put("a.sfi", request.build());
    const QString key = put("key.bin", request.key);
    for (const char *area : {"1", "2"}) {
        ASSERT_EQ(run({image, "--key", key, "--area", area, "--out", path(area)}), 0);
        const auto others = QFile::ReadGroup | QFile::ReadOther;
        EXPECT_EQ(QFile::permissions(path(area)) & others, 0) << area;
    }
}

TEST_F(SpbUnpack, RefusesABinaryOfMoreThanHalfAGigabyte)
{
    SfiRequestBuilder request;
    request.firmware(0x00000000, {1}).firmware(0x1FFFFFFF, {2});  // spans 0x20000000 bytes
    const QString image = put("a.sfi", request.build());
    EXPECT_EQ(run({image, "--key", put("key.bin", request.key), "--out", path("out.bin")}), 4);
    EXPECT_TRUE(err.contains("536870912")) << err.constData();
    EXPECT_EQ(contents("out.bin"), "(no file)");
}

TEST_F(SpbUnpack, NothingIsWrittenFromAnImageThatIsNotAuthentic)
{
    SfiRequestBuilder request;
    request.firmware(0x08000000, {1, 2, 3});
    const QByteArray good = request.build();
    const QString image = put("a.sfi", good);
    const QString wrong = put("wrong.bin", QByteArray(16, 'x'));
    EXPECT_EQ(run({image, "--key", wrong, "--out", path("out.bin")}), 2);
    EXPECT_TRUE(out.contains("wrong key or damaged"));
    EXPECT_EQ(contents("out.bin"), "(no file)");

    request.hash = true;
    QByteArray cut = request.build();
    cut[cut.size() - 1] = static_cast<char>(cut[cut.size() - 1] ^ 1);
    EXPECT_EQ(run({put("b.sfi", cut)}), 2);  // damage is seen without a key
    EXPECT_TRUE(out.contains("damaged")) << out.constData();
}

TEST_F(SpbUnpack, ExitStatusNamesTheFault)
{
    SfiRequestBuilder request;
    const QByteArray image = request.build();
    const QString good = put("a.sfi", image);
    const QString full = put("f.sfi", request.firmware(0, {1}).build());
    const QString key = put("key.bin", request.key);
    const QString shortKey = put("short.bin", request.key.left(15));
    const struct {
        const char *what;
        QStringList arguments;
        int status;
    } cases[] = {
        {"no image", {}, 3},
        {"two images", {good, good}, 3},
        {"unknown option", {good, "--frob"}, 3},
        {"option without its value", {good, "--key"}, 3},
        {"output without key", {good, "--out", path("o.bin")}, 3},
        {"area without output", {good, "--key", key, "--area", "1"}, 3},
        {"area 0", {good, "--key", key, "--area", "0", "--out", path("o.bin")}, 3},
        {"key of 15 bytes", {good, "--key", shortKey}, 3},
        {"no such key", {good, "--key", path("none")}, 3},
        {"unknown output format", {good, "--key", key, "--out", path("o.elf")}, 3},
        {"no firmware to write", {good, "--key", key, "--out", path("o.bin")}, 4},
        {"no folder for firmware", {full, "--key", key, "--out", path("x/y.bin")}, 4},
        {"no such folder", {good, "--key", key, "--area", "1", "--out", path("x/y")}, 4},
        {"no such image", {path("none.sfi")}, 1},
        {"a folder", {path(".")}, 1},
        {"bytes behind the image", {put("b.sfi", image + '\0')}, 1},
        {"cut image", {put("c.sfi", image.left(image.size() - 1)), "--key", key}, 1},
        {"empty file", {put("d.sfi", "")}, 1},
    };
    for (const auto &entry : cases) {
        EXPECT_EQ(run(entry.arguments), entry.status) << entry.what;
        EXPECT_TRUE(err.startsWith("spb-unpack: ") && err.endsWith('\n')) << entry.what;
    }
    for (const char *option : {"-xy", "--frob", "--json=3"}) {
        EXPECT_EQ(run({good, "--json", option}), 3);
        EXPECT_TRUE(err.contains(QByteArray("unknown option '-") + option[1])) << err.constData();
    }
    EXPECT_EQ(run({"--help"}), 0);
    EXPECT_TRUE(out.startsWith("Usage: spb-unpack "));
}

QByteArray arrayOf(const Bytes &bytes)
{
    return {reinterpret_cast<const char *>(bytes.data()), static_cast<int>(bytes.size())};
}

std::string publicPem(unsigned seed)
{
    const std::string pem = privatePem(ramp(seed, 3, 32), false);
    const auto key = crypto::EcKey::readPrivate(Bytes(pem.begin(), pem.end()), nullptr);
    return "-----BEGIN PUBLIC KEY-----\n" +
           arrayOf(key.value().publicDer()).toBase64().toStdString() +
           "\n-----END PUBLIC KEY-----\n";
}

QByteArray signedImage(unsigned seed, const QByteArray &whole, std::uint32_t signedSize)
{
    const ScratchFolder folder;
    QByteArray cut = whole.left(static_cast<int>(signedSize));
    FileData image;
    image.segments = {{0, signedSize, reinterpret_cast<std::uint8_t *>(cut.data())}};
    image.segmentCount = 1;
    FileData *imageAddress = &image;
    SignedImage out;
    SignedImage *outAddress = &out;
    out.setSigImgFooter();
    out.setSigImgBin(&imageAddress);
    QByteArray path =
        QFile::encodeName(folder.file("key.pem", privatePem(ramp(seed, 3, 32), false)));
    EXPECT_TRUE(Preparation().signECDSA(reinterpret_cast<unsigned char *>(path.data()), &outAddress,
                                        true, nullptr));
    EXPECT_TRUE(out.createSignedImage(folder.path("signed"), whole));
    return QByteArray::fromStdString(ScratchFolder::contents(folder.path("signed")));
}

/// One package of each further kind, under the key "key.bin".
class SpbUnpackKinds : public SpbUnpack
{
protected:
    SpbUnpackKinds()
    {
        key = put("key.bin", arrayOf(kKey));
        put("a.smi",
            preparation::buildSmi({ramp(1, 3, 70), 0x08004000, true, kKey, kNonce, ramp(0, 1, 16)})
                .value());
        const QByteArray sfu =
            preparation::buildSfu({ramp(5, 7, 5000), 0x08000000, 9, kKey, kNonce}).value();
        put("a.sfuh", sfu.left(64));
        put("a.sfu", sfu.mid(64));
        put("a.ssp",
            preparation::buildSsp({ramp(9, 1, 152), kKey, ramp(0, 1, 16), {2, {}}}).value());
    }

    QJsonObject json(const QStringList &arguments, int status = 0)
    {
        EXPECT_EQ(run(QStringList{"--json"} + arguments), status) << err.constData();
        return QJsonDocument::fromJson(out).object();
    }

    const Bytes kKey = Bytes(16, 7);
    const Bytes kNonce = Bytes(12, 8);
    QString key;
};

TEST_F(SpbUnpackKinds, AreToldByContentAndUnpacked)
{
    const struct {
        const char *file, *kind;
        QByteArray plain;
    } cases[] = {{"a.smi", "SMI", arrayOf(ramp(1, 3, 70))},
                 {"a.sfuh", "SFU", arrayOf(ramp(5, 7, 5000))},
                 {"a.ssp", "SSP", arrayOf(ramp(9, 1, 152))}};
    const QString wrong = put("wrong.bin", QByteArray(16, 'w'));
    for (const auto &[file, kind, plain] : cases) {
        EXPECT_EQ(json({path(file)})["verdict"], "not checked") << file;
        const QJsonObject object = json({path(file), "--key", key, "--out", path("plain")});
        EXPECT_EQ(object["kind"], kind);
        EXPECT_EQ(object["authentic"], true);
        EXPECT_EQ(contents("plain"), plain);
        const auto others = QFile::ReadGroup | QFile::ReadOther;
        EXPECT_EQ((QFile::permissions(path("plain")) & others) == 0, file == QByteArray("a.ssp"));
        QFile::remove(path("plain"));
        EXPECT_EQ(json({path(file), "--key", wrong, "--out", path("plain")}, 2)["verdict"],
                  "wrong key or damaged");
        EXPECT_EQ(contents("plain"), "(no file)");
    }
    ASSERT_EQ(run({path("a.smi"), "--key", key}), 0);
    EXPECT_TRUE(out.startsWith("SMI\nFormat version")) << out.constData();
    EXPECT_TRUE(out.contains("\nLoad address      0x08004000\n")) << out.constData();
    EXPECT_EQ(json({path("a.sfuh")})["pieces"], 2);
}

TEST_F(SpbUnpackKinds, SignedImagesNeedAPublicKey)
{
    const QString mine = put("mine.pem", QByteArray::fromStdString(publicPem(3)));
    const QString other = put("other.pem", QByteArray::fromStdString(publicPem(4)));
    QByteArray signedFile = signedImage(3, arrayOf(ramp(2, 5, 300)), 200);
    const QString file = put("signed", signedFile);
    QJsonObject object = json({file});
    EXPECT_EQ(object["verdict"], "not checked");
    EXPECT_EQ(object["keyIdentifier"].toString().size(), 64);
    EXPECT_EQ(object["unsignedSize"], 100);
    EXPECT_EQ(json({file, "--public-key", mine})["verdict"], "authentic");
    EXPECT_EQ(json({file, "--public-key", other}, 2)["verdict"], "another key");
    signedFile[7] = static_cast<char>(signedFile[7] ^ 1);
    EXPECT_EQ(json({put("bad", signedFile), "--public-key", mine}, 2)["verdict"], "damaged");
    EXPECT_EQ(run({file, "--key", key}), 3);
    EXPECT_TRUE(err.contains("--public-key"));
    EXPECT_EQ(run({path("a.smi"), "--public-key", mine}), 3);
}

TEST_F(SpbUnpackKinds, LicencesAreVerifiedWithTheTokensKey)
{
    const std::string pem = privatePem(ramp(3, 3, 32), false);
    const auto signer = crypto::EcKey::readPrivate(Bytes(pem.begin(), pem.end()), nullptr).value();
    preparation::Licence licence;
    licence.index = 7;
    licence.identifier = "FW";
    licence.left = 41;
    licence.keyIdentifier = signer.identifier().value();
    std::ranges::copy(signer.publicPoint(), licence.ephemeralPoint.begin());
    const Bytes head = preparation::encodeLicence(licence);
    const auto digest = crypto::sha256(preparation::ByteView(head).first(220)).value();
    licence.signature = crypto::signDeterministic(signer, digest).value();
    QByteArray bytes = arrayOf(preparation::encodeLicence(licence));
    const QString file = put("a.bin", bytes);
    const QString mine = put("mine.pem", QByteArray::fromStdString(publicPem(3)));
    const QString other = put("other.pem", QByteArray::fromStdString(publicPem(4)));
    const QJsonObject object = json({file});
    EXPECT_EQ(object["kind"], "licence");
    EXPECT_EQ(object["verdict"], "not checked");
    EXPECT_EQ(object["identifier"], "FW");
    EXPECT_EQ(object["left"], 41);
    EXPECT_EQ(json({file, "--public-key", mine})["verdict"], "authentic");
    EXPECT_EQ(json({file, "--public-key", other}, 2)["verdict"], "another key");
    bytes[60] = 1;
    EXPECT_EQ(json({put("b", bytes), "--public-key", mine}, 2)["verdict"], "damaged");
    EXPECT_EQ(run({file, "--key", key}), 3);
    EXPECT_EQ(run({put("c", bytes + '0')}), 1);
    EXPECT_TRUE(err.contains("285 bytes")) << err.constData();
}

TEST_F(SpbUnpackKinds, StructureOfSmuAndSsfi)
{
    ImageBytes smu;
    smu.u32le(1).u32le(0x08100000).u16le(32).u16le(0).u32le(4).fill(16, 0).u32le(5);
    smu.u16le(0x6907).u16le(4 + 6).u16le(0x10).u16le(2).u8(0xAB).u8(0xCD);
    QJsonObject object = json({put("a.dat", arrayOf(smu.done()))});
    EXPECT_EQ(object["kind"], "SMU");
    EXPECT_EQ(object["protectedTlvs"].toArray()[0].toObject()["value"], "abcd");
    EXPECT_EQ(run({path("a.dat")}), 0);
    EXPECT_TRUE(out.contains("SHA256  0x10  2       abcd")) << out.constData();
    EXPECT_EQ(run({path("a.dat"), "--key", key}), 3);

    ImageBytes ssfi;
    ssfi.text("SFIMAGIC").u16le(3).u32le(77).u16le(1).fill(16, 5);
    ssfi.u8('C').u8(1).u16le(1).u32le(4).u32le(0).u16le(1).fill(32, 9).u32le(1);
    object = json({put("a.dat", arrayOf(ssfi.done()))});
    EXPECT_EQ(object["kind"], "SSFI");
    EXPECT_EQ(object["imageVersion"], 77);
    EXPECT_EQ(object["areas"].toArray()[0].toObject()["type"], "C");
}

TEST_F(SpbUnpackKinds, FaultsNameTheNearestKind)
{
    const QByteArray smi = contents("a.smi");
    const struct {
        QStringList arguments;
        int status;
        const char *words;
    } cases[] = {
        {{put("b", smi.left(100))}, 1, "kind SMI: It has 100 bytes, its head says 192"},
        {{put("c", "SMIMAGIK" + smi.mid(8))}, 1, "The nearest is SMI, but"},
        {{put("d", "firmware")},
         1,
         "no SFI, SSFI, SMI, SFU, SSP, SMU, licence and no signed image"},
        {{path("a.smi"), "--area", "1", "--key", key, "--out", path("o")}, 3, "no areas"},
        {{put("x.sfuh", contents("a.sfuh"))}, 1, "its body can't be read"},
        {{put("x", contents("a.sfuh"))}, 1, "use --body"},
        {{path("x"), "--body", path("a.smi")}, 1, "The body has 192 bytes"},
        {{path("x"), "--body", path("a.sfu"), "--key", key}, 0, ""},
        {{path("a.ssp"), "--key", key, "--out", path("no/o")}, 4, "no/o"},
    };
    for (const auto &[arguments, status, words] : cases) {
        EXPECT_EQ(run(arguments), status) << words;
        EXPECT_TRUE(err.contains(words)) << err.constData();
    }
}

}  // namespace
