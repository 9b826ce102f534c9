#include "xml/Bounds.h"
#include "support/ScratchFolder.h"

#include <gtest/gtest.h>

#include <QTextCodec>

#include <string>
#include <sys/stat.h>

using files::ErrorCode;

namespace
{

QByteArray repeated(const char *part, int count)
{
    return QByteArray(part).repeated(count);
}

QByteArray utf16(const char *text)
{
    return QTextCodec::codecForName("UTF-16")->fromUnicode(QString::fromUtf8(text));
}

struct Case {
    const char *name;
    QByteArray text;
    std::optional<ErrorCode> expected;  ///< none: accepted
    const char *words = "";             ///< in the error
};

class Bounds : public ::testing::TestWithParam<Case>
{
};

TEST_P(Bounds, JudgesTheText)
{
    const auto result = xml::checkBounds(GetParam().text);
    EXPECT_EQ(result.has_value(), !GetParam().expected.has_value());
    if (!result && GetParam().expected) {
        EXPECT_EQ(result.error().code, *GetParam().expected) << result.error().text;
        EXPECT_NE(result.error().text.find(GetParam().words), std::string::npos)
            << result.error().text;
    }
}

const auto caseName = [](const auto &tested) { return std::string(tested.param.name); };

// Each limit from both sides.
INSTANTIATE_TEST_SUITE_P(
    Limits, Bounds,
    ::testing::Values(
        Case{"Depth64", repeated("<a>", 64) + repeated("</a>", 64), {}},
        Case{"Depth65", "\n" + repeated("<a>", 65), ErrorCode::TooLarge, "line 2, column 193"},
        Case{"SiblingsAreNotDepth", "<r>" + repeated("<a/><b></b>", 200) + "</r>", {}},
        Case{"Attributes64", "<a " + repeated("b=\"\" ", 64) + "/>", {}},
        Case{"Attributes65", "<a " + repeated("b='' ", 65) + "/>", ErrorCode::TooLarge, "64 attr"},
        Case{"Tag4096", "<a b='" + repeated("x", 4096 - 9) + "'/>", {}},
        Case{"Tag4097", "<a b='" + repeated("x", 4097 - 9) + "'/>  ", ErrorCode::TooLarge, "4096"},
        Case{"Nodes50000", "<r>" + repeated("<a b=''/><!----><?p?>x", 12'499) + "<a/><a/><a/>", {}},
        Case{"Nodes50001", "<r>" + repeated("<a b=''/><!----><?p?>x", 12'499) + "<a/><a/><a b=''/>",
             ErrorCode::TooLarge, "50000"},
        Case{"Bytes", repeated("x", (1 << 20) + 1), ErrorCode::TooLarge, "1048577"}),
    caseName);

INSTANTIATE_TEST_SUITE_P(
    Tags, Bounds,
    ::testing::Values(
        Case{"DocType", "<!DOCTYPE a [<!ENTITY e \"x\">]><a/>", ErrorCode::BadValue, "DOCTYPE"},
        Case{"LocationBehindOtherAttributes", "<a b='1'\n x:schemaLocation = 'u f'/>",
             ErrorCode::BadValue, "schemaLocation"},
        Case{"LocationWithoutNamespace", "<a x:noNamespaceSchemaLocation=\"f\"/>",
             ErrorCode::BadValue, "schemaLocation"},
        Case{"InstanceNamespace", "<a xmlns:i='http://www.w3.org/2001/XMLSchema-instance'/>",
             ErrorCode::BadValue, "namespace"},
        Case{"HiddenInstanceNamespace", "<a xmlns:i = 'http://www.w3.org/2001/XMLSchem&#97;-i'/>",
             ErrorCode::BadValue, "namespace"},
        Case{"WordsInTextAndValuesAreFree",
             "<a b='schemaLocation=&quot; > xmlns'>XMLSchema-instance</a>",
             {}},
        Case{"QuotesHideTheTagsEnd", "<a b='>' x:schemaLocation='f'/>", ErrorCode::BadValue,
             "schemaLocation"},
        Case{"CommentsAndCdataAreSkipped",
             "<a><!-- <!DOCTYPE <a x:schemaLocation='' --><![CDATA[<!DOCTYPE]]><?p <!x ?></a>",
             {}},
        Case{"AShortCommentClosesNothing", "<!--><!DOCTYPE a>", ErrorCode::Truncated, "comment"},
        Case{"InstructionWithoutAName",
             QByteArray::fromHex("3c3f7d3f3e0a3c526f6f743e3c57696474683e343c2f57696474683e3c2f526f"
                                 "6f743e"),
             ErrorCode::BadValue, "line 1, column 1"},
        Case{"NamesOfInstructions", "<a><?x-1.b:_ <?><?\xC3\xA9?></a>", {}},
        Case{"InstructionWithADigitFirst", "<?1?><a/>", ErrorCode::BadValue, "no name"},
        Case{"OpenInstruction", "<?ab", ErrorCode::Truncated, "instruction"},
        Case{"OpenTag", "<a b='", ErrorCode::Truncated, "start tag"},
        Case{"TextWithoutATag", "plain", {}}),
    caseName);

INSTANTIATE_TEST_SUITE_P(
    Encodings, Bounds,
    ::testing::Values(
        Case{"Utf8", "\xEF\xBB\xBF<?xml version=\"1.0\" encoding='utf-8'?><a>\xC3\xA9</a>", {}},
        Case{"Latin1", "<?xml version='1.0' encoding='ISO-8859-1'?><a>\xE9</a>", {}},
        Case{"NoLatin1WithoutAWord", "<a>\xE9</a>", ErrorCode::BadValue, "UTF-8"},
        Case{"CutInsideACharacter", "<a/>\xC3", ErrorCode::BadValue, "UTF-8"},
        Case{"Utf16", utf16("<?xml version='1.0' encoding='UTF-16'?><a>é</a>"), {}},
        Case{"Utf16HidesNothing", utf16("<!DOCTYPE a>"), ErrorCode::BadValue, "DOCTYPE"},
        Case{"Utf16ThatSaysUtf8", utf16("<?xml version='1.0' encoding='UTF-8'?><a/>"),
             ErrorCode::BadValue, "UTF-16"},
        Case{"Utf16WithoutMark", utf16("<a/>").mid(2), ErrorCode::BadValue, "zero character"},
        // "+ADw-" is '<' there.
        Case{"Utf7", "<?xml version='1.0' encoding='UTF-7'?>+ADwAIQ-DOCTYPE", ErrorCode::BadValue,
             "UTF-7"},
        Case{"TwoWordsAboutTheEncoding",
             "<?xml version='1.0' encoding='UTF-8' encoding='UTF-7'?><a/>", ErrorCode::BadValue,
             "malformed"}),
    caseName);

TEST(ReadBounded, GivesTheBytesAsTheyAre)
{
    const ScratchFolder folder;
    const auto bytes = xml::readBounded(folder.file("a.xml", "\xEF\xBB\xBF<a/>\r\n"));
    ASSERT_TRUE(bytes);
    EXPECT_EQ(*bytes, QByteArray("\xEF\xBB\xBF<a/>\r\n"));
}

TEST(ReadBounded, RefusesWhatIsNoFileOrTooLarge)
{
    const ScratchFolder folder;
    const QString pipe = folder.path("pipe.xml");
    ASSERT_EQ(::mkfifo(pipe.toUtf8().constData(), 0600), 0);
    EXPECT_EQ(xml::readBounded(pipe).error().code, ErrorCode::NotRegular);
    EXPECT_EQ(xml::readBounded(folder.path("gone.xml")).error().code, ErrorCode::NotFound);
    const QString seven = folder.file("seven.xml", "<abcd/>");
    EXPECT_TRUE(xml::readBounded(seven, {.bytes = 7}));
    EXPECT_EQ(xml::readBounded(seven, {.bytes = 6}).error().code, ErrorCode::TooLarge);
    const QString typed = folder.file("typed.xml", "<!DOCTYPE a><a/>");
    EXPECT_EQ(xml::readBounded(typed).error().code, ErrorCode::BadValue);
}

}  // namespace
