#include "obk/ObkFixture.h"
#include "obk/TemplateText.h"

#include <sys/stat.h>

namespace
{

class Saving : public ObkFixture
{
protected:
    /// Opens, puts values into the items and saves. @return the file's text
    std::string saved(const std::string &text, const std::vector<std::optional<QString>> &values)
    {
        EXPECT_TRUE(openText(text)) << said().join(' ').toStdString();
        for (std::size_t at = 0; at < values.size(); ++at) {
            obkey.model.items.at(at).value = values[at];
        }
        obkey.saveOBKeyConf(&obkey);
        return ScratchFolder::contents(m_folder.path("t.xml"));
    }
    static std::string replaced(std::string text, const std::string &from, const std::string &to)
    {
        return text.replace(text.find(from), from.size(), to);
    }
    mode_t mode() const
    {
        struct stat entry = {};
        ::stat(QFile::encodeName(m_folder.path("t.xml")).constData(), &entry);
        return entry.st_mode & 0777;
    }
};

std::string item(const std::string &inside)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<Root>\r\n\t<Obdata>\r\n"
           "<Info><GlobalAlign>1</GlobalAlign></Info>\r\n\t<Data>\r\n\t\t" +
           inside +
           "\r\n\t</Data>\r\n<Output><Default>o.bin</Default></Output></Obdata></Root>\r\n";
}

TEST_F(Saving, ReplacesTheValueBehindTheNameOrPutsOneThere)
{
    const std::string rest = "\r\n\t\t<Width>1</Width><Default>1</Default>";
    const std::string after = item("<Name>A</Name>\r\n\t\t<Value>2</Value>" + rest);
    EXPECT_EQ(saved(item("<Name>A</Name>\r\n\t\t<Value>1</Value>" + rest), {"2"}), after);
    EXPECT_EQ(saved(item("<Name>A</Name>" + rest), {"2"}), after);
    EXPECT_EQ(saved(item("<Name>A</Name>" + rest), {std::nullopt}), item("<Name>A</Name>" + rest));
}

TEST_F(Saving, FindsTheValueWhereverItStands)
{
    const std::string rest = "<Width>1</Width><Default>1</Default>";
    const std::pair<std::string, std::string> cases[] = {
        {"<Value/>" + rest + "<Name>A</Name>", "<Value>2</Value>" + rest + "<Name>A</Name>"},
        {"<Name>A</Name>" + rest + "<Value><!-- old --> 1</Value>",
         "<Name>A</Name>" + rest + "<Value>2</Value>"},
        {"<Name>A</Name>" + rest, "<Name>A</Name><Value>2</Value>\r\n" + rest},
        {"<Name>A &amp; <![CDATA[<B>]]></Name>\n" + rest,
         "<Name>A &amp; <![CDATA[<B>]]></Name>\n<Value>2</Value>\r\n" + rest},
        {"<!-- <Name>A</Name> <Value>9</Value> --><Name>A</Name><Value>1</Value>" + rest,
         "<!-- <Name>A</Name> <Value>9</Value> --><Name>A</Name><Value>2</Value>" + rest},
    };
    for (const auto &[before, after] : cases) {
        EXPECT_EQ(saved(item(before), {"2"}), item(after));
        EXPECT_TRUE(said().isEmpty());
    }
}

TEST_F(Saving, EqualNamesOfTwoKindsKeepTheirOwnValues)
{
    const std::string text = around(
        data("A", "1") + "<List><Name>A</Name><Width>1</Width><Default>1</Default><Val>1</Val>"
                         "</List>");
    const std::string after = saved(text, {"7", "1"});
    EXPECT_EQ(obk::readTemplate(QByteArray::fromStdString(after))->items[0].value, QString("7"));
    EXPECT_EQ(obk::readTemplate(QByteArray::fromStdString(after))->items[1].value, QString("1"));
}

TEST_F(Saving, AnyPasswordSurvivesTheRoundTrip)
{
    const std::string text = around("<Text><Name>P</Name><Width>40</Width><MinWidth>1</MinWidth>"
                                    "<Default>abc</Default></Text>");
    for (const QString &password :
         {QString("a<b>&\"'c]]>"), QString("   "), QString(" x "), QString("</Value>"),
          QString::fromUtf8("g\xC3\xA9h\xE2\x82\xAC"), QString("a\tb"), QString("%1%s")}) {
        saved(text, {password});
        EXPECT_TRUE(said().isEmpty());
        ASSERT_TRUE(obkey.openTemplate(m_folder.path("t.xml"))) << password.toStdString();
        EXPECT_EQ(obkey.model.items.at(0).value, password);
    }
}

TEST_F(Saving, AFileThatWouldNotReadAsBeforeIsLeftAlone)
{
    const std::string text = around("<Text><Name>P</Name><Width>40</Width><MinWidth>1</MinWidth>"
                                    "<Default>abc</Default></Text>");
    EXPECT_EQ(saved(text, {QString("a\x01z")}), text) << "no character of XML";
    EXPECT_TRUE(complaint().startsWith("The values were not saved in the template \""));
    ASSERT_TRUE(openText(text));
    const std::string other = around(data("B", "1"));
    m_folder.file("t.xml", other);
    obkey.saveOBKeyConf(&obkey);
    EXPECT_EQ(ScratchFolder::contents(m_folder.path("t.xml")), other) << "changed meanwhile";
    EXPECT_TRUE(complaint().startsWith("The values were not saved in the template \""));
    QFile::remove(m_folder.path("t.xml"));
    obkey.saveOBKeyConf(&obkey);
    EXPECT_TRUE(said().isEmpty());
}

TEST_F(Saving, APasswordMakesTheTemplateItsOwnersAlone)
{
    const std::string password = around("<Text><Name>P</Name><Width>40</Width><MinWidth>1"
                                        "</MinWidth><Default>abc</Default></Text>");
    for (const auto &[text, expected] :
         {std::pair{password, 0700}, {around(data("A", "1")), 0754}}) {
        ASSERT_TRUE(openText(text));
        ASSERT_EQ(::chmod(QFile::encodeName(m_folder.path("t.xml")).constData(), 0754), 0);
        obkey.model.items[0].value = "2abc";
        obkey.saveOBKeyConf(&obkey);
        EXPECT_EQ(mode(), static_cast<mode_t>(expected));
    }
}

TEST_F(Saving, ListValuesLeadToTheSameEntryAgain)
{
    const std::string text =
        around("<List><Name>L</Name><Width>1</Width><Default>1</Default><Val>1</Val>"
               "<Val> 0x 2 ,Two</Val><Val>3|4,A</Val><Val>3|5,B</Val></List>");
    for (const auto &[value, bytes, stored] :
         {std::tuple{" 0x 2 ", "02", "0x2"}, {"3|4", "03", "3"}, {"3|5", "03", "3|5"}}) {
        ASSERT_TRUE(openText(text));
        EXPECT_EQ(generate({QString(value), std::nullopt}, true)->mid(12),
                  QByteArray::fromHex(bytes));
        EXPECT_EQ(product->values[0], QString(stored));
        ASSERT_TRUE(obkey.writeProduct(*product));
        obkey.saveOBKeyConf(&obkey);
        ASSERT_TRUE(obkey.openTemplate(m_folder.path("t.xml")));
        EXPECT_EQ(payload(), QByteArray::fromHex(bytes)) << "from the template's own value";
    }
}

}  // namespace
