#pragma once
#include "files/base/Result.h"

#include <QByteArray>
#include <QString>

namespace xml
{

/// Decodes an XML file, so that scan and parser see the same text: UTF-8 (also without a word about
/// it), US-ASCII and ISO-8859-1 as the declaration says, UTF-16 by its byte order mark. The mark is
/// not part of the text.
/// @return BadValue for another encoding, a malformed declaration, bytes that aren't of the
/// encoding,
///         or a zero character
files::Result<QString> decode(const QByteArray &bytes);

/// "line 3, column 14" of a UTF-16 position, both from 1.
std::string placeText(const QString &text, qsizetype position);

}  // namespace xml
