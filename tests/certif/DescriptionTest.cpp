#include "certif/Description.h"

#include <gtest/gtest.h>

#include <random>

using namespace certif;

namespace
{

DescriptionValues values()
{
    return {"/out/dev", "/keys/root.pem", "/keys/sub é ", "INTERMEDIATE", "RMA", "SECURED",
            "0",        "0x123",          "0x0f",         "0000_0001"};
}

QByteArray lines()
{
    return "name: /out/dev\nissuer-key: /keys/root.pem\nsubject-key: /keys/sub é \nrole: 2\n"
           "usage: 2\nlifecycle: 0x30\noem_constraint: 0\nsoc_class: 0x123\nsoc_id: 0x0f\n"
           "permissions_mask: 0x0000_0001\n";
}

}  // namespace

TEST(Mask, FirstButtonIsTheLowestBitAndGroupsHaveEightDigits)
{
    std::vector<bool> buttons(128, false);
    EXPECT_EQ(maskText(buttons), "00000000_00000000_00000000_00000000");
    buttons[0] = true;
    buttons[37] = true;
    buttons[127] = true;
    EXPECT_EQ(maskText(buttons), "80000000_00000000_00000020_00000001");
    EXPECT_EQ(maskText({true, true, false, true, true}), "1b");
    EXPECT_EQ(maskText({}), "");
}

// The digits by another road: the buttons as a text of "0" and "1", four of them at a time.
TEST(Mask, ReadsAsATextOfBitsDoesAndComesBack)
{
    std::mt19937 random(1);
    for (int round = 0; round < 300; ++round) {
        std::vector<bool> buttons(128);
        for (std::size_t bit = 0; bit < buttons.size(); ++bit) {
            buttons[bit] = random() % (1U + static_cast<unsigned>(round) % 9U) == 0;
        }
        QString text;
        for (auto button = buttons.rbegin(); button != buttons.rend(); ++button) {
            text += *button ? '1' : '0';
        }
        QString mask;
        for (int digits = 1; !text.isEmpty(); ++digits) {
            mask.prepend(QString::number(text.right(4).toInt(nullptr, 2), 16));
            text.chop(4);
            mask.prepend(digits % 8 == 0 && !text.isEmpty() ? "_" : "");
        }
        EXPECT_EQ(maskText(buttons), mask);
        EXPECT_EQ(maskBits(mask), buttons);
    }
    for (const char *text : {"", "x", "1_", "100000000000000000000000000000000"}) {
        EXPECT_TRUE(maskBits(text).empty()) << text;
    }
}

struct Number {
    const char *typed;
    unsigned bits;
    bool isRight;
};

TEST(Numbers, AreCheckedForTheirWidthAndTheirBase)
{
    for (const Number &row :
         {Number{"65535", 16, true}, Number{"65536", 16, false}, Number{"0xFFFFFFFF", 32, true},
          Number{"0x100000000", 32, false}, Number{"010", 16, false}, Number{"-1", 16, false},
          Number{"0x", 16, false}, Number{"ff", 16, false}}) {
        EXPECT_EQ(numberFault(row.typed, row.bits).isEmpty(), row.isRight) << row.typed;
    }
    EXPECT_EQ(identifierText("ff"), "0xff");
    EXPECT_EQ(identifierText(" 0XfF "), "0XfF");
    EXPECT_EQ(identifierText(""), "0x0");
    EXPECT_EQ(lifecycleNumber("0x3000"), 0x3000);
    EXPECT_EQ(lifecycleNumber("SECURED"), -1);
    EXPECT_EQ(lifecycleNumber("65536"), -1);
}

TEST(Describe, WritesEachLineInItsOrder)
{
    EXPECT_EQ(*describe(values()), lines());
    auto other = values();
    other.role = "LEAF";
    other.usage = "STANDARD";
    other.lifecycle = "UNKNOWN";
    const QByteArray text = *describe(other);
    EXPECT_TRUE(text.contains("\nrole: 3\nusage: 1\nlifecycle: 0x00\n")) << text.constData();
}

TEST(Describe, AValueThatWouldBeginALineIsRefused)
{
    auto forged = values();
    forged.socId = "0\npermissions_mask: 0xffffffff";
    const auto text = describe(forged);
    ASSERT_FALSE(text);
    EXPECT_EQ(text.error().text, "The value of \"soc_id\" holds a line end");
}

TEST(Parse, ReadsWhatDescribeWrites)
{
    const auto request = parseDescription(lines());
    ASSERT_TRUE(request) << request.error().text;
    EXPECT_EQ(request->name, "/out/dev");
    EXPECT_EQ(request->subjectKey, "/keys/sub é ");
    EXPECT_EQ(request->certificate.role, Role::Intermediate);
    EXPECT_EQ(request->certificate.usage, 2);
    EXPECT_EQ(request->certificate.lifecycle, 0x30);
    EXPECT_EQ(request->certificate.socClass, 0x123U);
    EXPECT_EQ(hexText(request->certificate.socId), "0xf");
    EXPECT_EQ(hexText(request->certificate.permissions), "0x1");
}

TEST(Description, HidesNothingBehindAZeroByte)
{
    EXPECT_FALSE(parseDescription(lines() + QByteArray("\0hidden: 1\n", 11)));
}

struct Bad {
    const char *name;
    const char *from;
    const char *to;
    const char *complaint;
};

class DescriptionFaults : public ::testing::TestWithParam<Bad>
{
};

TEST_P(DescriptionFaults, AreNamedWithTheirLine)
{
    const auto request = parseDescription(lines().replace(GetParam().from, GetParam().to));
    ASSERT_FALSE(request);
    EXPECT_EQ(request.error().text, GetParam().complaint);
}

INSTANTIATE_TEST_SUITE_P(
    Lines, DescriptionFaults,
    ::testing::Values(
        Bad{"Unknown", "usage: 2", "usages: 2", "line 5: unknown key \"usages\""},
        Bad{"Doubled", "usage: 2", "role: 2", "line 5: a second \"role\""},
        Bad{"Missing", "usage: 2\n", "", "line 10: the description ends without \"usage\""},
        Bad{"Role", "role: 2", "role: 4", "line 4: \"role\" can't be \"4\""},
        Bad{"Wide", "usage: 2", "usage: 0x100", "line 5: \"usage\" can't be \"0x100\""},
        Bad{"Wrapped", "soc_class: 0x123", "soc_class: 0x1000000000000000000000001",
            "line 8: \"soc_class\" can't be \"0x1000000000000000000000001\""},
        Bad{"Negative", "oem_constraint: 0", "oem_constraint: -1",
            "line 7: \"oem_constraint\" can't be \"-1\""},
        Bad{"MaskOf132Bits", "0x0000_0001", "0x1_00000000_00000000_00000000_00000000",
            "line 10: \"permissions_mask\" can't be \"0x1_00000000_00000000_00000000_00000000\""},
        Bad{"NoDigits", "0x0f", "0x", "line 9: \"soc_id\" can't be \"0x\""}),
    [](const auto &fault) { return fault.param.name; });
