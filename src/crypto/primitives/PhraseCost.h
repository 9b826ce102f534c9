#pragma once
#include "crypto/primitives/Bytes.h"
#include "files/base/Result.h"

#include <cstdint>

namespace crypto
{

/// The most rounds of a key derivation that are run for a pass phrase: a few seconds. The file
/// itself says how many it wants (RFC 8018, RFC 7914), and could ask for hours.
inline constexpr std::uint64_t kMostPhraseRounds = 10'000'000;

/// Looks at all locked private keys (PKCS#8) in PEM text, without deriving anything.
/// @return TooLarge with both numbers when one of them asks for more rounds
files::Result<void> checkPhraseCost(ByteView pem);

}  // namespace crypto
