#pragma once
#include "certif/Certificate.h"

#include <QByteArray>
#include <QString>

#include <vector>

namespace certif
{

/// Certificates, root first: records of type 0x0201, each padded with zeros to a multiple of 4.
using Chain = std::vector<Certificate>;

/// A file never holds more; a larger one isn't looked at.
inline constexpr std::uint64_t kMostChainBytes = 1 << 20;
/// Nor does a chain; each certificate costs the check of a signature.
inline constexpr std::size_t kMostCertificates = 64;

std::vector<std::uint8_t> encodeChain(const Chain &chain);

/// Reads records until the bytes end.
/// @return Truncated, BadValue, TooLarge; the text names the record's number, from 1
files::Result<Chain> parseChain(std::span<const std::uint8_t> bytes);

/// Decodes Base64 texts that stand one behind the other, each with its own padding; line ends and
/// blanks between and inside them are tolerated.
/// @return BadDigit when anything else stands there
files::Result<QByteArray> decodeTexts(const QByteArray &text);

/// A chain or a single certificate, binary or as Base64 text: told apart by the first bytes.
files::Result<Chain> readChain(const QByteArray &content);

/// A file's bytes as they are. @return the system's words, or TooLarge above 1 MiB
files::Result<QByteArray> readText(const QString &path);

/// A file of certificates, binary or text. @return the words of `readText` or `readChain`
files::Result<Chain> readChainFile(const QString &path);

}  // namespace certif
