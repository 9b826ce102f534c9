#pragma once
#include "certif/Certificate.h"

#include <QByteArray>

#include <string>
#include <vector>

namespace certif
{

/// Certificates, root first: records of type 0x0201, each padded with zeros to a multiple of 4.
using Chain = std::vector<Certificate>;

/// A file never holds more; a larger one isn't looked at.
inline constexpr std::uint64_t kMostChainBytes = 1024 * 1024;

std::vector<std::uint8_t> encodeChain(const Chain &chain);

/// Reads records until the bytes end.
/// @return Truncated, BadValue; the text names the record's number, from 1
files::Result<Chain> parseChain(std::span<const std::uint8_t> bytes);

/// Decodes Base64 texts that stand one behind the other, each with its own padding; line ends and
/// blanks between and inside them are tolerated.
/// @return BadDigit when anything else stands there
files::Result<QByteArray> decodeTexts(const QByteArray &text);

/// A chain or a single certificate, binary or as Base64 text: told apart by the first bytes.
files::Result<Chain> readChain(const QByteArray &content);

/// What a device would make of one certificate of a chain.
struct Step {
    bool issuerMatches = false;  ///< the signature fits the subject key above (of a root: its own)
    Mask remaining{};            ///< rights that are left after this certificate
    std::vector<std::string> faults;  ///< sentences; each makes the chain useless, or a right of it
};

/// Walks a chain as a device does, from the root down.
/// @return one step for each certificate
std::vector<Step> examine(const Chain &chain);

}  // namespace certif
