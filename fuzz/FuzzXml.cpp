#include "FuzzSupport.h"

#include "xml/Document.h"
#include "xml/Schema.h"

#include <cstdlib>
#include <string_view>

namespace
{

constexpr std::string_view kSchema = R"(<?xml version="1.0" encoding="UTF-8"?>
<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema"><xs:element name="Root"><xs:complexType>
<xs:choice maxOccurs="unbounded"><xs:element name="Width" type="xs:unsignedByte"/>
<xs:element name="Name"><xs:simpleType><xs:restriction base="xs:string"><xs:maxLength value="3"/>
</xs:restriction></xs:simpleType></xs:element></xs:choice></xs:complexType></xs:element>
</xs:schema>)";

std::vector<std::uint8_t> bytesOf(std::string_view text)
{
    return {text.begin(), text.end()};
}

std::size_t depthOf(const QDomNode &node)
{
    std::size_t deepest = 0;
    for (QDomNode child = node.firstChild(); !child.isNull(); child = child.nextSibling()) {
        deepest = std::max(deepest, depthOf(child) + (child.isElement() ? 1 : 0));
    }
    return deepest;
}

}  // namespace

std::vector<std::vector<std::uint8_t>> fuzzSeeds()
{
    return {bytesOf("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Root><Width>4</Width></Root>"),
            bytesOf("<Root a='1' b=\"&lt;\"><!-- c --><Name><![CDATA[<x>]]></Name><?p q?></Root>"),
            bytesOf("<!DOCTYPE a [<!ENTITY e \"x\">]><Root xmlns:x='u' x:schemaLocation='a b'/>"),
            bytesOf(std::string_view("\xFF\xFE<\0R\0o\0o\0t\0/\0>\0", 16)),
            bytesOf("<?xml version='1.0' encoding='ISO-8859-1'?><Root><Name>\xE9</Name></Root>"),
            bytesOf("<?name?>\n<Root><Width>4</Width></Root>")};
}

// Qt's own: its schema classes lose a few objects of each document that they refuse.
extern "C" const char *__lsan_default_suppressions();
extern "C" const char *__lsan_default_suppressions()
{
    return "leak:libQt5XmlPatterns";
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const auto schema =
        xml::Schema::fromBytes(QByteArray(kSchema.data(), static_cast<int>(kSchema.size())));
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<int>(size));
    constexpr xml::Limits limits = {.depth = 8, .startTag = 200, .attributes = 4};
    const auto document = xml::parse(bytes, limits);
    // What the parser takes, the scan must have seen as the parser does.
    if (document && depthOf(*document) > limits.depth) {
        std::abort();
    }
    if (schema && schema->validate(bytes, limits) && !document) {
        std::abort();
    }
    return 0;
}
