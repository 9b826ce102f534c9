#pragma once
#include "files/base/Result.h"

#include <QByteArray>
#include <QString>

#include <cstddef>

namespace xml
{

template <typename T>
using Result = files::Result<T>;

/// What a file may ask of Qt's XML classes, which crash on deep nesting, take quadratic time over
/// attributes and fetch what a file names. The values given here are those of templates.
struct Limits {
    std::size_t bytes = std::size_t{1} << 20;  ///< whole file
    std::size_t depth = 64;                    ///< elements open at once
    std::size_t startTag = 4096;               ///< UTF-16 units from '<' to '>' of one start tag
    std::size_t attributes = 64;               ///< of one start tag
    /// Start tags, attributes, comments and the like in all: a tree takes half a KiB for each.
    std::size_t nodes = 50'000;
};

/// Reads an XML file whole and looks it over with checkBounds. Never blocks on a FIFO or a device.
/// @return the file's bytes as they are; NotFound, NotRegular, CannotOpen, ReadFailed, TooLarge,
/// and
///         what checkBounds gives
Result<QByteArray> readBounded(const QString &path, const Limits &limits = {});

/// One scan over the text, before any parser sees it. Refuses DOCTYPE and every other "<!" but
/// comments and CDATA, the schema-instance namespace and schemaLocation attributes (they make a
/// validator open files and addresses), processing instructions without a name, and what is beyond
/// the limits. Whether the text is well formed beyond that is the parsers' business.
/// Encodings: UTF-8, US-ASCII, ISO-8859-1, and UTF-16 with a byte order mark.
/// @return TooLarge beyond a limit, Truncated, or BadValue; line and column (from 1) in the text
Result<void> checkBounds(const QByteArray &bytes, const Limits &limits = {});

}  // namespace xml
