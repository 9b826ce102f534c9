#include "obk/TemplateText.h"

#include "obk/TemplateReader.h"
#include "xml/Document.h"

#include <QStringList>

namespace obk
{

namespace
{

/// Depth of the template itself inside "Root", of its items and of their fields.
constexpr int kFormatDepth = 1;
constexpr int kItemDepth = 2;
constexpr int kFieldDepth = 3;

/// Walks over tags and notes where items keep their values.
class PlaceScan
{
public:
    explicit PlaceScan(const QByteArray &text) : m_text(text) {}

    std::vector<ItemPlace> run()
    {
        for (int at = m_text.indexOf('<'); at >= 0; at = m_text.indexOf('<', at)) {
            if (isAt(at, "<!--")) {
                at = behind("-->", at + 4);
            } else if (isAt(at, "<![CDATA[")) {
                at = behind("]]>", at);
            } else if (isAt(at, "<?")) {
                at = behind("?>", at);
            } else {
                at = oneTag(at);
            }
        }
        return std::move(m_places);
    }

private:
    [[nodiscard]] bool isAt(int at, const char *words) const
    {
        return qstrncmp(m_text.constData() + at, words, qstrlen(words)) == 0;
    }

    [[nodiscard]] int behind(const char *end, int from) const
    {
        const int found = m_text.indexOf(end, from);
        return found < 0 ? m_text.size() : found + static_cast<int>(qstrlen(end));
    }

    /// Behind the '>' of a tag; one inside quotes doesn't count.
    [[nodiscard]] int tagEnd(int at) const
    {
        char quote = 0;
        for (; at < m_text.size(); ++at) {
            const char c = m_text[at];
            if (quote != 0) {
                quote = c == quote ? char(0) : quote;
            } else if (c == '"' || c == '\'') {
                quote = c;
            } else if (c == '>') {
                return at + 1;
            }
        }
        return m_text.size();
    }

    [[nodiscard]] QByteArray tagName(int at) const
    {
        int end = at;
        while (end < m_text.size() && !strchr(" \t\r\n/>", m_text[end])) {
            ++end;
        }
        return m_text.mid(at, end - at);
    }

    int oneTag(int at)
    {
        const int end = tagEnd(at);
        if (isAt(at, "</")) {
            --m_depth;
            closed(tagName(at + 2), end);
            return end;
        }
        opened(tagName(at + 1), at, end);
        if (m_text[end - 1] == '>' && m_text[end - 2] == '/') {
            closed(tagName(at + 1), end);
        } else {
            ++m_depth;
        }
        return end;
    }

    void opened(const QByteArray &name, int start, int end)
    {
        static const QList<QByteArray> items = {"Text", "Data", "Permission", "Bool",
                                                "List", "File", "Output"};
        static const QList<QByteArray> imageItems = {"Param", "Output"};
        if (m_depth == kFormatDepth) {
            m_isImage = name == "McubootFormat";
        }
        if (m_depth == kItemDepth) {
            m_isItem = (m_isImage ? imageItems : items).contains(name);
            if (m_isItem) {
                m_places.push_back({end, m_text.indexOf('<', end), -1, -1});
            }
        }
        m_elementStart = m_depth == kFieldDepth ? start : m_elementStart;
    }

    void closed(const QByteArray &name, int end)
    {
        if (m_depth != kFieldDepth || !m_isItem) {
            return;
        }
        ItemPlace &place = m_places.back();
        if (name == "Name") {
            place.nameEnd = end;
            place.next = m_text.indexOf('<', end);
        } else if (name == "Value") {
            place.valueStart = m_elementStart;
            place.valueEnd = end;
        }
    }

    const QByteArray &m_text;
    std::vector<ItemPlace> m_places;
    int m_depth = 0;
    int m_elementStart = 0;
    bool m_isItem = false;
    bool m_isImage = false;
};

QByteArray escaped(const QString &value)
{
    QString text = value;
    text.replace(QLatin1Char('&'), QLatin1String("&amp;"))
        .replace(QLatin1Char('<'), QLatin1String("&lt;"))
        .replace(QLatin1Char('>'), QLatin1String("&gt;"))
        .replace(QLatin1Char('\r'), QLatin1String("&#13;"));
    if (!value.isEmpty() && value.trimmed().isEmpty()) {
        // A parser drops a text of blanks alone.
        return "<![CDATA[" + value.toUtf8() + "]]>";
    }
    return text.toUtf8();
}

/// What ends a line in this file.
QByteArray lineEnd(const QByteArray &text)
{
    const int at = text.indexOf('\n');
    if (at < 0) {
        return text.contains('\r') ? "\r" : "\n";
    }
    return at > 0 && text[at - 1] == '\r' ? "\r\n" : "\n";
}

/// Whether XML 1.0 (2.2) has all characters. The parser of the values lets others pass, but the
/// validator refuses the file the next time.
bool isXmlText(const QString &text)
{
    for (const uint c : text.toUcs4()) {
        const bool isControl = c < 0x20 && c != '\t' && c != '\n' && c != '\r';
        if (isControl || c == 0xFFFE || c == 0xFFFF || QChar::isSurrogate(c)) {
            return false;
        }
    }
    return true;
}

bool isSameItem(const ObDataItem &one, const ObDataItem &other)
{
    return one.kind == other.kind && one.name == other.name;
}

}  // namespace

std::vector<ItemPlace> findItems(const QByteArray &text)
{
    return PlaceScan(text).run();
}

void saveOBKeyProcess(const ItemPlace &place, const QString &value, QByteArray &text)
{
    const QByteArray element = "<Value>" + escaped(value) + "</Value>";
    if (place.valueStart >= 0) {
        text.replace(place.valueStart, place.valueEnd - place.valueStart, element);
        return;
    }
    // Where the elements stand on lines of their own this is the form that other versions of the
    // program write and expect, whatever ends the other lines.
    const bool isLaidOut = place.next - place.nameEnd >= 2;
    text.insert(place.next, element + (isLaidOut ? QByteArray("\r\n\t\t") : lineEnd(text)));
}

Result<Template> readTemplate(const QByteArray &text)
{
    const auto document = xml::parse(text);
    if (!document) {
        return tl::unexpected<files::Error>(document.error());
    }
    Template model;
    if (auto read = readRoot(document->documentElement().firstChild(), model); !read) {
        return tl::unexpected<files::Error>(std::move(read).error());
    }
    return model;
}

Result<QByteArray> withValues(const QByteArray &text, const std::vector<ObDataItem> &items,
                              const std::vector<std::optional<QString>> &values)
{
    auto before = readTemplate(text);
    const auto places = findItems(text);
    if (!before || before->items.size() != items.size() || places.size() != items.size() ||
        !std::equal(items.begin(), items.end(), before->items.begin(), isSameItem)) {
        return refuse(QStringLiteral("it no longer holds the items that were read from it"));
    }
    QByteArray changed = text;
    std::vector<ObDataItem> expected = std::move(before->items);
    for (std::size_t at = items.size(); at-- > 0;) {
        if (!values[at]) {
            continue;
        }
        if (!isXmlText(*values[at])) {
            return refuse(QStringLiteral("the value of \"%1\" has characters that XML can't hold")
                              .arg(items[at].nameText()));
        }
        saveOBKeyProcess(places[at], *values[at], changed);
        expected[at].value = values[at];
        const bool isData = expected[at].kind == ItemKind::Data && !expected[at].isParam;
        expected[at].slotValueSet |= isData;
        expected[at].obkSlotValueSet |= isData;
    }
    if (const auto after = readTemplate(changed); !after || after->items != expected) {
        return refuse(QStringLiteral("with the new values it would read in another way"));
    }
    return changed;
}

}  // namespace obk
