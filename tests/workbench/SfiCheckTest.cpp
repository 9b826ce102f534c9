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
    const TwinTraits *twin;
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

TEST_P(NumberFields, FollowTheRulesOfTwinAndDevice)
{
    TwinValues values;
    values.mcuIndex = GetParam().mcu;
    values.ramText = GetParam().ram;
    values.tokenText = GetParam().token;
    const auto numbers = checkNumbers(*GetParam().twin, values);
    ASSERT_EQ(numbers ? "" : numbers.error().text, GetParam().refusal);
    if (numbers) {
        EXPECT_EQ(numbers->ramSize, GetParam().ramSize);
        EXPECT_EQ(numbers->tokenAddress, GetParam().tokenAddress);
    }
}

constexpr auto kBadRam = "Invalid RAM size";
constexpr auto kBadToken = "Invalid continuation token address";

INSTANTIATE_TEST_SUITE_P(
    Twins, NumberFields,
    ::testing::Values(
        NumberCase{"SfiBothEmpty", &kSfiTwin, kH7, "", "", "", 0, 0},
        NumberCase{"SfiRamZero", &kSfiTwin, kH7, "0", "0x8000", kBadRam, 0, 0},
        NumberCase{"SfiRamEmptyTokenFilled", &kSfiTwin, kH7, "", "0x8000", kBadRam, 0, 0},
        NumberCase{"SfiRamOfBlanks", &kSfiTwin, kU575, " ", "", kBadRam, 0, 0},
        NumberCase{"SfiTrailingBlank", &kSfiTwin, kU575, "0x2000 ", "", "", 0x2000, 0},
        NumberCase{"SfiOctalAndDecimal", &kSfiTwin, kH7, "010", "10", "", 8, 10},
        NumberCase{"SfiLargest", &kSfiTwin, kH7, "0xFFFFFFFF", "4294967295", "", 0xFFFFFFFF,
                   0xFFFFFFFF},
        NumberCase{"SfiRamPast32Bits", &kSfiTwin, kH7, "0x100000000", "1", kBadRam, 0, 0},
        NumberCase{"SfiNegativeRam", &kSfiTwin, kH7, "-1", "1", kBadRam, 0, 0},
        NumberCase{"SfiH7NeedsToken", &kSfiTwin, kH7, "0x1E000", "", kBadToken, 0, 0},
        NumberCase{"SfiH7TokenNoNumber", &kSfiTwin, kH7, "0x1E000", "12x", kBadToken, 0, 0},
        NumberCase{"SfiOtherTokenNoNumber", &kSfiTwin, kU575, "1", "12x", "", 1, 0},
        NumberCase{"SfixRamZeroPasses", &kSfixTwin, kU575, "0", "", "", 0, 0},
        NumberCase{"SfixRamNoNumber", &kSfixTwin, kU575, "x", "", kBadRam, 0, 0},
        NumberCase{"SfixH7EmptyToken", &kSfixTwin, kH7, "", "",
                   "Continuation token address is empty", 0, 0},
        NumberCase{"SfixH7TokenNoNumber", &kSfixTwin, kH7, "1", "x", kBadToken, 0, 0},
        NumberCase{"SfixRamBeforeToken", &kSfixTwin, kH7, "x", "", kBadRam, 0, 0},
        NumberCase{"SfixTokenAlone", &kSfixTwin, kH7, "", "0x20", "", 0, 0x20},
        NumberCase{"SfixOtherTokenUnread", &kSfixTwin, kU575, "1", "0x20", "", 1, 0}),
    [](const auto &row) { return row.param.name; });

TEST(SfiStart, ChecksDeviceThenNameThenExternalFiles)
{
    TwinValues values;
    values.outputPath = "out.SFIX";
    const auto text = [&values](const TwinTraits &twin, bool hasExternal) {
        const auto refusal = checkStart(twin, values, hasExternal);
        return refusal ? refusal->text : QString();
    };
    EXPECT_EQ(text(kSfixTwin, false), "MCU product must be selected");
    values.mcuIndex = kH7;
    EXPECT_EQ(text(kSfixTwin, false), "SFIx file must have the .sfix extension");
    EXPECT_EQ(text(kSfiTwin, false), "SFI file must have the .sfi extension");
    values.outputPath = "out.sfix";
    EXPECT_EQ(text(kSfixTwin, false), "External firmware files is empty");
    EXPECT_EQ(text(kSfixTwin, true), "");
    values.outputPath = "out.sfi";
    EXPECT_EQ(text(kSfiTwin, false), "");
}

// Every device of a box at one glance; a change of a single mark must be meant.
TEST(SfiMcus, SetTheFormAsTheirTablesSay)
{
    const auto describe = [](std::span<const McuRow> rows) {
        QStringList lines;
        for (const McuRow &row : rows) {
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
    EXPECT_EQ(describe(kSfiMcus),
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
    EXPECT_EQ(describe(kSfixMcus), (QStringList{
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
