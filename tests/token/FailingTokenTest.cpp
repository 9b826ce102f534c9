// A token that fails at any call, and one that holds less than was put there: refused with a
// reason, and no licence comes into being that nobody counted.
#include "preparation/licence/ChipKey.h"
#include "preparation/licence/LicenceVerifier.h"
#include "preparation/licensing/LicenceMaker.h"
#include "support/Chip.h"
#include "support/TokenFixture.h"

#include <QDirIterator>

#include <p11-kit/pkcs11.h>

using namespace crypto;
using files::Result;

namespace
{

class FailingToken : public TokenFixture
{
protected:
    FailingToken() { makeToken("t"); }

    /// Runs something once as it is, then with each of its calls to the token failing.
    /// @param act   is told whether a call fails
    /// @param step  every so many calls one fails
    void failEach(const std::function<void(bool fails)> &act, int step = 1)
    {
        int calls = 0;
        faults().before = [&calls](const std::string &) {
            ++calls;
            return CKR_OK;
        };
        act(false);
        ASSERT_GT(calls, 0);
        for (int at = 1; at <= calls; at += step) {
            faults().before = [left = at](const std::string &) mutable -> unsigned long {
                return --left == 0 ? CKR_DEVICE_ERROR : CKR_OK;
            };
            SCOPED_TRACE(at);
            act(true);
            faults() = {};
        }
    }

    Result<preparation::MadeLicence> make(const TokenSession &session, const LicenceStock &stock)
    {
        return preparation::makeLicence(session, stock, m_chip,
                                        [this](ByteView bytes) -> Result<void> {
                                            m_made.assign(bytes.begin(), bytes.end());
                                            return {};
                                        });
    }

    [[nodiscard]] QStringList objects() const
    {
        QStringList paths;
        for (QDirIterator files(folder.path("tokens"), {"*.object"}, QDir::Files,
                                QDirIterator::Subdirectories);
             files.hasNext();) {
            paths << files.next();
        }
        return paths;
    }

    EcKey m_chip = preparation::readChipKey(Chip().point()).value();
    std::vector<std::uint8_t> m_made;
};

TEST_F(FailingToken, IsNotOpened)
{
    failEach([this](bool fails) {
        const auto loaded = TokenModules::load();
        const auto tokens = loaded ? loaded->tokens() : std::vector<TokenInfo>();
        const auto session = tokens.empty() ? files::fail(files::ErrorCode::NotFound, "")
                                            : loaded->open(tokens[0].uri, pin("1234"));
        EXPECT_TRUE(fails || session);
    });
}

TEST_F(FailingToken, KeepsAStockThatCounts)
{
    const auto session = open();
    program(session, 1, 500);
    const auto replace = [&session]() -> Result<LicenceStock> {
        const auto old = readStocks(session);
        return old ? programStock(session, {"FW-1", 1, "VDR32H5", kKey, kNonce, 500}, *old, {})
                   : tl::unexpected(old.error());
    };
    failEach(
        [&](bool fails) {
            const auto made = replace();
            faults() = {};
            EXPECT_TRUE(fails || made);
            const auto stocks = readStocks(session).value();
            // An old one that couldn't be taken away stands beside the new one, until the next
            // time.
            EXPECT_TRUE(stocks.size() == 1 || (stocks.size() == 2 && !made)) << stocks.size();
            EXPECT_EQ(stocks.back().left, 500U);
            EXPECT_EQ(stocks.back().fault, "");
            EXPECT_TRUE(stocks.size() == 1 || replace());
        },
        3);
}

TEST_F(FailingToken, GivesNoLicenceThatWasNotCounted)
{
    const auto session = open();
    const LicenceStock stock = program(session, 1, 500);
    const EcKey key = EcKey::fromPoint(Curve::P256, stock.signingPoint).value();
    std::uint32_t left = 500;
    failEach([&](bool fails) {
        m_made.clear();
        const auto made = make(session, stock);
        faults() = {};
        EXPECT_TRUE(fails || made);
        EXPECT_EQ(made.has_value(), !m_made.empty());
        const auto opened = preparation::openLicence(m_made, &key);
        EXPECT_TRUE(!made || opened->verdict == preparation::SignVerdict::Authentic);
        const std::uint32_t now = readStocks(session)->at(0).left;
        EXPECT_TRUE(now == left - 1 || (!made && now == left)) << now;
        left = now;
    });
}

TEST_F(FailingToken, ThatLostAnObjectIsNotUsed)
{
    program(open(), 1, 9);
    std::set<std::string> faultTexts;
    for (const QString &path : objects()) {
        const std::string content = ScratchFolder::contents(path);
        ASSERT_TRUE(QFile::remove(path));
        const auto loaded = TokenModules::load();
        const auto tokens = loaded->tokens();
        const auto session = tokens.empty() ? files::fail(files::ErrorCode::NotFound, "")
                                            : loaded->open(tokens[0].uri, pin("1234"));
        const auto stocks = session ? readStocks(*session) : tl::unexpected(session.error());
        for (const LicenceStock &stock : stocks ? *stocks : std::vector<LicenceStock>()) {
            faultTexts.insert(stock.fault);
            EXPECT_EQ(make(*session, stock).has_value(), stock.fault.empty());
        }
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content.data(), static_cast<qint64>(content.size()));
    }
    EXPECT_EQ(faultTexts, (std::set<std::string>{"missing: firmware key", "missing: signing pair",
                                                 "missing: nonce", "missing: counter"}));
}

}  // namespace
