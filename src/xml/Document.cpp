#include "xml/Document.h"

#include "xml/XmlText.h"

namespace xml
{

Result<QDomDocument> parse(const QByteArray &bytes, const Limits &limits, const QString &name)
{
    if (auto bounded = checkBounds(bytes, limits); !bounded) {
        return tl::unexpected<files::Error>(std::move(bounded).error());
    }
    const auto text = decode(bytes);
    if (!text) {
        return tl::unexpected<files::Error>(text.error());
    }
    QDomDocument document(name);
    QString why;
    int line = 0;
    int column = 0;
    // From text, not from bytes: so nothing is decoded a second time, in another way.
    if (!document.setContent(*text, &why, &line, &column)) {
        return files::fail(files::ErrorCode::BadValue, "line " + std::to_string(line) +
                                                           ", column " + std::to_string(column) +
                                                           ": " + why.toStdString());
    }
    return document;
}

}  // namespace xml
