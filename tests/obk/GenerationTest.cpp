#include "obk/ObkFixture.h"

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>

namespace
{

QByteArray hex(const char *digits)
{
    return QByteArray::fromHex(digits);
}

QByteArray sha256(const QByteArray &bytes)
{
    return QCryptographicHash::hash(bytes, QCryptographicHash::Sha256);
}

std::string aligned(const std::string &bytes)
{
    return "<ObDestAddress>0x0C000000</ObDestAddress><DoEncryption>1</DoEncryption><GlobalAlign>" +
           bytes + "</GlobalAlign>";
}

std::string text(const std::string &password, const std::string &width = "16")
{
    return "<Text><Name>P</Name><Width>" + width + "</Width><MinWidth>2</MinWidth><Default>" +
           password + "</Default></Text>";
}

std::string list(const std::string &value, const std::string &width = "1")
{
    return "<List><Name>L</Name><Width>" + width + "</Width><Default>" + value + "</Default><Val>" +
           value + "</Val></List>";
}

std::string permission(const std::string &value, const std::string &width)
{
    return "<Permission><Name>R</Name><Width>" + width + "</Width><Default>" + value +
           "</Default></Permission>";
}

using Generation = ObkFixture;

TEST_F(Generation, NumbersAreLittleEndianInTheirWidth)
{
    const struct {
        const char *value;
        const char *width;
        const char *bytes;
    } cases[] = {{"0x1", "4", "01000000"},
                 {"1", "4", "01000000"},
                 {"0x123", "4", "23010000"},
                 {"0XfF", "1", "ff"},
                 {"", "2", "0000"},
                 {"255", "1", "ff"},
                 {"18446744073709551615", "8", "ffffffffffffffff"}};
    for (const auto &one : cases) {
        ASSERT_TRUE(open(data("A", one.value, one.width) + list(one.value, one.width)));
        EXPECT_EQ(payload(), hex(one.bytes) + hex(one.bytes)) << one.value;
    }
}

TEST_F(Generation, NumbersOfChoicesAreRefusedLikeOthers)
{
    const QString wrong = " \"%1\" value for \"L\" is incorrect, %2";
    const struct {
        const char *value;
        const char *width;
        QString expected;
    } cases[] = {
        {"0x100", "1", "Fail OBkey Generation Wrong Data Size 0x100 for L \n"},
        {"256", "1", wrong.arg("256", "max width value is : \"1\" Bytes.")},
        {"ten", "1", wrong.arg("ten", "values should be hexadecimal or decimal.")},
        {"-1", "1", wrong.arg("-1", "the value should be written on max : \"1\" Bytes.")},
        {"1", "0", " \"0\" : is Wrong width value "},
        {"1", "9", " \"9\" : is Wrong width value "},
    };
    for (const auto &one : cases) {
        ASSERT_TRUE(open(list(one.value, one.width)));
        EXPECT_EQ(generate(), std::nullopt) << one.value;
        EXPECT_EQ(complaint(), one.expected);
    }
    // 128 bytes of digits and more count in full.
    const std::string longest = "0x" + std::string(2 * 128, '1');
    ASSERT_TRUE(open(list(longest)));
    EXPECT_EQ(generate(), std::nullopt);
    EXPECT_TRUE(complaint().startsWith("Fail OBkey Generation Wrong Data Size 0x1"));
}

TEST_F(Generation, PaddingCountsAllButTheText)
{
    m_folder.file("f.bin", std::string_view("abc"));
    const std::string file = "<File><Name>F</Name><Align>4</Align><KeyType>x</KeyType><Default>"
                             "f.bin</Default></File>";
    ASSERT_TRUE(open(text("12345678") + data("A", "1", "6") + file, aligned("16")));
    EXPECT_EQ(payload(),
              "12345678" + hex("010000000000") + hex("0000") + "abc" + hex("0000000000"));
    ASSERT_TRUE(open(data("A", "1", "5"), aligned("0")));
    EXPECT_EQ(payload(), hex("0100000000"));
}

TEST_F(Generation, HeaderHoldsDestinationSizeAndEncryption)
{
    ASSERT_TRUE(open("<Hash/>" + data("A", "1", "2"), aligned("4")));
    const QByteArray fields = hex("01000000");
    EXPECT_EQ(generate(), hex("0000000c2400000001000000") + sha256(fields) + fields);
    EXPECT_EQ(product->payloadSize, 36u);
    ASSERT_TRUE(open(data("A", "1", "2"), "<GlobalAlign>4</GlobalAlign>"));
    EXPECT_EQ(generate(), fields);
    EXPECT_TRUE(product->outputPath.endsWith("/out.bin")) << "headerless, on the command line";
    EXPECT_EQ(generate(true), fields);
    EXPECT_TRUE(product->outputPath.endsWith("/out.obk")) << "the field's text stands as it is";
}

TEST_F(Generation, DebugLayoutKeepsNumbersAndOnlyTheDigestOfTheRest)
{
    ASSERT_TRUE(open("<DA/>" + data("A", "2", "2") + list("7") + permission("0x12345678", "6") +
                         text("word"),
                     aligned("16")));
    const QByteArray fields = hex("0200") + hex("78500000") + hex("0000") + QByteArray(28, '\0');
    EXPECT_EQ(payload(), sha256(hex("07") + "word") + fields);
    EXPECT_EQ(generate(true)->mid(12), *payload()) << "both modes drop the same bits";
    ASSERT_TRUE(open(permission("13", "6") + data("A", "2", "2"), aligned("1")));
    EXPECT_EQ(payload(), hex("0000") + hex("0200")) << "without DA only the zeros behind it";
}

TEST_F(Generation, ThePasswordFileStandsBesideTheOutput)
{
    ASSERT_TRUE(open(text("gehe\xC3\xAFm")));
    const auto bytes = generate({std::nullopt, m_folder.path("sub/x.obk")}, true);
    ASSERT_TRUE(bytes);
    EXPECT_EQ(product->password->path, m_folder.path("sub/password.bin"));
    EXPECT_FALSE(obkey.writeProduct(*product)) << "there is no such folder";
    EXPECT_EQ(complaint().remove(m_folder.path("")).toStdString(),
              "Failed to create Password file\nThe /sub/password.bin already Opened \n"
              "password.bin: No such folder");
    ASSERT_TRUE(generate());
    ASSERT_TRUE(obkey.writeProduct(*product));
    EXPECT_EQ(said(), QStringList("1|Password file Generated successfully : " +
                                  m_folder.path("password.bin") +
                                  " \nPassword file will be used for Debug authentication"));
    EXPECT_EQ(ScratchFolder::contents(m_folder.path("password.bin")),
              (hex("0000008007000000") + "gehe\xC3\xAFm").toStdString());
    EXPECT_EQ(QFileInfo(m_folder.path("password.bin")).permissions() & 0x0FFF & ~0x0700,
              QFile::Permissions(QFile::ReadOwner | QFile::WriteOwner) & 0x0FFF & ~0x0700);
    EXPECT_EQ(ScratchFolder::contents(m_folder.path("out.obk")).size(), 12u + 7u);
    const auto longest = obk::passwordFileBytes(QString(300, 'a'));
    EXPECT_EQ(longest.size(), 308u);
    EXPECT_EQ(longest[4], 44);
}

TEST_F(Generation, ARefusedOneLeavesNoPassword)
{
    ASSERT_TRUE(open(text("word") + list("0x100")));
    EXPECT_EQ(generate(), std::nullopt);
    ASSERT_TRUE(open(text("w")));
    said();
    EXPECT_EQ(generate(), std::nullopt);
    EXPECT_EQ(complaint(), "  \" 1 \" : is Wrong width value ");
    EXPECT_FALSE(QFile::exists(m_folder.path("password.bin")));
}

TEST_F(Generation, NothingThatIsReadIsOverwritten)
{
    m_folder.file("f.bin", std::string_view("abc"));
    ASSERT_TRUE(QFile::link(m_folder.path("f.bin"), m_folder.path("link.obk")));
    const std::string file = "<File><Name>F</Name><Align>1</Align><KeyType>x</KeyType><Default>"
                             "f.bin</Default></File>";
    for (const char *target : {"t.xml", "./t.xml", "f.bin", "link.obk", "password.bin"}) {
        ASSERT_TRUE(open(text("word") + file));
        EXPECT_EQ(generate({std::nullopt, std::nullopt, QString(target)}, true), std::nullopt);
        EXPECT_TRUE(complaint().startsWith("The file \"")) << target;
    }
    m_folder.file("password.bin", std::string_view("key"));
    ASSERT_TRUE(open(text("word") +
                     QString::fromStdString(file).replace("f.bin", "password.bin").toStdString()));
    EXPECT_EQ(generate(), std::nullopt) << "the password file would replace an input";
}

TEST_F(Generation, TheFormsSlotsAreCheckedAgain)
{
    const std::string area = aligned("1") + "<FlashStart>0x1000</FlashStart><FlashSize>0x1000"
                                            "</FlashSize><FlashSectorSize>16</FlashSectorSize>";
    const auto slot = data("Aoffset", "0", "4", "<Slot>start#1</Slot>") +
                      data("Asize", "16", "4", "<Slot>size#1</Slot>");
    ASSERT_TRUE(open(slot, area));
    EXPECT_TRUE(generate({"0xFF0", std::nullopt, std::nullopt}, true));
    EXPECT_EQ(generate({"0x1000", std::nullopt, std::nullopt}, true), std::nullopt);
    EXPECT_EQ(complaint(), "The \"A\" Slot is not in the Flash.");
    EXPECT_EQ(generate({std::nullopt, "0", std::nullopt}, true), std::nullopt);
    EXPECT_EQ(complaint(), " Wrong \"A\" size value, size cannot be equal to 0.");
}

TEST_F(Generation, TheRunningCountWrapsAt16Bits)
{
    m_folder.file("big.bin", std::string(65535, 'x'));
    ASSERT_TRUE(open("<File><Name>F</Name><Align>1</Align><KeyType>x</KeyType><Default>big.bin"
                     "</Default></File>" +
                         data("A", "1", "3"),
                     aligned("4")));
    // 65,538 bytes count as 2, so two more are added.
    EXPECT_EQ(payload()->size(), 65540);
}

TEST_F(Generation, WithoutATemplateIsRefused)
{
    EXPECT_EQ(Obkey().generate({}, true, tools), std::nullopt);
    EXPECT_EQ(complaint(), "Upload a valid input XML File");
}

}  // namespace
