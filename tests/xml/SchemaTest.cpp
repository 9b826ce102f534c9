#include "xml/Schema.h"
#include "support/ScratchFolder.h"

#include <gtest/gtest.h>

#include <string>

namespace
{

constexpr const char *kSchema = R"(<?xml version="1.0" encoding="UTF-8"?>
<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema">
  <xs:element name="Root"><xs:complexType><xs:sequence>
    <xs:element name="Width" type="xs:unsignedByte"/>
    <xs:element name="Name"><xs:simpleType><xs:restriction base="xs:string">
      <xs:maxLength value="3"/></xs:restriction></xs:simpleType></xs:element>
  </xs:sequence></xs:complexType></xs:element>
</xs:schema>)";

QByteArray including(const QString &path)
{
    return QByteArray(kSchema).replace("<xs:element name=\"Root\">",
                                       "<xs:include schemaLocation=\"file://" + path.toUtf8() +
                                           "\"/><xs:element name=\"Root\">");
}

struct Invalid {
    const char *text;
    const char *words;
    qint64 line;
};

TEST(Schema, TellsThePlaceAndThePlainReason)
{
    const auto schema = xml::Schema::fromBytes(kSchema);
    ASSERT_TRUE(schema) << schema.error().text;
    EXPECT_TRUE(schema->validate("<Root><Width>4</Width><Name>abc</Name></Root>"));
    for (const Invalid &invalid :
         {Invalid{"<Root>\n<Width>4</Width>\n</Root>", "Root is missing child", 2},
          Invalid{"<Root>\n\n<Width>256</Width><Name/></Root>", "Width", 3},
          Invalid{"<Root>\n<Width>4</Width>\n<Name>abcd</Name></Root>", "maxLength", 3},
          Invalid{"<Root>\n<Width>4", "Premature", 2}}) {
        const auto result = schema->validate(invalid.text);
        ASSERT_FALSE(result) << invalid.text;
        const std::string told = result.error().text.toStdString();
        EXPECT_NE(told.find(invalid.words), std::string::npos) << told;
        EXPECT_EQ(told.find('<'), std::string::npos) << told;
        EXPECT_EQ(result.error().line, invalid.line) << told;
    }
    EXPECT_FALSE(schema->validate("<!DOCTYPE Root><Root><Width>4</Width><Name/></Root>"));
}

TEST(Schema, OpensNoOtherFile)
{
    const ScratchFolder folder;
    const QString other = folder.file("other.xsd", kSchema);
    const auto alone = xml::Schema::load(other);
    EXPECT_TRUE(alone) << alone.error().text;
    const QByteArray extra = R"(<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema">
        <xs:element name="Extra" type="xs:string"/></xs:schema>)";
    const QString included = folder.file("extra.xsd", extra.toStdString());
    const auto schema =
        xml::Schema::load(folder.file("main.xsd", including(included).toStdString()));
    // Whether Qt takes the schema without its part or not at all: the part must not have come in.
    EXPECT_TRUE(!schema || !schema->validate("<Extra>x</Extra>"));
}

TEST(Schema, IsRefusedWhenBroken)
{
    const ScratchFolder folder;
    EXPECT_EQ(xml::Schema::load(folder.path("gone.xsd")).error().code, files::ErrorCode::NotFound);
    const auto unknownType =
        xml::Schema::fromBytes(QByteArray(kSchema).replace("unsignedByte", "word"));
    ASSERT_FALSE(unknownType);
    EXPECT_EQ(unknownType.error().code, files::ErrorCode::BadValue);
    EXPECT_NE(unknownType.error().text.find("line 4"), std::string::npos)
        << unknownType.error().text;
}

}  // namespace
