#include "device/ObEditor.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace device;
using ::testing::ElementsAre;

namespace
{

/// A register's fields as they come out of the database.
struct Field {
    const char *name;
    unsigned offset;
    unsigned width;
    std::uint32_t defaultVal = 0;
    std::vector<std::uint32_t> values = {};
    AccessType access = AccessType::ReadWrite;
};

/// Owns the bits that a configured device points to.
class Bits
{
public:
    Bits &reg(const char *name, const std::vector<Field> &fields)
    {
        CSector sector{name, 4, 0x50000000, {}};
        for (const Field &field : fields) {
            bit &added = *m_bits.emplace_back(std::make_unique<bit>());
            added.name = field.name;
            added.description = std::string("About ") + field.name;
            added.bitOffset = field.offset;
            added.bitWidth = field.width;
            added.defaultVal = field.defaultVal;
            added.access = field.access;
            for (const std::uint32_t value : field.values) {
                added.values.push_back({value, "label " + std::to_string(value)});
            }
            sector.bits.push_back(&added);
        }
        m_sectors.push_back(sector);
        return *this;
    }
    [[nodiscard]] OptionBytes done(const std::vector<IrreversibleValue> &marks = {}) const
    {
        DeviceConfiguration device;
        for (const StorageType type :
             {StorageType::OptionBytes, StorageType::OptionBytes, StorageType::Otp}) {
            CPeripheral &peripheral = device.peripherals.emplace_back();
            peripheral.type = type;
            CBank &bank = peripheral.banks.emplace_back();
            if (device.peripherals.size() == 2) {
                bank.categories.push_back({"Access", m_sectors});
            }
        }
        return optionBytesOf(device, marks, 1);
    }

private:
    std::vector<std::unique_ptr<bit>> m_bits;
    std::vector<CSector> m_sectors;
};

/// ACC: a button, a list, a text box and a field that can't be edited. LOCK: 32 bits.
ObEditor twoRegisters()
{
    const IrreversibleValue closed{{}, {1}, "ACC", 0x50000000, 4, 4, false, 0xC};
    return ObEditor(Bits()
                        .reg("ACC", {{"ON", 0, 1, 1},
                                     {"LEVEL", 4, 4, 0xA, {0xA, 0xB, 0xC}},
                                     {"FIX", 8, 2, 2, {1, 2}, AccessType::Read},
                                     {"TIME", 12, 6, 0x15}})
                        .reg("LOCK", {{"ALL", 0, 32, 0xFFFF0000}})
                        .done({closed}));
}

const FieldId kOn = {0, 0}, kLevel = {0, 1}, kFix = {0, 2}, kTime = {0, 3}, kAll = {1, 0};

}  // namespace

TEST(OptionBytesModel, GroupsFieldsOfALaterSectorAndLeavesOutRepeats)
{
    const OptionBytes bytes = Bits()
                                  .reg("A", {{"X", 0, 1, 1}, {"Y", 1, 2, 3}})
                                  .reg("B", {{"X", 0, 1}})
                                  .reg("A", {{"X", 0, 1}, {"X", 5, 1, 1}, {"W", 31, 1, 1}})
                                  .done();
    ASSERT_EQ(bytes.registers.size(), 2U);
    EXPECT_EQ(bytes.registers[0].fields.size(), 4U);
    EXPECT_EQ(bytes.registers[0].value, 0x80000027U);
    EXPECT_EQ(bytes.notes[0].category, "Access");
    EXPECT_EQ(bytes.notes[0].fields.size(), 4U);
    EXPECT_TRUE(optionBytesOf({}, {}, 1).registers.empty());
}

TEST(OptionBytesModel, EachBitOfATableStandsInOneCell)
{
    struct Case {
        std::vector<Field> fields;
        std::vector<std::string> cells;  ///< "field@column of half+span", reserved ones left out
    };
    const Case cases[] = {
        {{{"A", 14, 4}}, {"0@14U+2w", "0@0L+2-"}},
        {{{"A", 0, 32}}, {"0@0U+16w", "0@0L+16-"}},
        {{{"A", 0, 16}, {"B", 16, 1}}, {"1@15U+1w", "0@0L+16w"}},
        {{{"A", 31, 1}, {"B", 6, 25, 0, {1}}}, {"0@0U+1w", "1@1U+15w", "1@0L+10-"}},
        {{{"A", 31, 2}, {"B", 4, 0}, {"C", 200, 1}, {"D", 3, 1}}, {"3@12L+1w"}},
        {{{"A", 4, 4}, {"B", 7, 2}}, {"0@8L+4w"}}};
    for (const Case &c : cases) {
        const OptionBytes bytes = Bits().reg("R", c.fields).done();
        std::vector<std::string> cells;
        int columns = 0;
        for (const BitCell &cell : bitTableLayout(bytes.registers[0])) {
            columns += cell.span;
            if (cell.field >= 0) {
                cells.push_back(std::to_string(cell.field) + '@' + std::to_string(cell.column) +
                                (cell.isUpperHalf ? "U+" : "L+") + std::to_string(cell.span) +
                                (cell.hasWidget ? 'w' : '-'));
            }
        }
        EXPECT_EQ(columns, 32);
        EXPECT_EQ(cells, c.cells);
    }
}

TEST(OptionBytesModel, ToolTipEndsWithTheAddress)
{
    obField field{"BASE", 0, 25, "Start.", {{0, "bottom"}, {0x1F, "<b>"}}, 0, 2};
    EXPECT_EQ(fieldToolTip(field, {}, 0), "BASE: Start.\n    0x0: bottom\n    0x1f: <b>\n");
    EXPECT_TRUE(fieldToolTip(field, {0x80, 0, {}}, 0x100000)
                    .endsWith(QString::fromUtf8("\n0x00100000 × 0x80 = 0x08000000\n")));
    EXPECT_EQ(equationText({1, 0x08000000, {}}, 4),
              QString::fromUtf8("0x00000004 × 0x1 + 0x8000000 = 0x08000004"));
}

TEST(ObEditor, EditsReachTheShownValueOnlyWhenTheyFit)
{
    ObEditor editor = twoRegisters();
    ASSERT_EQ(editor.shown(0), 0x000152A1U);
    struct Step {
        FieldId id;
        const char *text;
        bool isTaken, isValid;
        std::uint32_t shown;
    };
    const Step steps[] = {{kOn, "0", true, true, 0x000152A0},
                          {kOn, "2", false, true, 0x000152A0},
                          {kLevel, "0xb", true, true, 0x000152B0},
                          {kLevel, "0xd", false, true, 0x000152B0},
                          {kFix, "0x1", false, true, 0x000152B0},
                          {kTime, "0x40", true, false, 0x000152B0},
                          {kTime, "", true, false, 0x000152B0},
                          {kTime, "3F", true, true, 0x0003F2B0},
                          {kAll, "0xFFFFFFFF", true, true, 0xFFFFFFFF},
                          {kAll, "0x100000000", true, false, 0xFFFFFFFF}};
    for (const Step &step : steps) {
        EXPECT_EQ(editor.edit(step.id, step.text), step.isTaken) << step.text;
        EXPECT_EQ(editor.state(step.id).isValid, step.isValid) << step.text;
        EXPECT_EQ(editor.shown(step.id.reg), step.shown) << step.text;
    }
    EXPECT_EQ(editor.reg(0).value, 0x000152A1U) << "the working value waits for the generation";
}

TEST(ObEditor, ADefaultOutsideTheListIsItsFirstEntry)
{
    const ObEditor editor(Bits().reg("R", {{"A", 0, 3, 5, {1, 2}}, {"B", 4, 2, 1, {1}}}).done());
    EXPECT_THAT(editor.state({0, 0}).choices, ElementsAre("0x5", "0x1", "0x2"));
    EXPECT_THAT(editor.state({0, 1}).choices, ElementsAre("0x1"));
    EXPECT_EQ(editor.output()->csv, "R,0x00000015\n");
}

TEST(ObEditor, ABadTextRefusesTheWholeOutput)
{
    const std::pair<const char *, bool> cases[] = {
        {"0x3f", true},        {"3F", true},      {"0x40", false}, {"", false},
        {" 1", false},         {"+1", false},     {"0X1", false},  {"0x", false},
        {"0000000001", false}, {"0x0x1f", false}, {"0x1g", false}, {"00000001", true}};
    for (const auto &[text, isAccepted] : cases) {
        ObEditor editor = twoRegisters();
        editor.edit(kOn, "0");
        editor.edit(kTime, text);
        const auto output = editor.output();
        EXPECT_EQ(output.has_value(), isAccepted) << text;
        if (!output) {
            EXPECT_THAT(output.error(), ElementsAre(kTime)) << text;
        }
    }
    ObEditor editor = twoRegisters();
    editor.edit(kLevel, "0xc");
    editor.edit(kTime, "1");
    editor.commit(*editor.output());
    EXPECT_EQ(editor.reg(0).value, 0x000012C1U);
    EXPECT_EQ(editor.output()->csv, "ACC,0x000012c1\nLOCK,0xffff0000\n");
}

TEST(ObEditor, ChangesPutWhatIsFinalOnTop)
{
    ObEditor editor = twoRegisters();
    EXPECT_TRUE(editor.changes().empty());
    editor.edit(kOn, "0");
    editor.edit(kAll, "0x1");
    editor.edit(kLevel, "0xc");
    editor.edit(kTime, "0x99");
    const std::vector<FieldChange> changes = editor.changes();
    ASSERT_EQ(changes.size(), 3U);
    EXPECT_EQ(changes[0].id, kLevel);
    EXPECT_TRUE(changes[0].isIrreversible);
    EXPECT_EQ(changes[1].id, kOn);
    EXPECT_EQ(changes[2].from, 0xFFFF0000U);
    EXPECT_FALSE(changes[2].isIrreversible);
    EXPECT_EQ(valueText(editor.field(kLevel), changes[0].to), "0xc (label 12)");
    EXPECT_EQ(accessibleText(editor, kLevel), "ACC LEVEL, bits 7 to 4, value label 12");
    EXPECT_EQ(accessibleText(editor, kOn), "ACC ON, bit 0, value 0");
}

struct Upload {
    const char *name;
    QByteArray content;
    const char *refusal;  ///< empty when it is accepted
    std::uint32_t first = 0x000152A1;
    bool touchesReserved = false;
    std::vector<FieldId> unlisted = {};
};

class ObUpload : public ::testing::TestWithParam<Upload>
{
};

TEST_P(ObUpload, ChecksThenMerges)
{
    ObEditor editor = twoRegisters();
    const auto plan = editor.planUpload(GetParam().content);
    EXPECT_EQ(plan ? "" : plan.error().text, GetParam().refusal);
    if (plan) {
        editor.apply(*plan);
        EXPECT_EQ(plan->touchesReserved, GetParam().touchesReserved);
        EXPECT_EQ(plan->unlisted, GetParam().unlisted);
        EXPECT_EQ(editor.output()->values[0], GetParam().first) << "shown and written are one";
    }
    EXPECT_EQ(editor.shown(0), GetParam().first);
}

INSTANTIATE_TEST_SUITE_P(
    Files, ObUpload,
    ::testing::Values(
        Upload{"Same", "ACC,0x000152a1\nLOCK,0xffff0000\n", ""},
        Upload{"ReturnsAndNoLastFeed", "ACC,152A0\r\nLOCK,0\r", "", 0x000152A0},
        Upload{"MoreLinesAndPieces", "ACC,0x000152a0,rest\nLOCK,1\nX", "", 0x000152A0},
        Upload{"ReservedBits", "ACC,0xFF0152a0\nLOCK,1\n", "", 0x000152A0, true},
        Upload{"ReadOnlyField", "ACC,0x000151a0\nLOCK,1\n", "", 0x000152A0},
        Upload{"UnlistedValue", "ACC,0x000152d0\nLOCK,1\n", "", 0x000152A0, false, {kLevel}},
        Upload{"OtherOrder", "LOCK,1\nACC,1\n", "Invalid CSV file"},
        Upload{"FewerLines", "ACC,0x0\n", "Invalid CSV file"},
        Upload{"Empty", "", "Invalid CSV file"},
        Upload{"ByteOrderMark",
               "\xEF\xBB\xBF"
               "ACC,0\nLOCK,0\n",
               "Invalid CSV file"},
        Upload{"NameWithoutComma", "ACC\nLOCK,0\n", "Invalid CSV file"},
        Upload{"LastNameWithoutComma", "ACC,0\nLOCK", "Invalid value of LOCK"},
        Upload{"TwoPrefixes", "ACC,0x0x1f\nLOCK,0\n", "Invalid value of ACC"},
        Upload{"NineDigits", "ACC,0x000000001\nLOCK,0\n", "Invalid value of ACC"},
        Upload{"BlankInFront", "ACC, 0x1\nLOCK,0\n", "Invalid value of ACC"},
        Upload{"ZeroByteInValue", QByteArray("ACC,0x1\0z\nLOCK,0\n", 17), "Invalid value of ACC"},
        Upload{"FaultsInOrder", "ACC,zz\nLOST,0\n", "Invalid value of ACC"}),
    [](const auto &file) { return file.param.name; });
