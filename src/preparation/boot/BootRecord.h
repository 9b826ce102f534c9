#pragma once
#include "crypto/primitives/Bytes.h"
#include "preparation/boot/BootVersion.h"

namespace preparation
{

/// The longest role of a software component in a boot record, in characters.
inline constexpr std::size_t kLongestRole = 12;

/// A boot record: one software component of an attestation token (RFC 9783, 4.4.1) as a map in
/// CBOR (RFC 8949): role, version, signer and description of the measurement. The measurement
/// itself stands last, 32 zero bytes, which the loader overwrites with the image's hash.
/// @param role      1 to 12 characters
/// @param signerId  SHA-256 of the signer's public key, as in the image
std::vector<std::uint8_t> encodeBootRecord(std::string_view role, const BootVersion &version,
                                           const crypto::Digest &signerId);

}  // namespace preparation
