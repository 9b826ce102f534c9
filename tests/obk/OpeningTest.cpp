#include "obk/ObkFixture.h"

namespace
{

struct Case {
    const char *name;
    std::string text;
    QString expected;  ///< the whole message, or its start when it ends in "..."
};

void PrintTo(const Case &one, std::ostream *out)
{
    *out << one.name;
}

class Opening : public ObkFixture, public ::testing::WithParamInterface<Case>
{
public:
    using ObkFixture::around;
    using ObkFixture::data;
};

TEST_P(Opening, StopsWithOneMessage)
{
    EXPECT_FALSE(openText(GetParam().text));
    const QString expected = GetParam().expected;
    const QString told = complaint();
    EXPECT_EQ(expected.endsWith("...") ? told.left(expected.size() - 3) + "..." : told, expected);
}

const std::string kFlash =
    "<GlobalAlign>1</GlobalAlign><FlashStart>0x08000000</FlashStart>"
    "<FlashSize>0x10000</FlashSize><FlashSectorSize>0x1000</FlashSectorSize>";
const std::string kObk = "<GlobalAlign>1</GlobalAlign><OBKStart>0x1000</OBKStart><OBKSize>0x1000"
                         "</OBKSize><OBKSectorSize>16</OBKSectorSize>";
const std::string kAuth = kObk + "<AuthOBKStart>0x1000</AuthOBKStart><AuthOBKSize>0x800"
                                 "</AuthOBKSize>";

std::string pair(const std::string &tag, const std::string &start, const std::string &size,
                 const std::string &id = "1")
{
    return Opening::data("Aoffset" + id, start, "4",
                         "<" + tag + ">start#" + id + "</" + tag + ">") +
           Opening::data("Asize" + id, size, "4", "<" + tag + ">size#" + id + "</" + tag + ">");
}

std::string replaced(std::string text, const std::string &from, const std::string &to)
{
    return text.replace(text.find(from), from.size(), to);
}

const std::string kPlain = Opening::around(Opening::data("A", "1"));
const QString kMissing = "XML document is invalid : Mandatory Tag under %1 is missing :\"%2\", "
                         "please update your xml file.";
const QString kNumber = " \"%1\" value for \"A\" is incorrect, ";

const Case kCases[] = {
    {"NoDeclaration", replaced(kPlain, " encoding=\"UTF-8\"", ""),
     "XML document is invalid! xml version is wrong or missing"},
    {"Doctype", replaced(kPlain, "<Root>", "<!DOCTYPE Root []><Root>"),
     "XML document is invalid! The file ..."},
    {"UnknownTagWithItsLine", replaced(kPlain, "<Width>", "<Weight>0</Weight>\n<Width>"),
     "XML document is invalid at line: 4, error type: \" ..."},
    {"UnknownTagBehindADeclarationThatIsNotAlone",
     replaced(replaced(kPlain, "?>\n<Root>", "?><Root>"), "<Width>", "<Weight/>\n<Width>"),
     "XML document is invalid at line: 3, error type: \" ..."},
    {"CommentBeforeRoot", replaced(kPlain, "<Root>", "<!-- me -->\n<Root>"),
     "XML document is invalid! A comment stands before Root, so nothing was read. Please move the "
     "comment into Obdata."},
    {"CommentBeforeObdata", replaced(kPlain, "<Obdata>", "<!-- me --><Obdata>"),
     "XML document is invalid! A comment stands before Obdata, so nothing was read. Please move "
     "the comment into Obdata."},
    {"DoubledTag", replaced(kPlain, "<Width>4</Width>", "<Width>4</Width><Width>4</Width>"),
     "XML document is invalid! \"Width\" Element is duplicated under Data tag."},
    {"DoubledName", replaced(kPlain, "<Width>4", "<Name>B</Name><Width>4"),
     "XML document is invalid! \"duplicateElementCheck\" Element is duplicated under Data tag."},
    {"TwoOutputs", replaced(kPlain, "<Output>", "<Output><Default>a</Default></Output><Output>"),
     "XML document is invalid! \"Default\" Element is duplicated under Output tag."},
    {"NoInfo",
     replaced(kPlain, "<Info>", "<Info/><!--<Info>")
         .replace(kPlain.find("</Info>") + 12, 7, "</Info>-->"),
     kMissing.arg("Info", "GlobalAlign")},
    {"NoAlignment", Opening::around("", "<Title>T</Title>"), kMissing.arg("Info", "GlobalAlign")},
    {"NoWidth", replaced(kPlain, "<Width>4</Width>", ""), kMissing.arg("Data", "Width")},
    {"NoMinWidth", Opening::around("<Text><Name>P</Name><Width>4</Width></Text>"),
     kMissing.arg("Text", "MinWidth")},
    {"NoKeyType", Opening::around("<File><Align>1</Align><Default>a</Default></File>"),
     kMissing.arg("File", "KeyType")},
    {"DoubledItemNames", Opening::around(Opening::data("A", "1") + Opening::data("A", "2")),
     " Duplicate name of : \"A\", all names should be unique. Please update your xml file."},
    {"WidthOf9", Opening::around(Opening::data("A", "1", "9")), " \"9\" : is Wrong width value "},
    {"LeadingZerosCount", Opening::around(Opening::data("A", "0x00001", "1")),
     kNumber.arg("0x00001") + "the value should be written on max : \"1\" Bytes."},
    {"NoNumber", Opening::around(Opening::data("A", "0xG1", "1")),
     kNumber.arg("0xG1") + "values should be hexadecimal or decimal."},
    {"DecimalTooWide", Opening::around(Opening::data("A", "256", "1")),
     kNumber.arg("256") + "max width value is : \"1\" Bytes."},
    {"DecimalBeyond64Bits", Opening::around(Opening::data("A", "18446744073709551616", "8")),
     kNumber.arg("18446744073709551616") + "max width value is : \"8\" Bytes."},
    {"AreaThatIsNoNumber", Opening::around("", "<FlashStart>0x</FlashStart>"),
     " Wrong FlashStart value. Only Decimal and Hexadecimal values are authorized."},
    {"SlotText", Opening::around(Opening::data("A", "1", "4", "<Slot>begin#1</Slot>")),
     " Wrong \" A \" Slot tag content, please update your xml file with the right one (only "
     "\"start#..\" and \"size#..\" are allowed)."},
    {"BothSlotKinds",
     Opening::around(Opening::data("A", "1", "4", "<Slot>size#1</Slot><OBKSlot>size#1</OBKSlot>")),
     " Slot and OBKSlot tags in the same \"A\" Data, you can only have Slot or OBKSlot tags by "
     "Data."},
    {"TypeSlot", Opening::around(Opening::data("A", "1", "4", "<TypeSlot>Run</TypeSlot>")),
     " Wrong \"A\" TypeSlot tag content, please update your xml file with the right one (only "
     "\"Execution\" and \"Download\" are allowed)."},
    {"SlotWithoutSize",
     Opening::around(Opening::data("Aoffset", "0", "4", "<Slot>start#1</Slot>"), kFlash),
     "\" A \" size is missing."},
    {"SlotOfNoBytes", Opening::around(pair("Slot", "0", "0x000"), kFlash),
     " Wrong \" A1 \" size value, size cannot be equal to 0."},
    {"SlotBehindTheFlash", Opening::around(pair("Slot", "0xF000", "0x2000"), kFlash),
     "The \"A1\" Slot is not in the Flash."},
    {"SlotOffItsSector", Opening::around(pair("Slot", "0x1000", "0x800"), kFlash),
     "The Slot : \"A1\" does not respect the alignment constraint."},
    {"SectorsOfNoBytes",
     Opening::around(pair("Slot", "0", "4096"), replaced(kFlash, "0x1000<", "0<")),
     "FlashSectorSize is 0, so no slot can be aligned to it. Please update your xml file."},
    {"ObkSlotOutside", Opening::around(pair("OBKSlot", "0xFF0", "0x20"), kObk),
     "The \"A1\" OBKSlot is not in the OBK."},
    {"ObkSlotWithBothEndsOff", Opening::around(pair("OBKSlot", "8", "16"), kObk),
     "The ObkSlot : \"A1\" does not respect the alignment constraint. Please update your xml file "
     "with the right values."},
    {"ObkSlotWithOneEndOff", Opening::around(pair("OBKSlot", "0", "8"), kAuth),
     "The OBKSlot : \"A1\" does not respect the alignment constraint."},
    {"ObkSlotBehindTheAllowedPart", Opening::around(pair("OBKSlot", "0x7F0", "0x20"), kAuth),
     "The OBKSlot : \"A1\" is not in the OBkeys allowed area."},
    {"AllowedPartOutside",
     Opening::around(pair("OBKSlot", "0", "16"), replaced(kAuth, "0x800<", "0x1001<")),
     "AuthOBK is not in the OBK!"},
    {"Overlap",
     Opening::around(pair("OBKSlot", "32", "32") + pair("OBKSlot", "0", "48", "2"), kObk),
     "Overlap between : \"A2\" and \"A1\"."},
    {"HalfAHeader", replaced(kPlain, "<DoEncryption>1</DoEncryption>", ""),
     "Either ObDestAddress or DoEncryption is present,it is a Wrong Configuration "},
    {"ListValueThatIsNoEntry",
     Opening::around("<List><Name>L</Name><Width>1</Width><Default>3</Default><Val>1</Val></List>"),
     "Fail OBkey open Wrong Default List value \n"},
    {"BoolValueThatIsNeither",
     Opening::around("<Bool><Name>L</Name><Width>1</Width><Default>3</Default><True>1</True>"
                     "<False>0</False></Bool>"),
     "Fail OBkey open Wrong Default Boolean value \n"},
    {"NarrowPermission",
     Opening::around("<Permission><Name>P</Name><Width>3</Width><Default>1</Default></Permission>"),
     "\"P\" has a Width of 3, but a Permission takes 4 bytes. Please update your xml file."},
};

INSTANTIATE_TEST_SUITE_P(Faults, Opening, ::testing::ValuesIn(kCases),
                         [](const auto &one) { return one.param.name; });

using Templates = ObkFixture;

TEST_F(Templates, LayoutAloneIsNoFault)
{
    const std::string good = around(data("A", "1"));
    EXPECT_TRUE(openText(replaced(good, "?>\n<Root>", "?><Root>"))) << "declaration not alone";
    EXPECT_TRUE(openText("\xEF\xBB\xBF" + good)) << "byte order mark";
    std::string carriage = good;
    std::replace(carriage.begin(), carriage.end(), '\n', '\r');
    EXPECT_TRUE(openText(carriage)) << "carriage returns alone";
    EXPECT_TRUE(openText(replaced(good, "<Data>", "<!-- no item --><Data>")));
    EXPECT_EQ(obkey.model.items.size(), 2u);
    EXPECT_TRUE(said().isEmpty());
}

TEST_F(Templates, SlotsAtTheEndsOfTheirAreasPass)
{
    EXPECT_TRUE(open(pair("Slot", "0xF000", "0x1000"), kFlash)) << "the end is included";
    EXPECT_TRUE(open(pair("Slot", "0", "4096") + pair("Slot", "0", "4096", "2"), kFlash))
        << "flash slots may overlap";
    EXPECT_TRUE(open(pair("OBKSlot", "0", "8"), kObk)) << "one aligned end is enough";
    EXPECT_TRUE(open(pair("OBKSlot", "0", "32") + pair("OBKSlot", "32", "32", "2"), kAuth));
    EXPECT_TRUE(open(data("A", "1", "4", "<OBKSlot>size#1</OBKSlot><Slot>size#1</Slot>")));
    EXPECT_TRUE(open(pair("Slot", "0", "0"), "<GlobalAlign>1</GlobalAlign>")) << "no area, no rule";
    EXPECT_TRUE(said().isEmpty());
}

TEST_F(Templates, HeaderWordsThatReadInAnotherWayThanTheyLookSaySo)
{
    const struct {
        const char *destination;
        const char *encryption;
        QString expected;
        const char *bytes;
    } cases[] = {
        {"0x80000000", "-1",
         "ObDestAddress \"0x80000000\" is above 0x7FFFFFFF and is written as 0.",
         "0000000000000000ffffffff"},
        {"0C000012", "1",
         "ObDestAddress \"0C000012\" isn't hexadecimal behind 0x and is written as 0x12.",
         "120000000000000001000000"},
        {"0X7FFFFFFF", "0x1", "DoEncryption \"0x1\" is no decimal number and is written as 0.",
         "ffffff7f0000000000000000"},
    };
    for (const auto &one : cases) {
        ASSERT_TRUE(open("", std::string("<ObDestAddress>") + one.destination +
                                 "</ObDestAddress><DoEncryption>" + one.encryption +
                                 "</DoEncryption><GlobalAlign>256</GlobalAlign>"));
        EXPECT_EQ(said(), QStringList("4|Warning: " + one.expected));
        EXPECT_EQ(generate(), QByteArray::fromHex(one.bytes));
    }
    ASSERT_TRUE(open("", "<ObDestAddress>0x000000007fffFFFF</ObDestAddress><DoEncryption>0"
                         "</DoEncryption><GlobalAlign>1</GlobalAlign>"));
    EXPECT_TRUE(said().isEmpty());
}

TEST_F(Templates, AnInvalidOrMissingSchemaIsReportedOnce)
{
    const QString xml = m_folder.file("t.xml", around(""));
    for (const QString &schema : {m_folder.path("none.xsd"), m_folder.file("bad.xsd", "<a/>")}) {
        EXPECT_FALSE(obkey.xmlValid(xml, schema));
        EXPECT_EQ(complaint(), "The XML Template file \"" + schema +
                                   "\" is missing! Please check your VDR32 Seal Package Builder "
                                   "installation folder.");
    }
}

TEST_F(Templates, OfTenThousandItemsAreReadAndWritten)
{
    std::string body;
    for (int i = 0; i < 10000; ++i) {
        body += data("A" + std::to_string(i), "1", "1");
    }
    ASSERT_TRUE(open(body));
    EXPECT_EQ(payload(), QByteArray(10000, 1));
    std::string entries;
    for (int i = 0; i < 300; ++i) {
        entries += "<Val>" + std::to_string(i) + "</Val>";
    }
    ASSERT_TRUE(
        open("<List><Name>L</Name><Width>2</Width><Default>299</Default>" + entries + "</List>"));
    EXPECT_EQ(payload(), QByteArray::fromHex("2b01"));
}

TEST_F(Templates, SelectorsSwitchFieldsByNameInAnyCaseAndValueExactly)
{
    const auto selected = [this](const std::string &dependency) {
        EXPECT_TRUE(open("<List><Name>My list</Name><Width>1</Width><Value>0XA</Value><Default>1"
                         "</Default><Val>1</Val><Val>0xa ,Ten</Val></List>" +
                         data("A", "1", "4", "<Dependency>" + dependency + "</Dependency>")));
        return obkey.model.items[1].hasTypeSlot;
    };
    EXPECT_TRUE(selected("MYLIST , 0xa"));
    EXPECT_FALSE(selected("My list,0xA"));
    EXPECT_FALSE(selected("My list,1"));
    EXPECT_TRUE(selected("Other,1"));
    // Of two selectors of a name each must say the value.
    const auto both = [this](const char *second) {
        std::string body;
        for (const char *value : {"1", second}) {
            body += std::string("<Bool><Name>B</Name><Width>1</Width><Default>") + value +
                    "</Default><True>1</True><False>0</False></Bool>";
        }
        EXPECT_TRUE(open(body + data("A", "1", "4", "<Dependency>b,1</Dependency>")));
        return obkey.model.items[2].hasTypeSlot;
    };
    EXPECT_TRUE(both("1"));
    EXPECT_FALSE(both("0"));
}

TEST_F(Templates, TheMemoryTableLeavesOutWhatIsReservedOrSwitchedOff)
{
    const std::string off = "<Dependency>B,0</Dependency>";
    std::string body = "<Bool><Name>B</Name><Width>1</Width><Default>1</Default><True>1</True>"
                       "<False>0</False></Bool>" +
                       pair("Slot", "0x2000", "0x2000") + pair("Slot", "0x1000", "0x1000", "19");
    ASSERT_TRUE(open(body, kFlash));
    ASSERT_EQ(obkey.flashSlots.all.size(), 2u);
    EXPECT_EQ(obkey.flashSlots.all[0].name, "A19");
    EXPECT_EQ(obkey.flashSlots.all[0].start, QString("0x8001000"));
    EXPECT_EQ(obkey.flashSlots.all[1].size, QString("0x2000")) << "not that of slot 19";
    ASSERT_TRUE(open(replaced(body, "start#1</Slot>", "start#1</Slot>" + off), kFlash));
    EXPECT_EQ(obkey.flashSlots.all.size(), 1u);
    ASSERT_TRUE(open(replaced(body, "size#19</Slot>", "size#19</Slot><Reserved/>"), kFlash));
    EXPECT_EQ(obkey.flashSlots.all.size(), 1u);
}

}  // namespace
