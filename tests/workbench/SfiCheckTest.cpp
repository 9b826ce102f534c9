#include "workbench/tabs/sfi/SfiCheck.h"
#include "support/QtPrinters.h"

#include <QStringList>

#include <gtest/gtest.h>

using namespace workbench;

namespace
{

constexpr int kH7 = 1;
constexpr int kU575 = 2;

struct NumberCase {
    const char *name;
    const SfiVariant *variant;
    int mcu;
    const char *ram;
    const char *token;
    const char *refusal;  ///< empty when the numbers pass
    std::uint32_t ramSize;
    std::uint32_t tokenAddress;
};

class NumberFields : public ::testing::TestWithParam<NumberCase>
{
};

TEST_P(NumberFields, FollowTheRulesOfVariantAndDevice)
{
    SfiFormValues values;
    values.deviceIndex = GetParam().mcu;
    values.ramText = GetParam().ram;
    values.tokenText = GetParam().token;
    const auto numbers = checkNumbers(*GetParam().variant, values);
    ASSERT_EQ(numbers ? "" : numbers.error().text, GetParam().refusal);
    if (numbers) {
        EXPECT_EQ(numbers->ramSize, GetParam().ramSize);
        EXPECT_EQ(numbers->tokenAddress, GetParam().tokenAddress);
    }
}

constexpr auto kBadRam = "Invalid RAM size";
constexpr auto kBadToken = "Invalid continuation token address";

INSTANTIATE_TEST_SUITE_P(
    Variants, NumberFields,
    ::testing::Values(
        NumberCase{"SfiBothEmpty", &kSfiVariant, kH7, "", "", "", 0, 0},
        NumberCase{"SfiRamZero", &kSfiVariant, kH7, "0", "0x8000", kBadRam, 0, 0},
        NumberCase{"SfiRamEmptyTokenFilled", &kSfiVariant, kH7, "", "0x8000", kBadRam, 0, 0},
        NumberCase{"SfiRamOfBlanks", &kSfiVariant, kU575, " ", "", kBadRam, 0, 0},
        NumberCase{"SfiTrailingBlank", &kSfiVariant, kU575, "0x2000 ", "", "", 0x2000, 0},
        NumberCase{"SfiOctalAndDecimal", &kSfiVariant, kH7, "010", "10", "", 8, 10},
        NumberCase{"SfiLargest", &kSfiVariant, kH7, "0xFFFFFFFF", "4294967295", "", 0xFFFFFFFF,
                   0xFFFFFFFF},
        NumberCase{"SfiRamPast32Bits", &kSfiVariant, kH7, "0x100000000", "1", kBadRam, 0, 0},
        NumberCase{"SfiNegativeRam", &kSfiVariant, kH7, "-1", "1", kBadRam, 0, 0},
        NumberCase{"SfiH7NeedsToken", &kSfiVariant, kH7, "0x1E000", "", kBadToken, 0, 0},
        NumberCase{"SfiH7TokenNoNumber", &kSfiVariant, kH7, "0x1E000", "12x", kBadToken, 0, 0},
        NumberCase{"SfiOtherTokenNoNumber", &kSfiVariant, kU575, "1", "12x", "", 1, 0},
        NumberCase{"SfixRamZeroPasses", &kSfixVariant, kU575, "0", "", "", 0, 0},
        NumberCase{"SfixRamNoNumber", &kSfixVariant, kU575, "x", "", kBadRam, 0, 0},
        NumberCase{"SfixH7EmptyToken", &kSfixVariant, kH7, "", "",
                   "Continuation token address is empty", 0, 0},
        NumberCase{"SfixH7TokenNoNumber", &kSfixVariant, kH7, "1", "x", kBadToken, 0, 0},
        NumberCase{"SfixRamBeforeToken", &kSfixVariant, kH7, "x", "", kBadRam, 0, 0},
        NumberCase{"SfixTokenAlone", &kSfixVariant, kH7, "", "0x20", "", 0, 0x20},
        NumberCase{"SfixOtherTokenUnread", &kSfixVariant, kU575, "1", "0x20", "", 1, 0}),
    [](const auto &row) { return row.param.name; });

TEST(SfiStart, ChecksDeviceThenNameThenExternalFiles)
{
    SfiFormValues values;
    values.outputPath = "out.SFIX";
    const auto text = [&values](const SfiVariant &variant, bool hasExternal) {
        const auto refusal = checkStart(variant, values, hasExternal);
        return refusal ? refusal->text : QString();
    };
    EXPECT_EQ(text(kSfixVariant, false), "MCU product must be selected");
    values.deviceIndex = kH7;
    EXPECT_EQ(text(kSfixVariant, false), "SFIx file must have the .sfix extension");
    EXPECT_EQ(text(kSfiVariant, false), "SFI file must have the .sfi extension");
    values.outputPath = "out.sfix";
    EXPECT_EQ(text(kSfixVariant, false), "External firmware files is empty");
    EXPECT_EQ(text(kSfixVariant, true), "");
    values.outputPath = "out.sfi";
    EXPECT_EQ(text(kSfiVariant, false), "");
}

// Every device of a box at one glance; a change of a single mark must be meant.
TEST(SfiMcus, SetTheFormAsTheirTablesSay)
{
    const auto describe = [](std::span<const SfiDevice> rows) {
        QStringList lines;
        for (const SfiDevice &row : rows) {
            const char *token = row.token == TokenField::Enabled    ? "token"
                                : row.token == TokenField::Disabled ? "-"
                                                                    : "emptied";
            QString shown;
            shown += row.smiRow && row.smiLine ? "smi " : "";
            shown += row.keyAreaRow ? "key " : "";
            shown += row.keyAreaLine ? "keyLine " : "";
            shown += row.provisioningRows ? "obk " : "";
            shown += row.ramLine ? "ramLine " : "";
            lines << QStringLiteral("%1,%2,%3,%4,%5,%6")
                         .arg(row.name, row.ramEnabled ? row.ramText : "off", token,
                              row.hashChecked ? "checked" : "free",
                              row.hashLocked ? "locked" : "open", shown.trimmed());
        }
        return lines;
    };
    EXPECT_EQ(describe(kSfiDevices),
              (QStringList{
                  "- Select MCU -,,token,free,open,",
                  "VDR32H7,0x1E000,token,checked,locked,smi key ramLine",
                  "VDR32U575/585,0x55500,-,checked,locked,key ramLine",
                  "VDR32U59x/5Ax/5Fx/5Gx,0xA5500,-,free,open,key ramLine",
                  "VDR32U535/545,0x11500,-,free,open,key ramLine",
                  "VDR32L5,0x19000,-,checked,locked,key ramLine",
                  "VDR32WL,0x2000 ,-,checked,locked,key ramLine",
                  "VDR32L4,off,emptied,free,open,",
                  "VDR32WBA5xxx,0xFED0 ,-,checked,open,key ramLine",
                  "VDR32H5,0x19000,emptied,checked,locked,key keyLine obk ramLine",
              }));
    EXPECT_EQ(describe(kSfixDevices), (QStringList{
                                          "- Select MCU -,,token,free,open,key",
                                          "VDR32H7,0x1E000,token,checked,locked,key ramLine",
                                          "VDR32U575/585,0x4B000,-,free,open,key ramLine",
                                          "VDR32U59x/5Ax/5Fx/5Gx,0x55500,-,free,open,key ramLine",
                                          "VDR32L5,0x19000,-,free,open,key ramLine",
                                          "VDR32WL,0x2000,-,free,open,key ramLine",
                                          "VDR32L4,off,emptied,free,open,key",
                                          "VDR32H5,0x19000,emptied,checked,locked,key obk ramLine",
                                      }));
}

}  // namespace
