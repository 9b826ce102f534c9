#include "xml/Document.h"

#include <gtest/gtest.h>

#include <QTextCodec>

namespace
{

TEST(Document, HasTheDeclarationFirstInEachEncoding)
{
    const QString text = QStringLiteral("<?xml version=\"1.0\" encoding=\"%1\"?>\n<Root>é</Root>");
    for (const char *encoding : {"UTF-8", "UTF-16", "ISO-8859-1"}) {
        const auto bytes =
            QTextCodec::codecForName(encoding)->fromUnicode(text.arg(QLatin1String(encoding)));
        const auto document = xml::parse(bytes, {}, QStringLiteral("XMLProto"));
        ASSERT_TRUE(document) << encoding << document.error().text;
        EXPECT_TRUE(document->firstChild().isProcessingInstruction()) << encoding;
        EXPECT_EQ(document->firstChild().nextSibling().nodeName(), "Root") << encoding;
        EXPECT_EQ(document->documentElement().text(), QStringLiteral("é")) << encoding;
    }
}

TEST(Document, TellsWhereTheTextIsMalformed)
{
    const auto document = xml::parse("<Root>\n  <a></b>\n</Root>");
    ASSERT_FALSE(document);
    EXPECT_EQ(document.error().code, files::ErrorCode::BadValue);
    EXPECT_EQ(document.error().text, "line 2, column 9: tag mismatch");
}

TEST(Document, IsBoundedBeforeItIsRead)
{
    EXPECT_EQ(xml::parse(QByteArray("<a>").repeated(30'000)).error().code,
              files::ErrorCode::TooLarge);
    EXPECT_EQ(xml::parse("<a><b/></a>", {.depth = 1}).error().code, files::ErrorCode::TooLarge);
}

}  // namespace
