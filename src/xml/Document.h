#pragma once
#include "xml/Bounds.h"

#include <QDomDocument>

namespace xml
{

/// Reads a document, after checkBounds. The XML declaration, if there is one, is its first child.
/// @param name  the name that the document object gets
/// @return BadValue with line and column (from 1) when the text isn't well formed, and what
///         checkBounds gives
Result<QDomDocument> parse(const QByteArray &bytes, const Limits &limits = {},
                           const QString &name = {});

}  // namespace xml
