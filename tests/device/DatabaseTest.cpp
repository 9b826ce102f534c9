// Rules that the database of the program's own devices keeps, read by the program's own reader.
#include "device/DataGateWay.h"
#include "device/ObEditor.h"
#include "device/ObEntries.h"
#include "files/FileManager.h"
#include "support/MessageLog.h"
#include "support/ScratchFolder.h"

#include <QRegularExpression>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <bit>
#include <cstring>
#include <ctime>
#include <set>

using namespace device;

namespace
{

class Database : public ::testing::TestWithParam<std::size_t>
{
protected:
    const ObEntry &entry() const { return kObEntries[GetParam()]; }
    static OptionBytes bytesOf(const ObEntry &entry, std::uint8_t configuration = 1)
    {
        DataGateWay gateway(entry.id, entry.core);
        EXPECT_EQ(gateway.CheckDataState(), DataGateWay::Loaded) << gateway.failure();
        return optionBytesOf(gateway.GetConfigeDevice(configuration, 0),
                             gateway.GetIrreversibleValues(), configuration);
    }
    QByteArray fileText() const
    {
        QFile file(DataGateWay::databasePath(entry().id, entry().core));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }
};

std::vector<std::string> namesOf(const OptionBytes &bytes)
{
    std::vector<std::string> names;
    for (const obReg &reg : bytes.registers) {
        names.push_back(reg.name);
    }
    return names;
}

void checkField(const obField &field, std::uint32_t &taken)
{
    SCOPED_TRACE(field.name);
    EXPECT_LE(field.offset + field.width, 32);
    EXPECT_EQ(taken & fieldMask(field), 0U) << "overlap";
    taken |= fieldMask(field);
    EXPECT_LE(field.defaultVal, widthMask(field.width));
    EXPECT_THAT(field.description, ::testing::EndsWith("."));
    EXPECT_LE(field.name.size(), 12U) << "longer than a cell of the bit table";
    bool isListed = field.values.empty();
    for (const bitValue &value : field.values) {
        isListed |= value.value == field.defaultVal;
        EXPECT_LE(value.value, widthMask(field.width));
        EXPECT_FALSE(value.text.empty());
    }
    EXPECT_TRUE(isListed) << "the default is no value";
}

}  // namespace

TEST_P(Database, RegistersAreWellFormed)
{
    DataGateWay gateway(entry().id, entry().core);
    const auto peripherals = gateway.GetConfigeDevice(1, 0).peripherals;
    EXPECT_EQ(std::count_if(
                  peripherals.begin(), peripherals.end(),
                  [](const CPeripheral &found) { return found.type == StorageType::OptionBytes; }),
              1);
    const std::vector<std::string> order = {"Access",       "Start-up",     "Supply",   "Watchdog",
                                            "Sector locks", "Private code", "Isolation"};
    const OptionBytes bytes = bytesOf(entry());
    ASSERT_GE(bytes.registers.size(), 7U);
    ASSERT_LE(bytes.registers.size(), 18U);
    std::set<std::string> names;
    std::size_t stage = 0;
    int used = 0;
    for (std::size_t r = 0; r < bytes.registers.size(); ++r) {
        const obReg &reg = bytes.registers[r];
        SCOPED_TRACE(reg.name);
        EXPECT_TRUE(names.insert(reg.name).second);
        EXPECT_EQ(reg.address, bytes.registers[0].address + 4 * r);
        const auto place = std::find(order.begin(), order.end(), bytes.notes[r].category);
        EXPECT_GE(static_cast<std::size_t>(place - order.begin()), stage) << "category";
        stage = static_cast<std::size_t>(place - order.begin());
        std::uint32_t taken = 0;
        std::set<std::string> fields;
        for (const obField &field : reg.fields) {
            checkField(field, taken);
            EXPECT_TRUE(fields.insert(field.name).second) << field.name;
        }
        used += std::popcount(taken);
    }
    const double share = used / (32.0 * static_cast<double>(bytes.registers.size()));
    EXPECT_GE(share, 0.3);
    EXPECT_LE(share, 0.7);
}

// Defaults of expanded bits rise by one, which only two bits that begin with 0 can bear.
TEST_P(Database, ExpandedBitsThatCanBeEditedAreTwo)
{
    const QString text = QString::fromUtf8(fileText());
    static const QRegularExpression bitElement("<Bit[ >].*?</Bit>",
                                               QRegularExpression::DotMatchesEverythingOption);
    int elements = 0;
    for (auto bits = bitElement.globalMatch(text); bits.hasNext(); ++elements) {
        const QString one = bits.next().captured();
        if (one.contains("ByBit=\"true\"") && !one.contains("<Access>R</Access>")) {
            EXPECT_TRUE(one.contains("<BitWidth>0x2</BitWidth>", Qt::CaseInsensitive) &&
                        one.contains("<DefaultVal>0x0</DefaultVal>"))
                << one.toStdString();
        }
    }
    EXPECT_GT(elements, 20);
}

TEST_P(Database, FileBeginsAsTheReaderWantsIt)
{
    EXPECT_THAT(fileText().toStdString(),
                ::testing::ContainsRegex("^<\\?xml version=\"1.0\" encoding=\"UTF-8\"\\?>\r?\n"
                                         "<Root>\r?\n<!-- .*invented"));
    // Of the processor, not of the clock: other programs may run beside the test.
    const std::clock_t before = std::clock();
    bytesOf(entry());
    EXPECT_LT(std::clock() - before, CLOCKS_PER_SEC / 20);
}

TEST_P(Database, WhatIsGeneratedLoadsAgainAndGoesIntoAnImage)
{
    ObEditor editor(bytesOf(entry()));
    for (std::size_t r = 0; r < editor.registers().size(); ++r) {
        for (std::size_t f = 0; f < editor.reg(r).fields.size(); ++f) {
            const FieldState &state = editor.state({r, f});
            editor.edit({r, f}, state.choices.empty() ? "1" : state.choices.last());
        }
    }
    const auto output = editor.output();
    ASSERT_TRUE(output);
    ObEditor fresh(bytesOf(entry()));
    const auto plan = fresh.planUpload(QByteArray::fromStdString(output->csv));
    ASSERT_TRUE(plan) << plan.error().text;
    EXPECT_FALSE(plan->touchesReserved);
    EXPECT_TRUE(plan->unlisted.empty());
    fresh.apply(*plan);
    EXPECT_EQ(fresh.output()->csv, output->csv);

    const ScratchFolder folder;
    MessageLog log;
    FileType *record = nullptr;
    ASSERT_TRUE(
        FileManager().Open(folder.file("a.csv", output->csv).toStdWString(), &record, 255, 0, 0));
    const files::RecordOwner<FileData> owner(static_cast<FileData *>(record));
    const SegmentData &segment = owner->segments.at(0);
    ASSERT_EQ(segment.size, 4 * output->values.size());
    EXPECT_EQ(std::memcmp(segment.data, output->values.data(), segment.size), 0);
}

INSTANTIATE_TEST_SUITE_P(Entries, Database, ::testing::Range<std::size_t>(1, 13));

TEST(DatabaseFamily, ExchangedFilesMeetTheSameRegisters)
{
    const auto namesAt = [](std::size_t index) {
        DataGateWay gateway(kObEntries[index].id, 0);
        return namesOf(optionBytesOf(gateway.GetConfigeDevice(1, 0), {}, 1));
    };
    EXPECT_EQ(namesAt(8).size(), 10U);
    EXPECT_EQ(namesAt(8), namesAt(11));
    std::vector<std::string> first = namesAt(10);
    ASSERT_EQ(first.size(), 18U);
    first.resize(10);
    EXPECT_EQ(first, namesAt(8));
}

TEST(DatabaseFamily, EverythingTheFormatHasOccurs)
{
    std::set<StorageType> storages;
    std::string all;
    bool hasConditions = false;
    bool changesWithConfiguration = false;
    bool hasInterfaceBanks = false;
    std::size_t finalValues = 0;
    for (std::size_t i = 1; i < kObEntries.size(); ++i) {
        DataGateWay gateway(kObEntries[i].id, kObEntries[i].core);
        const DeviceConfiguration one = gateway.GetConfigeDevice(1, 0);
        for (const StorageP &storage : one.storages) {
            storages.insert(storage.type);
            EXPECT_NE(storage.parameters, nullptr);
        }
        for (const CPeripheral &peripheral : one.peripherals) {
            storages.insert(peripheral.type);
        }
        for (const CBank &bank : gateway.GetOBConfig(1, 0).banks) {
            for (const CCategory &category : bank.categories) {
                for (const CSector &sector : category.sectors) {
                    for (const bit *found : sector.bits) {
                        hasConditions |= found->condition != nullptr;
                    }
                }
            }
        }
        changesWithConfiguration |= namesOf(optionBytesOf(one, {}, 1)) !=
                                    namesOf(optionBytesOf(gateway.GetConfigeDevice(0, 0), {}, 0));
        hasInterfaceBanks |=
            gateway.GetOBConfig(1, 1).banks.size() > gateway.GetOBConfig(1, 0).banks.size();
        finalValues += gateway.GetIrreversibleValues().size();
        QFile file(DataGateWay::databasePath(kObEntries[i].id, kObEntries[i].core));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        all += file.readAll().toStdString();
    }
    EXPECT_EQ(storages.size(), 8U);
    EXPECT_TRUE(hasConditions && changesWithConfiguration && hasInterfaceBanks);
    EXPECT_GT(finalValues, 50U);
    for (const char *trait :
         {"config=\"0\"", "reference=", "ByBit=\"true\"", "occurence=", "<Equation", "<BITWIDTH>",
          "\r\n", "\xC2\xB5s", "interface=\"UART\"", "<Access>R</Access>", "<Access>W</Access>"}) {
        EXPECT_NE(all.find(trait), std::string::npos) << trait;
    }
}

TEST(ObEntries, TwoKeepTheirSlashBehindTheBackslash)
{
    const std::pair<int, const char *> cases[] = {{0, "/d\\"},
                                                  {1, "/d\\SFI_OB_H742_743_753_750.csv"},
                                                  {5, "/d\\/SFI_OB_L462.csv"},
                                                  {9, "/d\\/SFI_OB_WBA.csv"},
                                                  {12, "/d\\SFI_OB_H5_2M.csv"},
                                                  {13, "/d\\"}};
    for (const auto &[index, path] : cases) {
        EXPECT_EQ(proposedCsvPath("/d", index), path);
    }
}
