#include "xml/XmlText.h"

#include <QRegularExpression>
#include <QTextCodec>

#include <memory>

namespace xml
{

using files::ErrorCode;
using files::fail;

namespace
{

files::Result<QString> decodeWith(const char *codecName, const QByteArray &bytes)
{
    QTextCodec *codec = QTextCodec::codecForName(codecName);
    QTextCodec::ConverterState state;
    QString text = codec->toUnicode(bytes.constData(), bytes.size(), &state);
    if (state.invalidChars != 0 || state.remainingChars != 0) {
        return fail(ErrorCode::BadValue, std::string("the file holds bytes that are not ") +
                                             codecName + "; save it as UTF-8");
    }
    if (text.startsWith(QChar(QChar::ByteOrderMark))) {
        text.remove(0, 1);
    }
    return text;
}

/// The encoding that the declaration names, in upper case; empty when it names none.
files::Result<QString> declaredEncoding(const QString &text)
{
    if (!text.startsWith(QLatin1String("<?xml")) || text.mid(5, 1).trimmed() == text.mid(5, 1)) {
        return QString();
    }
    // The whole declaration has to match: a parser that read another encoding out of it would see
    // another text than the scan.
    static const QRegularExpression declaration(
        QLatin1String(R"re(^<\?xml\s+version\s*=\s*(?:"1\.\d"|'1\.\d'))re"
                      R"re((?:\s+encoding\s*=\s*(?:"([A-Za-z][\w.-]*)"|'([A-Za-z][\w.-]*)'))?)re"
                      R"re((?:\s+standalone\s*=\s*(?:"(?:yes|no)"|'(?:yes|no)'))?\s*\?>)re"));
    constexpr int longestDeclaration = 256;
    const auto match = declaration.match(text.left(longestDeclaration));
    if (!match.hasMatch()) {
        return fail(ErrorCode::BadValue, "line 1: the XML declaration is malformed");
    }
    return (match.captured(1) + match.captured(2)).toUpper();
}

}  // namespace

files::Result<QString> decode(const QByteArray &bytes)
{
    const bool isUtf16 = bytes.startsWith("\xFF\xFE") || bytes.startsWith("\xFE\xFF");
    // Latin-1 gives every byte a character, which is enough for a declaration.
    auto encoding =
        isUtf16 ? files::Result<QString>(QStringLiteral("UTF-16"))
                : declaredEncoding(QString::fromLatin1(
                      bytes.startsWith("\xEF\xBB\xBF") ? bytes.mid(3, 256) : bytes.left(256)));
    if (!encoding) {
        return encoding;
    }
    files::Result<QString> text;
    if (isUtf16) {
        text = decodeWith("UTF-16", bytes);
    } else if (encoding->isEmpty() || *encoding == QLatin1String("UTF-8") ||
               *encoding == QLatin1String("US-ASCII")) {
        text = decodeWith("UTF-8", bytes);
    } else if (*encoding == QLatin1String("ISO-8859-1")) {
        text = decodeWith("ISO-8859-1", bytes);
    } else {
        return fail(ErrorCode::BadValue, "the file says that its encoding is " +
                                             encoding->toStdString() + "; save it as UTF-8");
    }
    if (text && text->contains(QChar(u'\0'))) {
        return fail(ErrorCode::BadValue, placeText(*text, text->indexOf(QChar(u'\0'))) +
                                             ": the text holds a zero character");
    }
    if (text && isUtf16) {
        if (const auto declared = declaredEncoding(*text);
            !declared || (!declared->isEmpty() && *declared != QLatin1String("UTF-16"))) {
            return fail(ErrorCode::BadValue,
                        "the file is UTF-16, but doesn't say so in its XML declaration");
        }
    }
    return text;
}

std::string placeText(const QString &text, qsizetype position)
{
    const auto before = text.left(static_cast<int>(position));
    return "line " + std::to_string(before.count(u'\n') + 1) + ", column " +
           std::to_string(before.size() - before.lastIndexOf(u'\n'));
}

}  // namespace xml
