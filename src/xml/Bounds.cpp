#include "xml/Bounds.h"

#include "files/base/FileReader.h"
#include "xml/XmlText.h"

#include <QFile>
#include <QStringView>

#include <cstdint>

namespace xml
{

using files::ErrorCode;
using files::fail;

namespace
{

/// Walks from tag to tag. It sees what a parser would see as far as the text is well formed, and a
/// parser stops where it isn't.
class Scan
{
public:
    Scan(const QString &text, const Limits &limits) : m_text(text), m_limits(limits) {}

    Result<void> run()
    {
        while ((m_at = m_text.indexOf(u'<', m_at)) >= 0) {
            if (auto tag = oneTag(); !tag) {
                return tag;
            }
        }
        return {};
    }

private:
    [[nodiscard]] bool isAt(const char *words) const
    {
        return QStringView(m_text).mid(m_at).startsWith(QLatin1String(words));
    }

    /// Whether a name stands there, up to white space or a "?".
    [[nodiscard]] bool isNameAt(int at) const
    {
        const int from = at;
        for (; at < m_text.size() && !m_text[at].isSpace() && m_text[at] != u'?'; ++at) {
            const QChar sign = m_text[at];
            const bool canStart = sign.isLetter() || sign == u'_' || sign == u':';
            const bool canFollow = sign.isDigit() || sign.isMark() || sign == u'-' || sign == u'.';
            if (!canStart && (at == from || !canFollow)) {
                return false;
            }
        }
        return at > from;
    }

    [[nodiscard]] tl::unexpected<files::Error> refuse(ErrorCode code, const std::string &why) const
    {
        return fail(code, placeText(m_text, m_at) + ": " + why);
    }

    /// Goes behind the next `end`.
    Result<void> skipTo(const char *end, const char *what)
    {
        const auto found = m_text.indexOf(QLatin1String(end), m_at);
        if (found < 0) {
            return refuse(ErrorCode::Truncated, std::string(what) + " is not closed");
        }
        m_at = found + static_cast<int>(qstrlen(end));
        return {};
    }

    Result<void> count(std::size_t nodes)
    {
        m_nodes += nodes;
        if (m_nodes > m_limits.nodes) {
            return refuse(ErrorCode::TooLarge, "more than " + std::to_string(m_limits.nodes) +
                                                   " elements and attributes");
        }
        return {};
    }

    Result<void> oneTag()
    {
        if (isAt("</")) {
            m_depth -= m_depth > 0 ? 1 : 0;
            return skipTo(">", "an end tag");
        }
        if (auto counted = count(1); !counted) {
            return counted;
        }
        if (isAt("<!--")) {
            m_at += 4;  // "<!-->" closes nothing
            return skipTo("-->", "a comment");
        }
        if (isAt("<![CDATA[")) {
            return skipTo("]]>", "a CDATA part");
        }
        if (isAt("<!")) {
            return refuse(ErrorCode::BadValue, "document types (DOCTYPE) are not allowed");
        }
        if (isAt("<?")) {
            // Of Qt's parsers, one takes any sign for the name, and a schema would call that valid.
            if (!isNameAt(m_at + 2)) {
                return refuse(ErrorCode::BadValue, "a processing instruction has no name");
            }
            return skipTo("?>", "a processing instruction");
        }
        return startTag();
    }

    Result<void> startTag();
    Result<void> checkAttribute(QStringView name, QStringView value) const;

    const QString &m_text;
    const Limits &m_limits;
    int m_at = 0;
    std::size_t m_depth = 0;
    std::size_t m_nodes = 0;
};

QStringView lastWord(QStringView words)
{
    words = words.trimmed();
    auto from = words.size();
    while (from > 0 && !words[from - 1].isSpace()) {
        --from;
    }
    return words.mid(from);
}

/// A name's part behind its prefix.
QStringView localName(QStringView name)
{
    const auto colon = name.lastIndexOf(u':');
    return colon < 0 ? name : name.mid(colon + 1);
}

Result<void> Scan::checkAttribute(QStringView name, QStringView value) const
{
    if (localName(name).endsWith(QLatin1String("chemaLocation"))) {
        return refuse(ErrorCode::BadValue, "schemaLocation attributes are not allowed");
    }
    // A reference such as "&#45;" would hide the namespace from this scan, not from a parser.
    if (name.startsWith(QLatin1String("xmlns")) &&
        (value.contains(u'&') || value.contains(QLatin1String("XMLSchema-instance")))) {
        return refuse(ErrorCode::BadValue, "the schema-instance namespace is not allowed");
    }
    return {};
}

Result<void> Scan::startTag()
{
    const auto tag = QStringView(m_text).mid(m_at, static_cast<qsizetype>(m_limits.startTag));
    std::size_t attributes = 0;
    QStringView name;
    qsizetype wordsFrom = 1;
    qsizetype at = 1;
    for (; at < tag.size() && tag[at] != u'>'; ++at) {
        if (tag[at] == u'=') {
            name = lastWord(tag.mid(wordsFrom, at - wordsFrom));
            if (++attributes > m_limits.attributes) {
                return refuse(ErrorCode::TooLarge, "an element with more than " +
                                                       std::to_string(m_limits.attributes) +
                                                       " attributes");
            }
        } else if (tag[at] == u'"' || tag[at] == u'\'') {
            const auto close = tag.indexOf(tag[at], at + 1);
            const auto valueEnd = close < 0 ? tag.size() : close;
            if (auto allowed = checkAttribute(name, tag.mid(at + 1, valueEnd - at - 1)); !allowed) {
                return allowed;
            }
            at = valueEnd;
            wordsFrom = valueEnd + 1;
        }
    }
    if (at >= tag.size()) {
        const bool isCut = m_at + tag.size() >= m_text.size();
        return refuse(isCut ? ErrorCode::Truncated : ErrorCode::TooLarge,
                      isCut ? "a start tag is not closed"
                            : "a start tag longer than " + std::to_string(m_limits.startTag) +
                                  " characters");
    }
    const bool isEmptyElement = tag[at - 1] == u'/';
    if (auto counted = count(attributes); !counted) {
        return counted;
    }
    if (m_depth >= m_limits.depth) {
        return refuse(ErrorCode::TooLarge,
                      "elements nested deeper than " + std::to_string(m_limits.depth));
    }
    m_depth += isEmptyElement ? 0 : 1;
    m_at += static_cast<int>(at) + 1;
    return {};
}

}  // namespace

Result<void> checkBounds(const QByteArray &bytes, const Limits &limits)
{
    const auto size = static_cast<std::size_t>(bytes.size());
    if (size > limits.bytes) {
        return fail(ErrorCode::TooLarge, "the file has " + std::to_string(size) +
                                             " bytes, more than " + std::to_string(limits.bytes));
    }
    const auto text = decode(bytes);
    if (!text) {
        return tl::unexpected<files::Error>(text.error());
    }
    return Scan(*text, limits).run();
}

Result<QByteArray> readBounded(const QString &path, const Limits &limits)
{
    QFile file;
    if (auto opened = files::openForReading(file, path); !opened) {
        return tl::unexpected<files::Error>(std::move(opened).error());
    }
    const auto whole = files::readAll(file, limits.bytes);
    if (!whole) {
        return tl::unexpected<files::Error>(whole.error());
    }
    QByteArray bytes(reinterpret_cast<const char *>(whole->span().data()),
                     static_cast<int>(whole->size()));
    if (auto bounded = checkBounds(bytes, limits); !bounded) {
        return tl::unexpected<files::Error>(std::move(bounded).error());
    }
    return bytes;
}

}  // namespace xml
