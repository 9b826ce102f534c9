#pragma once
#include "certif/Chain.h"

#include <QByteArray>
#include <QFile>

#include <string>

namespace adac
{

/// A file of at most 1 MiB. @return the reader's error with the path in front
files::Result<QByteArray> readFile(const std::string &path);

/// All certificates of a file, binary or as text; the path stands in front of an error's words.
files::Result<certif::Chain> readChainFile(const std::string &path);

/// The bytes of a Qt array, still its own.
inline std::span<const std::uint8_t> spanOf(const QByteArray &bytes)
{
    return {reinterpret_cast<const std::uint8_t *>(bytes.constData()),
            static_cast<std::size_t>(bytes.size())};
}

}  // namespace adac
