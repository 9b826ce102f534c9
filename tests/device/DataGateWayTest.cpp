#include "device/DataGateWay.h"

#include "DeviceXml.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace device_xml;
using ::testing::ElementsAre;

namespace
{

/// Names of all bits that an answer holds.
std::vector<std::string> bitNames(const CPeripheral &answer)
{
    std::vector<std::string> names;
    for (const CBank &bank : answer.banks) {
        for (const CCategory &category : bank.categories) {
            for (const CSector &sector : category.sectors) {
                for (const bit *found : sector.bits) {
                    names.push_back(found->name);
                }
            }
        }
    }
    return names;
}

const char *const kInterfaces =
    "<Configurations><Interface name='JTAG_SWD'>"
    "<Configuration number='0x1'><AccessPort number='0x3'/><Cond reference='0x7'/><Cond/>"
    "</Configuration><Configuration number='0x2'><Cond reference='0x8'/></Configuration>"
    "</Interface><Interface name='Other'/></Configurations>";

std::string wideDevice(const char *id)
{
    const std::string banks =
        "<Configuration config='1'>" + bank(reg("R", bitXml("IN", 0, 1))) + "</Configuration>" +
        "<Configuration>" + bank(reg("R", bitXml("ALL", 1, 1))) + "</Configuration>" +
        bank(reg("R",
                 bitXml("FREE", 2, 1, "<Access>R</Access>") +
                     bitXml("ROWS", 3, 1, "<Access>W</Access>", "config='1,2' reference='Cond'") +
                     bitXml("ZERO", 4, 1, "", "config='0'"))) +
        bank(reg("R", bitXml("SIDE", 5, 1)), "interface='UART'");
    const std::string storage = periph(
        "OTP", "Storage",
        "<access>RWE</access><Configuration config='0,2'><Parameters size='0x10'/></Configuration>"
        "<Configuration config='1'><Organization>Dual</Organization></Configuration>");
    return file(deviceXml(storage + periph("OTP Memory", "Configuration", "") + optionBytes(banks),
                          kInterfaces, id));
}

}  // namespace

TEST(GatewayFiles, OnlyOneIdentifierHasCores)
{
    const std::pair<std::pair<unsigned short, int>, const char *> cases[] = {
        {{0x450, 0}, "0x450.xml"},           {{0x450, 1}, "0x450_Single_Core.xml"},
        {{0x450, 2}, "0x450_Dual_Core.xml"}, {{0x450, 3}, "0x450.xml"},
        {{0x462, 2}, "0x462.xml"},           {{0x2, 1}, "0x002.xml"},
        {{0xFFFF, 0}, "0xFFFF.xml"}};
    for (const auto &[asked, ending] : cases) {
        EXPECT_EQ(DataGateWay::databasePath(asked.first, asked.second),
                  QCoreApplication::applicationDirPath() + "/SPB_SFI_OB_Data_Base/VDR32_Prog_DB_" +
                      ending);
    }
}

TEST(Gateway, WordsAreMatchedWhole)
{
    EXPECT_EQ(DataGateWay::GetCPUType("Cortex-M33"), CpuType::CortexM33);
    EXPECT_EQ(DataGateWay::GetCPUType("Cortex-M0+/M4"), CpuType::CortexM0PlusM4);
    EXPECT_EQ(DataGateWay::GetCPUType("Cortex-M33 "), CpuType::Unknown);
    EXPECT_EQ(DataGateWay::GetDeviceType(""), DeviceType::Other);
    EXPECT_EQ(DataGateWay::GetStorageType("OTP"), StorageType::Otp);
    EXPECT_EQ(DataGateWay::GetStorageType("Option Bytes"), StorageType::Unknown);
    EXPECT_EQ(DataGateWay::GetConfigurationType("OTP Memory"), StorageType::Otp);
    EXPECT_EQ(DataGateWay::GetConfigurationType("OTP"), StorageType::Unknown);
    EXPECT_EQ(DataGateWay::GetAccessType("r"), AccessType::Unknown);
}

TEST(Gateway, StatesAndReasons)
{
    struct Case {
        std::string content;
        int state;
        const char *reason;
    };
    const Case cases[] = {{"", DataGateWay::NoDatabase, "not readable as XML"},
                          {file(""), DataGateWay::NoDevice, "no such device"},
                          {file(deviceXml("", "<SfiTzenInfo><TzWidth/></SfiTzenInfo>", "0x7A2")),
                           DataGateWay::NoDevice, "malformed"},
                          {wideDevice("0x7A2"), DataGateWay::Loaded, ""}};
    for (const Case &c : cases) {
        const DatabaseFile onDisk("0x7A2", c.content);
        DataGateWay gateway(0x7A2, 0);
        EXPECT_EQ(gateway.CheckDataState(), c.state);
        EXPECT_THAT(gateway.failure(), ::testing::HasSubstr(c.reason));
        EXPECT_EQ(gateway.GetConfigurations(InterfaceType::JtagSwd).configurations.size(),
                  c.state == DataGateWay::Loaded ? 2U : 0U);
        EXPECT_FALSE(gateway.checkDevice(0x7A2)) << "the parser is gone";
    }
    DataGateWay missing(0x7A2, 0);
    EXPECT_EQ(missing.CheckDataState(), DataGateWay::NoDatabase);
    EXPECT_THAT(missing.failure(), ::testing::HasSubstr("missing"));
    EXPECT_TRUE(missing.GetConfigeDevice(1, 0).peripherals.empty());
}

TEST(Gateway, ConfigurationChoosesBanksAndBits)
{
    const DatabaseFile onDisk("0x7A3", wideDevice("0x7A3"));
    DataGateWay gateway(0x7A3, 0);
    const std::pair<std::pair<int, int>, std::vector<std::string>> cases[] = {
        {{1, 0}, {"IN", "ALL", "FREE", "ROWS"}},
        {{0, 0}, {"ALL", "FREE", "ZERO"}},
        {{2, 1}, {"ALL", "FREE", "ROWS", "SIDE"}},
        {{0xFF, 0}, {"ALL", "FREE", "ROWS", "ROWS", "ZERO"}}};
    for (const auto &[asked, names] : cases) {
        EXPECT_EQ(bitNames(gateway.GetOBConfig(static_cast<std::uint8_t>(asked.first),
                                               static_cast<std::uint8_t>(asked.second))),
                  names)
            << asked.first;
    }
}

TEST(Gateway, EarlierAnswersStayAsTheyWere)
{
    const DatabaseFile onDisk("0x7A4", wideDevice("0x7A4"));
    DataGateWay gateway(0x7A4, 0);
    const auto rows = [](const CPeripheral &answer) {
        return answer.banks.back().categories.at(0).sectors.at(0).bits.at(1);
    };
    const CPeripheral one = gateway.GetOBConfig(1, 0);
    const bit *underOne = rows(one);
    const CPeripheral two = gateway.GetOBConfig(2, 0);
    gateway.GetOBConfig(1, 1);
    EXPECT_EQ(bitNames(gateway.GetOBConfig(1, 0)), bitNames(one)) << "interface banks pile up";
    ASSERT_NE(underOne->condition, nullptr);
    EXPECT_EQ(underOne->condition->reference, 7);
    ASSERT_NE(rows(two)->condition, nullptr);
    EXPECT_EQ(rows(two)->condition->reference, 8);
    EXPECT_EQ(rows(gateway.GetOBConfig(1, 0)), underOne);
}

TEST(Gateway, BankAccessSumsUpItsBits)
{
    const std::pair<std::vector<const char *>, AccessType> cases[] = {
        {{}, AccessType::Write},
        {{"R"}, AccessType::Read},
        {{"R", "W"}, AccessType::ReadWrite},
        {{"W", "W"}, AccessType::Write},
        {{"RW"}, AccessType::ReadWrite},
        {{"RWE"}, AccessType::Write},
        {{"R", "odd"}, AccessType::ReadWrite}};
    for (const auto &[words, access] : cases) {
        std::string bits;
        for (const char *word : words) {
            bits += bitXml("B", 0, 1, "<Access>" + std::string(word) + "</Access>");
        }
        const DatabaseFile onDisk("0x7A5",
                                  file(deviceXml(optionBytes(bank(reg("R", bits))), "", "0x7A5")));
        EXPECT_EQ(DataGateWay(0x7A5, 0).GetOBConfig(1, 0).banks.at(0).access, access) << bits;
    }
}

TEST(Gateway, StorageRowOfTheConfiguration)
{
    const DatabaseFile onDisk("0x7A6", wideDevice("0x7A6"));
    DataGateWay gateway(0x7A6, 0);
    const std::unique_ptr<DeviceConfiguration> two(gateway.GetPConfigeDevice(2, 0));
    ASSERT_NE(two->storages.at(0).parameters, nullptr);
    EXPECT_EQ(two->storages[0].parameters->size, 0x10U);
    EXPECT_EQ(two->storages[0].parameters->access, AccessType::ReadWriteErase);
    EXPECT_EQ(two->storages[0].type, StorageType::Otp);
    const DeviceConfiguration one = gateway.GetConfigeDevice(1, 0);
    EXPECT_EQ(one.storages.at(0).parameters->organization, OrganizationType::Dual);
    EXPECT_EQ(gateway.GetConfigeDevice(9, 0).storages.at(0).parameters, nullptr);
    EXPECT_EQ(one.peripherals.at(0).type, StorageType::Otp);
}
