#include "crypto/token/TokenFailure.h"
#include "support/TokenFixture.h"

#include <p11-kit/pkcs11.h>

using crypto::PinTries;
using crypto::TokenInfo;
using files::ErrorCode;

namespace
{

class Tokens : public TokenFixture
{
};

TEST_F(Tokens, OfOneLabelAreToldApartByTheirUris)
{
    makeToken("line 3");
    makeToken("line 3");
    const auto all = modules();
    const auto tokens = all.tokens();
    ASSERT_EQ(tokens.size(), 2u) << "the free place and trust stores are no tokens to choose";
    EXPECT_EQ(tokens[0].label, "line 3");
    EXPECT_EQ(tokens[1].label, "line 3");
    EXPECT_NE(tokens[0].serial, tokens[1].serial);
    EXPECT_EQ(tokens[0].lacks, "");
    for (const TokenInfo &token : tokens) {
        ASSERT_TRUE(token.uri.starts_with("pkcs11:"));
        const auto session = all.open(token.uri, pin("1234"));
        ASSERT_TRUE(session) << session.error().text;
        EXPECT_EQ(session->info().serial, token.serial);
    }
    const auto both = all.find("pkcs11:token=line%203");
    ASSERT_FALSE(both);
    EXPECT_EQ(both.error().code, ErrorCode::Refused);
    EXPECT_EQ(all.find("pkcs11:token=line%204").error().code, ErrorCode::NotFound);
    EXPECT_EQ(all.find("token 3").error().code, ErrorCode::BadValue);
    // An attribute that isn't known could be the one that tells them apart.
    EXPECT_EQ(all.find("pkcs11:serial=" + tokens[0].serial + ";colour=red").error().code,
              ErrorCode::BadValue);
}

TEST_F(Tokens, TellWhatIsWrongWithAPin)
{
    makeToken("t");
    const auto all = modules();
    const std::string uri = all.tokens().at(0).uri;
    const auto empty = all.open(uri, pin(""));
    ASSERT_FALSE(empty);
    EXPECT_EQ(all.find(uri)->tries, PinTries::NotTold) << "no try is lost on an empty PIN";
    for (const char *wrong : {"4321", "123", "1234 "}) {
        const auto session = all.open(uri, pin(wrong));
        ASSERT_FALSE(session) << wrong;
        EXPECT_NE(session.error().text.find("PIN"), std::string::npos) << session.error().text;
        EXPECT_EQ(session.error().text.find("4321"), std::string::npos);
    }
    EXPECT_EQ(all.find(uri)->tries, PinTries::Few) << "SoftHSM tells no more";
    ASSERT_TRUE(all.open(uri, pin("1234")));
    const std::pair<unsigned long, PinTries> flags[] = {
        {CKF_USER_PIN_FINAL_TRY | CKF_USER_PIN_COUNT_LOW, PinTries::Last},
        {CKF_USER_PIN_LOCKED | CKF_USER_PIN_FINAL_TRY, PinTries::Locked}};
    for (const auto &[flag, tries] : flags) {
        faults().tokenFlags = flag;
        EXPECT_EQ(all.find(uri)->tries, tries);
    }
}

TEST_F(Tokens, ThatAreRemovedAreMissedAndSoIsAModule)
{
    makeToken("t");
    {
        const auto all = modules();
        const std::string uri = all.tokens().at(0).uri;
        faults().before = [](const std::string &call) {
            return call == "C_GetTokenInfo" ? CKR_TOKEN_NOT_PRESENT : CKR_OK;
        };
        EXPECT_TRUE(all.tokens().empty());
        EXPECT_EQ(all.open(uri, pin("1234")).error().code, ErrorCode::NotFound);
    }
    useModulesOf("none");
    const auto none = crypto::TokenModules::load();
    ASSERT_FALSE(none);
    EXPECT_NE(none.error().text.find("install"), std::string::npos);
}

TEST_F(Tokens, AreExplainedWhateverTheyAnswer)
{
    const std::pair<unsigned long, const char *> cases[] = {
        {CKR_PIN_LOCKED, "security officer"}, {CKR_DEVICE_MEMORY, "full"},
        {CKR_DEVICE_REMOVED, "plug it in"},   {CKR_VENDOR_DEFINED + 5, "0x80000005"},
        {0x7FFFFFFF, "0x7FFFFFFF"},
    };
    for (const auto &[code, word] : cases) {
        EXPECT_NE(crypto::explainTokenCode(code).find(word), std::string::npos) << code;
    }
}

}  // namespace
