#pragma once
#include "crypto/primitives/EcKey.h"
#include "preparation/sealing/SealCipher.h"

#include <string>
#include <string_view>
#include <vector>

/// @file
/// The licence file: what one chip needs to take firmware in, made by a token.

namespace preparation
{

inline constexpr std::string_view kLicenceMagic = "SPBLICN1";
inline constexpr std::size_t kLicenceBytes = 284;
inline constexpr std::size_t kLicenceSigned = 220;  ///< bytes in front of the signature
inline constexpr std::size_t kLicenceBound = 164;   ///< bytes that go into the wrapping key
inline constexpr std::size_t kLicenceIdentifierRoom = 16;
inline constexpr std::size_t kLicenceDeviceRoom = 24;

struct Licence {
    std::uint8_t index = 0;  ///< of the firmware in its token, from 1
    std::string identifier;  ///< of the firmware, 1 to 15 bytes
    std::string device;      ///< at most 24 bytes
    std::uint32_t left = 0;  ///< licences that the token had left behind this one
    std::array<std::uint8_t, 12> nonce{};
    Digest chipIdentifier{};  ///< SHA-256 of the chip's `SubjectPublicKeyInfo`
    std::array<std::uint8_t, 64> ephemeralPoint{};  ///< X, then Y, big-endian
    std::array<std::uint8_t, 24> wrappedKey{};
    Digest keyIdentifier{};  ///< SHA-256 of the signing key's `SubjectPublicKeyInfo`
    crypto::RawSignature signature{};
};

/// All 284 bytes; identifier and device must have their sizes.
std::vector<std::uint8_t> encodeLicence(const Licence &licence);

/// Reads a licence. The bytes may be hostile.
/// @return BadMagic, WrongSize, BadVersion, BadValue with a sentence that names field and number
files::Result<Licence> parseLicence(ByteView file);

}  // namespace preparation
