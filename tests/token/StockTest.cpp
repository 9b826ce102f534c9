#include "support/Chip.h"
#include "support/TokenFixture.h"

#include "crypto/primitives/Digests.h"
#include "crypto/token/StockObjects.h"

#include <p11-kit/pkcs11.h>

#include <QDirIterator>

#include <csignal>
#include <sys/wait.h>

using namespace crypto;
using files::ErrorCode;

namespace
{

using Bytes = std::vector<std::uint8_t>;

class Stock : public TokenFixture
{
protected:
    Stock() { makeToken("t"); }

    static std::uint32_t left(const TokenSession &session)
    {
        const auto stocks = readStocks(session);
        return stocks && stocks->size() == 1 ? stocks->at(0).left : 0xFFFFFFFF;
    }
    /// Objects of the token as files, and whether the bytes stand in any of them.
    [[nodiscard]] int objects() const
    {
        int count = 0;
        QDirIterator files(folder.path("tokens"), {"*.object"}, QDir::Files,
                           QDirIterator::Subdirectories);
        for (; files.hasNext(); ++count) {
            const std::string bytes = ScratchFolder::contents(files.next());
            EXPECT_EQ(bytes.find(std::string(kKey.begin(), kKey.end())), std::string::npos);
        }
        return count;
    }
};

TEST_F(Stock, IsReadBackAsItWasProgrammed)
{
    {
        const auto session = open();
        program(session, 7, 42);
        program(session, 3, 1);
    }
    const auto stocks = readStocks(open());
    ASSERT_TRUE(stocks) << stocks.error().text;
    ASSERT_EQ(stocks->size(), 2u);
    EXPECT_EQ(stocks->at(0).index, 3);
    const LicenceStock &stock = stocks->at(1);
    EXPECT_EQ(stock.identifier, "FW-7");
    EXPECT_EQ(stock.device, "VDR32H5");
    EXPECT_EQ(Bytes(stock.nonce.begin(), stock.nonce.end()), kNonce);
    EXPECT_EQ(stock.left, 42u);
    EXPECT_EQ(stock.fault, "");
    EXPECT_TRUE(EcKey::fromPoint(Curve::P256, stock.signingPoint));
    EXPECT_EQ(objects(), 13) << "two sets of six, and the token's own";
}

TEST_F(Stock, RefusesWhatCannotBeALicence)
{
    const auto session = open();
    const Bytes shortKey(15, 1);
    const StockRequest good{"A", 1, "", kKey, kNonce, 1};
    std::vector<StockRequest> bad(9, good);
    bad[0].identifier = "";
    bad[1].identifier = "sixteen bytes..!";
    bad[2].identifier = "a\nb";
    bad[3].index = 0;
    bad[4].key = shortKey;
    bad[5].nonce = ByteView(kNonce).first(11);
    bad[6].licences = 0;
    bad[7].licences = kMostLicences + 1;
    bad[8].device = "a device's name of 25 bytes";
    for (const StockRequest &request : bad) {
        const auto result = programStock(session, request, {}, {});
        ASSERT_FALSE(result);
        EXPECT_EQ(result.error().code, ErrorCode::BadValue) << result.error().text;
    }
    EXPECT_EQ(objects(), 1);
    EXPECT_TRUE(programStock(session, {"A", 1, "", kKey, kNonce, kMostLicences}, {}, {}));
}

TEST_F(Stock, ReplacesOnlyWhatItIsTold)
{
    const auto session = open();
    const LicenceStock old = program(session, 1, 5);
    const LicenceStock other = program(session, 2, 9);
    for (const auto &[name, index] : {std::pair("FW-1", 8), std::pair("new", 1)}) {
        const auto refused = programStock(
            session, {name, static_cast<std::uint8_t>(index), "", kKey, kNonce, 1}, {}, {});
        ASSERT_FALSE(refused);
        EXPECT_EQ(refused.error().code, ErrorCode::Refused);
    }
    ASSERT_TRUE(programStock(session, {"new", 1, "", kKey, kNonce, 77}, {old}, {}));
    const auto stocks = readStocks(session).value();
    ASSERT_EQ(stocks.size(), 2u);
    EXPECT_EQ(stocks[0].identifier, "new");
    EXPECT_EQ(stocks[0].left, 77u);
    EXPECT_EQ(stocks[1].setId, other.setId);
    EXPECT_EQ(objects(), 13);
}

TEST_F(Stock, OfAProgrammingThatFailsLeavesNothingAndKeepsTheOld)
{
    const auto session = open();
    const LicenceStock old = program(session, 1, 5);
    const int before = objects();
    const StockRequest request{"FW-1", 1, "", kKey, kNonce, 9};
    for (int step = 0; step < 5; ++step) {
        const auto given =
            programStock(session, request, {old}, [step](int done, int) { return done < step; });
        ASSERT_FALSE(given);
        EXPECT_EQ(objects(), before) << "given up at " << step;
    }
    for (int at = 1; at <= 4; ++at) {
        failAt("C_CreateObject", at, CKR_DEVICE_MEMORY);
        const auto full = programStock(session, request, {old}, {});
        ASSERT_FALSE(full);
        EXPECT_NE(full.error().text.find("full"), std::string::npos) << full.error().text;
        EXPECT_EQ(objects(), before) << "full at " << at;
    }
    failAt("C_GenerateKeyPair", 1, CKR_DEVICE_REMOVED);
    EXPECT_FALSE(programStock(session, request, {old}, {}));
    faults() = {};
    EXPECT_EQ(left(session), 5u);
    failAt("C_DestroyObject", 1, CKR_DEVICE_ERROR);
    const auto both = programStock(session, request, {old}, {});
    ASSERT_FALSE(both) << "the old one stands beside the new one";
    EXPECT_NE(both.error().text.find("can't be removed"), std::string::npos) << both.error().text;
}

TEST_F(Stock, ThatWasCutShortIsSweptByTheNext)
{
    const auto session = open();
    // As if the program had been killed: nothing is removed afterwards.
    faults().before = [](const std::string &call) -> unsigned long {
        return call == "C_GenerateKeyPair" || call == "C_DestroyObject" ? CKR_DEVICE_REMOVED
                                                                        : CKR_OK;
    };
    EXPECT_FALSE(programStock(session, {"FW-1", 1, "", kKey, kNonce, 9}, {}, {}));
    faults() = {};
    EXPECT_EQ(objects(), 4);
    EXPECT_TRUE(readStocks(session)->empty());
    program(session, 1, 9);
    EXPECT_EQ(objects(), 7);
}

// Its label is a front without a part: nothing that the program wrote.
TEST_F(Stock, SweepsNoKeyThatOnlyAStrangeObjectPointsTo)
{
    const auto session = open();
    const SetId set = {1, 2, 3, 4, 5, 6, 7, 8};
    const std::string label = frontOf(set);
    Attributes strange = dataTemplate(label, kNonce);
    ASSERT_TRUE(createObject(session.state(), strange, "data"));
    const Bytes value(16, 0x4B);
    Attributes key;
    key.add(CKA_CLASS, CK_ULONG{CKO_SECRET_KEY})
        .add(CKA_KEY_TYPE, CK_ULONG{CKK_AES})
        .add(CKA_TOKEN, true)
        .add(CKA_ID, ByteView(set))
        .add(CKA_VALUE, ByteView(value));
    ASSERT_TRUE(createObject(session.state(), key, "key"));
    program(session, 1, 9);
    EXPECT_NE(keyOf(session.state(), set, CKO_SECRET_KEY).value(), CK_INVALID_HANDLE);
    EXPECT_EQ(objects(), 9);
}

TEST_F(Stock, CountsNothingThatIsNoCounter)
{
    const auto session = open();
    const TokenSession::State &state = session.state();
    const SetId set = program(session, 1, 9).setId;
    const std::string label = frontOf(set) + kCounterPart;
    const auto counter = dataOf(state, set, kCounterPart).value().at(0);
    ASSERT_EQ(state.module->C_DestroyObject(state.handle, counter), CKR_OK);
    for (const Bytes &value : {Bytes{1, 0, 0}, Bytes{1, 0, 0, 0, 0}, Bytes(4, 0xFF)}) {
        Attributes strange = dataTemplate(label, value);
        ASSERT_TRUE(createObject(state, strange, "counter"));
        EXPECT_EQ(readStocks(session)->at(0).fault, "missing: counter") << value.size();
    }
}

TEST_F(Stock, CountsDownToNothing)
{
    const auto session = open();
    const LicenceStock stock = program(session, 1, 2);
    EXPECT_EQ(takeLicence(session, stock).value(), 1u);
    EXPECT_EQ(giveBackLicence(session, stock).value(), 2u);
    EXPECT_EQ(takeLicence(session, stock).value(), 1u);
    EXPECT_EQ(takeLicence(session, stock).value(), 0u);
    const auto none = takeLicence(session, stock);
    ASSERT_FALSE(none);
    EXPECT_EQ(none.error().code, ErrorCode::Refused);
    EXPECT_EQ(left(session), 0u);
    EXPECT_EQ(objects(), 7) << "counters don't pile up";
}

TEST_F(Stock, OfATokenThatFindsMoreThanThereIsRoomForIsRefused)
{
    const auto session = open();
    faults().findsTooMany = true;
    EXPECT_FALSE(readStocks(session)) << "and asked no second time, which would never end";
}

TEST_F(Stock, OfAFullTokenKeepsItsCount)
{
    const auto session = open();
    const LicenceStock stock = program(session, 1, 9);
    failAt("C_CreateObject", 1, CKR_DEVICE_MEMORY);
    const auto full = takeLicence(session, stock);
    ASSERT_FALSE(full);
    EXPECT_NE(full.error().text.find("full"), std::string::npos) << full.error().text;
    EXPECT_EQ(left(session), 9u);
}

TEST_F(Stock, WhoseOldCounterStaysNeverGainsALicence)
{
    const auto session = open();
    const LicenceStock stock = program(session, 1, 9);
    ASSERT_EQ(takeLicence(session, stock).value(), 8u);
    failAt("C_DestroyObject", 1, CKR_DEVICE_ERROR);
    EXPECT_FALSE(giveBackLicence(session, stock)) << "8 stands beside 9, and counts";
    EXPECT_EQ(left(session), 8u);
    failAt("C_DestroyObject", 1, CKR_DEVICE_ERROR);
    EXPECT_EQ(takeLicence(session, stock).value(), 7u);
    faults() = {};
    EXPECT_EQ(left(session), 7u);
}

// Each child counts down and says so, until it is killed somewhere in between.
TEST_F(Stock, CountsUnderKill)
{
    constexpr std::uint32_t kLicences = 100000;
    program(open(), 1, kLicences);
    std::uint32_t said = 0;
    for (int round = 0; round < 8; ++round) {
        int pipe[2];
        ASSERT_EQ(::pipe(pipe), 0);
        const pid_t child = ::fork();
        if (child == 0) {
            const auto session = open();
            const LicenceStock stock = readStocks(session)->at(0);
            for (;;) {
                const char word = takeLicence(session, stock) ? '+' : '!';
                if (::write(pipe[1], &word, 1) != 1 || word == '!') {
                    ::_exit(1);
                }
            }
        }
        ::close(pipe[1]);
        char words[4096];
        ssize_t got = 0;
        for (int enough = 0; enough < 5 + round && got >= 0; ++enough) {
            got = ::read(pipe[0], words, 1);
            said += got == 1 && words[0] == '+' ? 1 : 0;
        }
        ::usleep(static_cast<useconds_t>(700 * round));
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
        while ((got = ::read(pipe[0], words, sizeof words)) > 0) {
            said += static_cast<std::uint32_t>(got);
        }
        ::close(pipe[0]);
        const std::uint32_t now = left(open());
        EXPECT_LE(now, kLicences - said);
        EXPECT_GE(now, kLicences - said - static_cast<std::uint32_t>(round) - 1);
    }
    EXPECT_GT(said, 20u);
}

TEST_F(Stock, IsWrappedForOneChipAlone)
{
    const auto session = open();
    const LicenceStock stock = program(session, 1, 9);
    const Bytes info = {1, 2, 3};
    const int before = objects();
    std::vector<Chip> chips(2);
    // A point whose X begins so looks like DER to some tokens.
    while (chips.back().point()[0] != 0x3F) {
        chips.back() = Chip();
    }
    for (const Chip &chip : chips) {
        faults().knowsKdf = &chip == &chips.back();
        const auto pair = EphemeralPair::make(session);
        ASSERT_TRUE(pair) << pair.error().text;
        bool inToken = true;
        const auto wrapped = pair->wrap(stock, chip.point(), info, &inToken);
        ASSERT_TRUE(wrapped) << wrapped.error().text;
        EXPECT_EQ(inToken, faults().knowsKdf);
        EXPECT_EQ(chip.unwrap(pair->point(), info, *wrapped), kKey);
        EXPECT_NE(Chip().unwrap(pair->point(), info, *wrapped), kKey);
        EXPECT_NE(chip.unwrap(pair->point(), Bytes{1, 2}, *wrapped), kKey);
    }
    EXPECT_EQ(objects(), before) << "what one licence needs isn't kept";
    bool inToken = false;
    EXPECT_FALSE(EphemeralPair::make(session)->wrap(stock, Bytes(64, 1), info, &inToken))
        << "no point of the curve";
}

TEST(StockPoint, StandsPlainOrInDer)
{
    const Bytes point(64, 0x5A);
    const std::pair<Bytes, bool> fronts[] = {
        {{4}, true},  {{4, 65, 4}, true},  {{}, false},         {{4, 4}, false},
        {{2}, false}, {{4, 65, 2}, false}, {{4, 64, 4}, false}, {{3, 65, 4}, false}};
    for (const auto &[front, isGood] : fronts) {
        Bytes attribute = front;
        attribute.insert(attribute.end(), point.begin(), point.end());
        EXPECT_EQ(pointOf(attribute), isGood ? point : Bytes()) << front.size();
    }
}

TEST_F(Stock, SignsWithItsOwnKey)
{
    const auto session = open();
    const LicenceStock stock = program(session, 1, 9);
    LicenceStock stranger = program(session, 2, 9);
    const Digest digest = sha256(kNonce).value();
    const auto signature = signWithStock(session, stock, digest);
    ASSERT_TRUE(signature) << signature.error().text;
    EXPECT_TRUE(
        EcKey::fromPoint(Curve::P256, stock.signingPoint)->verify(digest, *signature).value());
    stranger.signingPoint = stock.signingPoint;
    EXPECT_FALSE(signWithStock(session, stranger, digest)) << "another key signed";
}

}  // namespace
