#include "files/FileManager.h"
#include "preparation/licence/ChipKey.h"
#include "preparation/licence/LicenceVerifier.h"
#include "preparation/licensing/LicenceMaker.h"
#include "support/Chip.h"
#include "support/TokenFixture.h"

#include <p11-kit/pkcs11.h>

using namespace preparation;
using crypto::Curve;
using crypto::EcKey;
using crypto::LicenceStock;
using files::ErrorCode;
using files::Result;

namespace
{

using Bytes = std::vector<std::uint8_t>;

Licence sample()
{
    Licence licence;
    licence.index = 9;
    licence.identifier = "fifteen bytes..";
    licence.device = "VDR32H5";
    const auto numbers = crypto::numbersOf(Curve::P256).value();
    std::ranges::copy(numbers.x, licence.ephemeralPoint.begin());
    std::ranges::copy(numbers.y, licence.ephemeralPoint.begin() + 32);
    return licence;
}

TEST(LicenceFile, WithOneWrongByteIsRefused)
{
    const Bytes good = encodeLicence(sample());
    ASSERT_EQ(good.size(), kLicenceBytes);
    ASSERT_TRUE(parseLicence(good));
    const struct {
        std::size_t at;
        std::uint8_t value;
        ErrorCode code;
    } lies[] = {{0, 'X', ErrorCode::BadMagic},   {8, 2, ErrorCode::BadVersion},
                {10, 0, ErrorCode::BadValue},    {11, 14, ErrorCode::BadValue},
                {11, 0, ErrorCode::BadValue},    {12, 0, ErrorCode::BadValue},
                {13, '\n', ErrorCode::BadValue}, {27, 'x', ErrorCode::BadValue},
                {50, 'x', ErrorCode::BadValue},  {100, 0, ErrorCode::BadValue}};
    for (const auto &[at, value, code] : lies) {
        Bytes bad = good;
        bad[at] = value;
        const auto parsed = parseLicence(bad);
        ASSERT_FALSE(parsed) << at;
        EXPECT_EQ(parsed.error().code, code) << at << ": " << parsed.error().text;
    }
    Bytes longer = good;
    longer.push_back(0);
    EXPECT_EQ(parseLicence(longer).error().code, ErrorCode::WrongSize);
    for (std::size_t size = 0; size < good.size(); ++size) {
        EXPECT_FALSE(parseLicence(crypto::ByteView(good).first(size))) << size;
    }
}

TEST(ChipKey, IsPemOrAPointOnTheRightCurve)
{
    const Chip chip;
    const std::string pem = chip.pem();
    const Bytes text(pem.begin(), pem.end());
    const auto fromPem = readChipKey(text);
    const auto fromPoint = readChipKey(chip.point());
    ASSERT_TRUE(fromPem && fromPoint);
    EXPECT_EQ(fromPem->publicDer(), fromPoint->publicDer());
    EXPECT_FALSE(readChipKey(Bytes(64, 7)));
    EXPECT_FALSE(readChipKey(Bytes()));
    const crypto::EvpKey brainpool(EVP_EC_gen("brainpoolP256t1"));
    const crypto::Bio memory(BIO_new(BIO_s_mem()));
    PEM_write_bio_PUBKEY(memory.get(), brainpool.get());
    Bytes other(static_cast<std::size_t>(BIO_pending(memory.get())));
    BIO_read(memory.get(), other.data(), static_cast<int>(other.size()));
    EXPECT_FALSE(readChipKey(other));
}

class Licences : public TokenFixture
{
protected:
    Licences() { makeToken("t"); }

    Result<MadeLicence> make(const crypto::TokenSession &session, const LicenceStock &stock)
    {
        return makeLicence(session, stock, readChipKey(chip.point()).value(),
                           [this](crypto::ByteView bytes) -> Result<void> {
                               made.assign(bytes.begin(), bytes.end());
                               return fails ? files::fail(ErrorCode::WriteFailed, "no room")
                                            : Result<void>();
                           });
    }

    Chip chip;
    Bytes made;
    bool fails = false;
};

TEST_F(Licences, CarryTheKeyToTheirChip)
{
    const auto session = open();
    const LicenceStock stock = program(session, 3, 2);
    const auto result = make(session, stock);
    ASSERT_TRUE(result) << result.error().text;
    EXPECT_EQ(result->left, 1u);
    const EcKey key = EcKey::fromPoint(Curve::P256, stock.signingPoint).value();
    const auto opened = openLicence(made, &key);
    ASSERT_TRUE(opened) << opened.error().text;
    EXPECT_EQ(opened->verdict, SignVerdict::Authentic);
    EXPECT_EQ(opened->licence.identifier, "FW-3");
    EXPECT_EQ(opened->licence.left, 1u);
    const crypto::ByteView bytes(made);
    EXPECT_EQ(chip.unwrap(bytes.subspan(100, 64), bytes.first(164), bytes.subspan(164, 24)), kKey);
    // Each signed byte is covered; the key's identifier tells another key.
    for (const std::size_t at : {10, 12, 52, 60, 70, 170, 219, 283}) {
        Bytes bad = made;
        bad[at] ^= 1;
        const auto verdict = openLicence(bad, &key);
        EXPECT_TRUE(!verdict || verdict->verdict != SignVerdict::Authentic) << at;
    }
    ASSERT_TRUE(make(session, stock));
    const auto none = make(session, stock);
    ASSERT_FALSE(none);
    EXPECT_EQ(none.error().code, ErrorCode::Refused);
}

TEST_F(Licences, ThatFailAreGivenBack)
{
    const auto session = open();
    const LicenceStock stock = program(session, 1, 5);
    const auto left = [&session] {
        const auto stocks = crypto::readStocks(session);
        return stocks && stocks->size() == 1 ? stocks->at(0).left : 0xFFFFFFFF;
    };
    fails = true;
    EXPECT_EQ(make(session, stock).error().text, "no room");
    EXPECT_EQ(left(), 5u);
    fails = false;
    for (const char *call : {"C_GenerateKeyPair", "C_WrapKey", "C_Sign"}) {
        made.clear();
        failAt(call, 1, CKR_DEVICE_ERROR);
        EXPECT_FALSE(make(session, stock)) << call;
        EXPECT_TRUE(made.empty()) << call;
        EXPECT_EQ(left(), 5u) << call;
    }
    // A token that is gone can't take it back, and that is said.
    faults().before = [gone = false](const std::string &call) mutable -> unsigned long {
        gone = gone || call == "C_Sign";
        return gone ? CKR_DEVICE_REMOVED : CKR_OK;
    };
    const auto lost = make(session, stock);
    ASSERT_FALSE(lost);
    EXPECT_NE(lost.error().text.find("can't be given back"), std::string::npos);
    faults() = {};
    EXPECT_EQ(left(), 4u);
}

TEST_F(Licences, GoIntoAModulesList)
{
    const auto session = open();
    ASSERT_TRUE(make(session, program(session, 1, 5)));
    folder.file("chip.lic", made);
    folder.file("m.bin", "module");
    const QString list = folder.file("list.mcsv", "./m.bin,./chip.lic,0x08000000\n");
    FileType *opened = nullptr;
    ASSERT_TRUE(FileManager().Open(list.toStdWString(), &opened, 0xFF, 0, 0));
    const files::RecordOwner<FileMCSV> record(static_cast<FileMCSV *>(opened));
    ASSERT_EQ(record->modules.size(), 1u);
    EXPECT_EQ(record->modules.front().licenceIsFile, 1u);
    EXPECT_EQ(Bytes(record->modules.front().licence,
                    record->modules.front().licence + record->modules.front().licenceSize),
              made);
}

}  // namespace
