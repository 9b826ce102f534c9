#include "certif/ChainView.h"

#include "certif/Certificates.h"
#include "certif/Opening.h"
#include "support/ScratchFolder.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

using namespace certif;

namespace
{

/// A form that is filled in for a leaf below a root: no fault, every value at its place.
class Preview : public ::testing::Test
{
protected:
    Preview()
    {
        plan.values = {folder.path("leaf"),
                       folder.file("root.pem", kRootKey),
                       folder.file("leaf.pem", kLeafKey),
                       "LEAF",
                       "STANDARD",
                       "SECURED",
                       "0",
                       "5",
                       "0x0",
                       "00000003"};
        plan.upperCertificate = folder.file("root.b64", text({root()}).toStdString());
        folder.file("middle.pem", kMiddleKey);
    }

    ScratchFolder folder;
    Plan plan;
};

TEST_F(Preview, IsTheChainThatTheToolWillMake)
{
    const ChainView view = preview(plan);
    EXPECT_EQ(view.faults, QStringList());
    ASSERT_EQ(view.rows.size(), 2u);
    EXPECT_TRUE(view.rows[1].isPlanned);
    EXPECT_EQ(view.rows[1].step.issuer, Issuer::Matches);
    EXPECT_EQ(view.rows[1].step.remaining[0], 3);
    const ChainView made = viewOf({root(), leaf([](auto &c) { c.permissions[0] = 3; })});
    EXPECT_EQ(made.rows[1].keyIdentifier, view.rows[1].keyIdentifier);
    EXPECT_EQ(made.rows[1].keyIdentifier.size(), 64);
    EXPECT_EQ(encode(made.rows[0].certificate), encode(view.rows[0].certificate));
    // A chain without its leaf is no fault, but no use either.
    EXPECT_EQ(made.note, "");
    EXPECT_NE(viewOf({root()}).note, "");
}

struct Wish {
    const char *name;
    std::function<void(Plan &, const ScratchFolder &)> change;
    const char *faults;  ///< joined by "|"; DIR stands for the folder
};

class Wishes : public Preview, public ::testing::WithParamInterface<Wish>
{
};

TEST_P(Wishes, AreJudgedBeforeAnythingIsWritten)
{
    GetParam().change(plan, folder);
    const QString dir = folder.path("x").chopped(2);
    EXPECT_EQ(preview(plan).faults.join('|').replace(dir, "DIR").toStdString(), GetParam().faults);
}

INSTANTIATE_TEST_SUITE_P(
    Forms, Wishes,
    ::testing::Values(
        Wish{"OtherSigner",
             [](Plan &p, const auto &f) { p.values.issuerKey = f.path("middle.pem"); },
             "2 LEAF: It is not signed by the key of the certificate above"},
        Wish{"RightInVain", [](Plan &p, const auto &) { p.values.mask = "80000000_00000011"; },
             "2 LEAF: Rights that the chain above doesn't grant, bits 4, 63"},
        Wish{"NoRight", [](Plan &p, const auto &) { p.values.mask = "0"; },
             "2 LEAF: No right is left"},
        Wish{"OtherClass", [](Plan &p, const auto &) { p.values.socClass = "0x6"; },
             "2 LEAF: The SoC class differs from the one above"},
        Wish{"NoNumber", [](Plan &p, const auto &) { p.values.socClass = "six"; },
             "\"soc_class\" can't be \"six\""},
        Wish{"RootAmongThem", [](Plan &p, const auto &) { p.values.role = "ROOT"; },
             "1 ROOT: The root certificate is not signed by its own key"},
        Wish{"KeyBehindAPhrase",
             [](Plan &p, const ScratchFolder &f) {
                 p.values.issuerKey = f.file("locked.pem", kLockedKey);
             },
             "DIR/locked.pem: the key is behind a pass phrase; a key without one is needed"},
        Wish{"IssuerIsGone",
             [](Plan &p, const ScratchFolder &f) { p.values.issuerKey = f.path("none.pem"); },
             "DIR/none.pem: No such file or directory"},
        Wish{"UpperIsNoChain",
             [](Plan &p, const ScratchFolder &f) { p.upperCertificate = f.file("a.b64", "AAAA"); },
             "DIR/a.b64: record 1: is cut short"},
        Wish{"LeafAboveALeaf",
             [](Plan &p, const ScratchFolder &f) {
                 p.upperCertificate = f.file("l.b64", text({root(), leaf()}).toStdString());
                 p.values.issuerKey = p.values.subjectKey;
             },
             "3 LEAF: Nothing may stand below a leaf certificate"},
        Wish{"NotFilledInYet",
             [](Plan &p, const auto &) {
                 p.upperCertificate.clear();
                 p.values.subjectKey.clear();
             },
             ""}),
    [](const auto &wish) { return wish.param.name; });

TEST(Rights, ClassIsComparedWithTheLastOneThatWasTold)
{
    const auto steps = examine(
        {root(),
         certificate(Role::Intermediate, kMiddleKey, kRootKey, [](auto &c) { c.socClass = 0; }),
         certificate(Role::Leaf, kLeafKey, kMiddleKey, [](auto &c) { c.socClass = 6; })});
    EXPECT_TRUE(steps[1].faults.empty());
    EXPECT_EQ(steps[2].faults,
              std::vector<std::string>{"The SoC class differs from the one above"});
}

struct Opened {
    const char *name;
    const char *content;  ///< null: no file
    const char *message;  ///< FILE stands for its path
};

class Finished : public ::testing::TestWithParam<Opened>
{
};

TEST_P(Finished, ThatCantBeReadSaysWhy)
{
    const ScratchFolder folder;
    const QString path = folder.path("a.b64");
    if (GetParam().content != nullptr) {
        folder.file("a.b64", GetParam().content);
    }
    const auto chain = openFinished(path);
    ASSERT_FALSE(chain);
    EXPECT_EQ(QString::fromStdString(chain.error().text).replace(path, "FILE").toStdString(),
              GetParam().message);
}

INSTANTIATE_TEST_SUITE_P(
    Files, Finished,
    ::testing::Values(
        Opened{"Gone", nullptr, "File does not exist: FILE"},
        Opened{"Empty", "", "FILE is empty !"}, Opened{"LineEndAlone", "\r\n", "FILE is empty !"},
        Opened{"Text", "QQ==", "FILE is no certificate: the certificate ends inside its head"}),
    [](const auto &opened) { return opened.param.name; });

TEST(Finished, ThatIsAFolderCantBeOpened)
{
    const ScratchFolder folder;
    const std::string path = folder.path("").toStdString();
    EXPECT_EQ(openFinished(folder.path("")).error().text,
              "Failed to open certificate\nThe " + path + " already Opened \n");
}

TEST(Upper, IsTakenByWhatItHoldsAndNotByItsName)
{
    const ScratchFolder folder;
    const auto refusal = [&folder](const Chain &chain) {
        const QString path = folder.file("root.b64", text(chain).toStdString());
        const auto upper = openUpper(path);
        return upper ? std::string() : upper.error().text;
    };
    const Certificate middle = certificate(Role::Intermediate, kMiddleKey, kRootKey);
    EXPECT_EQ(refusal({root()}), "");
    EXPECT_EQ(refusal({root(), middle}), "");
    EXPECT_EQ(refusal({root(), leaf()}),
              "\nYou can't chain a LEAF certificate\n Try another one \n");
    EXPECT_EQ(refusal({leaf()}), "\nYou can't chain a LEAF certificate\n Try another one \n");
    EXPECT_EQ(refusal({middle}),
              "\nYou can't chain a certificate without any root\n Try another one \n");
}

TEST(Names, EndWhereTheListsEnd)
{
    EXPECT_EQ(keyTypeName(0), "key type 0");
    EXPECT_EQ(keyTypeName(9), "HMAC-SHA-256");
    EXPECT_EQ(keyTypeName(10), "key type 10");
    EXPECT_EQ(roleName(Role{0}), "role 0");
    EXPECT_NE(roleName(Role::Leaf), "role 3");
    EXPECT_EQ(roleName(Role{4}), "role 4");
    EXPECT_EQ(usageName(0), "usage 0");
    EXPECT_EQ(usageName(2), "RMA");
    EXPECT_EQ(usageName(3), "usage 3");
}

}  // namespace
