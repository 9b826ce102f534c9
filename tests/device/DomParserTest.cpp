#include "device/DomParser.h"

#include "DeviceXml.h"
#include "support/ScratchFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

using namespace device_xml;
using ::testing::ElementsAre;

namespace
{

class Parser : public ::testing::Test
{
protected:
    DomParser &parse(const std::string &text)
    {
        m_parser = std::make_unique<DomParser>(m_folder.file("a.xml", text).toStdString());
        return *m_parser;
    }
    /// The device 0x7A1 of a file whose only device has these peripherals and further children.
    std::unique_ptr<Device> read(const std::string &peripherals, const std::string &more = {})
    {
        return std::unique_ptr<Device>(parse(file(deviceXml(peripherals, more))).GetDevice(0x7A1));
    }
    /// The bits of the one register that has this XML.
    std::vector<Bit> bitsOf(const std::string &bits)
    {
        const auto found = read(optionBytes(bank(reg("R", bits))));
        return found == nullptr
                   ? std::vector<Bit>()
                   : found->configPeriphs.at(0).banks.at(0).categories.at(0).sectors.at(0).bits;
    }
    std::vector<StorageSector> sectorsOf(const std::string &parameters)
    {
        const auto found = read(periph("Embedded Flash", "Storage",
                                       "<Configuration><Bank><Field><Parameters " + parameters +
                                           "/></Field></Bank></Configuration>"));
        return found == nullptr
                   ? std::vector<StorageSector>()
                   : found->storagePeriphs.at(0).configurations.at(0).banks.at(0).sectors;
    }

    ScratchFolder m_folder;
    std::unique_ptr<DomParser> m_parser;
};

}  // namespace

TEST_F(Parser, StateTellsWhatTheFileLacks)
{
    const std::string head = "<?xml version=\"1.0\"?>";
    const std::pair<std::string, int> cases[] = {
        {head + "<Root/>", DomParser::Good},
        {"<Root/>", DomParser::NoRoot},
        {"<Root/><!-- c -->", DomParser::WrongRoot},
        {head + "<root/>", DomParser::WrongRoot},
        {head + "<!-- c --><Root/>", DomParser::WrongRoot},
        {"<!-- c --><Root/>", DomParser::Good},
        {"", DomParser::Unchecked},
        {head + "<Root>", DomParser::Unchecked},
        {head + "<!DOCTYPE Root><Root/>", DomParser::Unchecked}};
    for (const auto &[text, state] : cases) {
        EXPECT_EQ(parse(text).CheckDataState(), state) << text;
        EXPECT_EQ(m_parser->failure().empty(), state == DomParser::Good) << text;
        EXPECT_EQ(m_parser->GetDevice(0), nullptr);
        QDomDocument other;
        other.setContent(QStringLiteral("<Peripheral><name>Flash</name>"
                                        "<flashsize address=\"0x10\"/></Peripheral>"));
        const auto found = m_parser->GetStoragePeriph(other.documentElement());
        EXPECT_EQ(found.name, state == DomParser::Good ? "Flash" : "");
        EXPECT_EQ(found.flashSizeAddress == 0x10, state == DomParser::Good);
    }
    EXPECT_EQ(DomParser("/no/such/file").CheckDataState(), DomParser::Unchecked);
}

TEST_F(Parser, ReadsNothingFromAFileInAnotherState)
{
    QDomDocument good;
    ASSERT_TRUE(good.setContent(QByteArray::fromStdString(file(
        deviceXml(optionBytes(bank(
                      reg("R", bitXml("B", 1, 2, "<Values><Val value=\"1\">v</Val></Values>")))) +
                      periph("Flash", "Storage",
                             "<Configuration><Bank><Field><Parameters size=\"8\" address=\"8\" "
                             "occurence=\"2\"/></Field></Bank></Configuration>"),
                  "<Configurations><Interface name=\"I\"><Configuration number=\"1\">"
                  "<ReadRegister address=\"1\"/></Configuration></Interface></Configurations>")))));
    const auto node = [&good](const char *tag, int at = 0) {
        const QDomNode found = good.elementsByTagName(tag).at(at);
        EXPECT_FALSE(found.isNull()) << tag;
        return found;
    };
    DomParser &bad = parse("<?xml version=\"1.0\"?><root><Device><DeviceID>0x7A1</DeviceID>"
                           "</Device></root>");
    ASSERT_EQ(bad.CheckDataState(), DomParser::WrongRoot);
    EXPECT_EQ(bad.GetDevice(0x7A1), nullptr);
    EXPECT_TRUE(bad.GetDeviceNode(0x7A1).isNull());
    EXPECT_EQ(bad.GetGenInformations(node("Device")).deviceID, 0);
    EXPECT_EQ(bad.GetTzInformations(node("Device")).TzWidth, 0);
    const auto both = bad.GetPeriphs(node("peripherals"));
    EXPECT_TRUE(both.config.empty() && both.storage.empty());
    EXPECT_TRUE(bad.GetConfigurations(node("Configurations")).records[0].name.empty());
    EXPECT_TRUE(bad.GetInterface(node("Interface")).configurations.empty());
    EXPECT_EQ(bad.GetConfiguration(node("Configuration", 1)).number, 0);
    EXPECT_EQ(bad.GetConfigCondition(node("Configuration", 1)).readAddress, 0U);
    ConfigCondition condition;
    bad.GetConfigWCondition(node("ReadRegister"), condition);
    bad.GetConfigRCondition(node("ReadRegister"), condition);
    EXPECT_EQ(condition.readAddress + condition.writeAddress, 0U);
    EXPECT_TRUE(bad.GetConfigPeriph(node("Peripheral")).banks.empty());
    EXPECT_TRUE(bad.GetConfigconfiguration(node("Configuration")).banks.empty());
    EXPECT_TRUE(bad.GetConfigBank(node("Bank")).categories.empty());
    EXPECT_TRUE(bad.GetConfigCategory(node("Category")).sectors.empty());
    EXPECT_TRUE(bad.GetConfigSector(node("Field")).bits.empty());
    EXPECT_TRUE(bad.GetConfigAssignedBits(node("AssignedBits")).empty());
    EXPECT_TRUE(bad.GetConfigBit(node("Bit")).empty());
    EXPECT_TRUE(bad.GetConfigVal(node("Val")).text.empty());
    EXPECT_EQ(bad.GetConfigEqu(node("Val")).multiplier, 1U);
    EXPECT_TRUE(bad.GetStoragePeriph(node("Peripheral", 1)).configurations.empty());
    EXPECT_TRUE(bad.GetStorageConfig(node("Configuration")).banks.empty());
    EXPECT_TRUE(bad.GetStorageBank(node("Bank", 1)).sectors.empty());
    EXPECT_TRUE(bad.GetStorageSector(node("Field", 1)).empty());
    EXPECT_TRUE(bad.get_txt(node("Name")).empty());
    std::string name;
    unsigned size = 7;
    unsigned address = 7;
    unsigned occurence = 7;
    bad.GetParmList(node("Parameters"), name, size, address, &occurence);
    EXPECT_EQ(size + address + occurence, 21U);
}

TEST_F(Parser, SearchRespectsCaseAndTakesTheFirstIdentifier)
{
    const std::string root =
        "<device><DeviceID>0x1</DeviceID><Name>lower</Name></device>"
        "<Device><deviceid>0x1</deviceid><DeviceID>0x2</DeviceID><DeviceID>0x1</DeviceID></Device>"
        "<Device><Name>without</Name></Device>"
        "<Device><DeviceID> 10001 rest</DeviceID><NAME>first</NAME><TYPE>MCU</TYPE></Device>"
        "<Device><DeviceID>0x1</DeviceID><Name>second</Name></Device>";
    const std::unique_ptr<Device> found(parse(file(root)).GetDevice(1));
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->information.name, "first");
    EXPECT_EQ(found->information.type, "MCU");
    EXPECT_EQ(found->information.deviceID, 1);
    EXPECT_EQ(m_parser->GetDevice(3), nullptr);
}

TEST_F(Parser, MalformedNumbersGoThroughToTheCaller)
{
    for (const char *text : {"", "-", "none", "  "}) {
        const std::string number = ">" + std::string(text) + "</";
        EXPECT_THROW(bitsOf("<Bit><BitWidth" + number + "BitWidth></Bit>"), std::invalid_argument);
        EXPECT_THROW(
            bitsOf("<Bit><Values><Val value=\"" + std::string(text) + "\"/></Values></Bit>"),
            std::invalid_argument);
        EXPECT_THROW(read("", "<SfiTzenInfo><TzWidth" + number + "TzWidth></SfiTzenInfo>"),
                     std::invalid_argument);
        EXPECT_THROW(sectorsOf("size=\"" + std::string(text) + "\""), std::invalid_argument);
    }
    EXPECT_THROW(bitsOf("<Bit config=\"1, x\"/>"), std::invalid_argument);
    EXPECT_THROW(sectorsOf("name=\"S99999999999999999999\""), std::out_of_range);
    EXPECT_THROW(sectorsOf("address=\"0x10000000000000000\""), std::out_of_range);
}

TEST_F(Parser, NumbersAreCutAndReadInTheirBase)
{
    const auto bits =
        bitsOf("<Bit config=\" 10,,0x3,-1 ,257\"><DefaultVal>-1</DefaultVal>"
               "<BitOffset>1F ends</BitOffset><BitWidth>0x100000002</BitWidth></Bit>");
    ASSERT_EQ(bits.size(), 1U);
    EXPECT_THAT(bits[0].config, ElementsAre(10, 0, 255, 1));
    EXPECT_EQ(bits[0].defaultVal, 0xFFFFFFFFU);
    EXPECT_EQ(bits[0].bitOffset, 0x1FU);
    EXPECT_EQ(bits[0].bitWidth, 2U);
}

TEST_F(Parser, SectorsAreCountedOut)
{
    struct Case {
        const char *parameters;
        std::size_t count;
        StorageSector last;
    };
    const Case cases[] = {
        {"name='Sector0' size='0x800' address='0x08000000' occurence='0x80'",
         128,
         {"Sector", 127, 0x800, 0x0803F800}},
        {"name='Page A12' size='2' address='4'", 1, {"Page A", 12, 2, 4}},
        {"name='S7' size='0x80000000' address='1' occurence='3'", 3, {"S", 9, 0x80000000, 1}},
        {"name='S7b' occurence='0'", 1, {"S7b", 0, 0, 0}},
        {"name='12' occurence='2'", 2, {"12", 1, 0, 0}},
        {"name='A_1'", 1, {"A_1", 0, 0, 0}}};
    for (const Case &c : cases) {
        const auto sectors = sectorsOf(c.parameters);
        ASSERT_EQ(sectors.size(), c.count) << c.parameters;
        EXPECT_EQ(sectors.back().name, c.last.name) << c.parameters;
        EXPECT_EQ(sectors.back().index, c.last.index) << c.parameters;
        EXPECT_EQ(sectors.back().size, c.last.size) << c.parameters;
        EXPECT_EQ(sectors.back().address, c.last.address) << c.parameters;
    }
}

TEST_F(Parser, BitsExpandOneByOne)
{
    const auto bits = bitsOf(bitXml(
        "KEEP3", 4, 3,
        "<Access>R</Access><values byBit='false'/><VALUES ByBit='TRUE'><val value='0x1'>on<!-- -->"
        "off</val></VALUES><Equation multiplier='0x80'/>",
        "reference='Second'"));
    ASSERT_EQ(bits.size(), 3U);
    for (unsigned i = 0; i < 3; ++i) {
        EXPECT_EQ(bits[i].name, "KEEP" + std::to_string(3 + i));
        EXPECT_EQ(bits[i].bitOffset, 4 + i);
        EXPECT_EQ(bits[i].bitWidth, 1U);
        EXPECT_EQ(bits[i].defaultVal, i);
        EXPECT_EQ(bits[i].reference, "Second");
        EXPECT_EQ(bits[i].access, "R");
        EXPECT_EQ(bits[i].values.at(0).text, "on");
        EXPECT_EQ(bits[i].equationMultiplier, 0x80U);
        EXPECT_EQ(bits[i].equationOffset, 0U);
    }
    EXPECT_TRUE(bitsOf(bitXml("NONE1", 0, 0, "<Values ByBit='true'/>")).empty());
}

TEST_F(Parser, LaterElementReplacesTheListsOfAnEarlierOne)
{
    const auto found = read(periph("OTP", "Storage", ""),
                            "<Peripherals>" + periph("X", "Other", "") + periph("Y", "", "") +
                                "</Peripherals><Configurations><Interface name='JTAG_SWD'/>"
                                "</Configurations><configurations><interface name='Bootloader'>"
                                "<configuration><AccessPort number='0x102'/><Cond reference='2'>"
                                "<ReadRegister mask='F'/><WriteRegister address='8'/></Cond>"
                                "</configuration></interface></configurations>");
    ASSERT_NE(found, nullptr);
    EXPECT_TRUE(found->storagePeriphs.empty());
    EXPECT_EQ(found->configPeriphs.size(), 2U);
    EXPECT_EQ(found->interfaces[0].name, "");
    const Configuration &only = found->interfaces[1].configurations.at(0);
    EXPECT_EQ(only.accessPort, 2);
    EXPECT_EQ(only.conditions.at(0).name, "Cond");
    EXPECT_EQ(only.conditions.at(0).readMask, 0xFU);
    EXPECT_EQ(only.conditions.at(0).writeAddress, 8U);
    EXPECT_EQ(only.conditions.at(0).reference, 2);
}

TEST_F(Parser, WhatMultipliesIsBounded)
{
    const std::string thirtyTwo = "config='0,1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18,19,20,21,"
                                  "22,23,24,25,26,27,28,29,30,31'";
    const std::string byBit =
        "<Values ByBit='true'><Val value='1'>" + std::string(4000, 'v') + "</Val></Values>";
    const auto storage = [&](const char *occurence, const std::string &name) {
        return periph("OTP", "Storage",
                      "<Configuration " + thirtyTwo + "><Bank><Field><Parameters name='" + name +
                          "' occurence='" + occurence + "'/></Field></Bank></Configuration>");
    };
    const std::pair<std::string, bool> cases[] = {
        {storage("0x186A", "S"), true},  // 6,250 * 32 are 200,000
        {storage("0x186B", "S"), false},
        {storage("0xFFFFFFFF", "S"), false},
        {storage("0x1800", std::string(400, 'n')), false},
        {optionBytes(bank(reg("R", bitXml("B", 0, 625, "<Values ByBit='true'/>", thirtyTwo)))),
         true},
        {optionBytes(bank(reg("R", bitXml("B", 0, 626, "<Values ByBit='true'/>", thirtyTwo)))),
         false},
        {optionBytes(bank(reg("R", bitXml("B", 0, 0xFFFFFFFF, "<Values ByBit='true'/>")))), false},
        {optionBytes(bank(reg("R", bitXml("B", 0, 500, byBit)))), true},
        {optionBytes(bank(reg("R", bitXml("B", 0, 600, byBit, thirtyTwo)))), false}};
    for (const auto &[peripherals, isAccepted] : cases) {
        EXPECT_EQ(read(peripherals) != nullptr, isAccepted) << peripherals.substr(0, 300);
    }
}

TEST_F(Parser, MarksOfFinalValuesNameTheirField)
{
    read(optionBytes("<Configuration config='1'>" +
                     bank(reg("R",
                              bitXml("B2", 5, 2,
                                     "<Values ByBit='true'><Val value='1' irreversible='true'/>"
                                     "<Val value='0' irreversible='no'/></Values>",
                                     "config='1,2'"),
                              "0x44")) +
                     "</Configuration>"));
    ASSERT_EQ(m_parser->GetIrreversibleValues().size(), 1U);
    const IrreversibleValue &mark = m_parser->GetIrreversibleValues()[0];
    EXPECT_THAT(mark.bankConfig, ElementsAre(1));
    EXPECT_THAT(mark.config, ElementsAre(1, 2));
    EXPECT_EQ(mark.regName, "R");
    EXPECT_EQ(mark.regAddress, 0x44U);
    EXPECT_EQ(mark.bitOffset, 5U);
    EXPECT_TRUE(mark.isByBit);
    EXPECT_EQ(mark.value, 1U);
}
