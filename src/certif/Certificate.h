#pragma once
#include "files/base/Result.h"

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

/// @file
/// One debug-authentication certificate as "Authenticated Debug Access Control" (Arm DEN0101,
/// version 1.0) lays it out: 212 bytes and extensions, numbers little-endian, coordinates and
/// signature big-endian.

namespace certif
{

/// Place of a certificate in its chain.
enum class Role : std::uint8_t { Root = 1, Intermediate = 2, Leaf = 3 };

inline constexpr std::size_t kSignedBytes = 148;       ///< what the signature covers
inline constexpr std::size_t kCertificateBytes = 212;  ///< without extensions
inline constexpr std::size_t kMaskBits = 128;

using Mask = std::array<std::uint8_t, 16>;         ///< bit 0 in the lowest bit of byte 0
using Identifier = std::array<std::uint8_t, 16>;   ///< lowest byte first
using PublicPoint = std::array<std::uint8_t, 64>;  ///< X then Y, 32 bytes each, big-endian
using Signature = std::array<std::uint8_t, 64>;    ///< r then s, 32 bytes each, big-endian

/// The fields of one certificate with a P-256 key.
struct Certificate {
    Role role = Role::Root;
    std::uint8_t usage = 1;
    std::uint16_t lifecycle = 0;
    std::uint16_t oemConstraint = 0;
    std::uint32_t socClass = 0;
    Identifier socId{};
    Mask permissions{};
    PublicPoint subjectKey{};
    std::vector<std::uint8_t> extensions;
    std::array<std::uint8_t, 32> extensionsDigest{};  ///< SHA-256; zeros without extensions
    Signature signature{};
};

/// The 148 bytes that the issuer signs.
std::array<std::uint8_t, kSignedBytes> signedBytes(const Certificate &certificate);

/// The whole certificate, signature and extensions included.
std::vector<std::uint8_t> encode(const Certificate &certificate);

/// Reads one certificate; the bytes must be exactly one.
/// @return Truncated, BadValue (another version, role, key type: named in the text) or WrongSize
files::Result<Certificate> parseCertificate(std::span<const std::uint8_t> bytes);

/// "ECDSA P-256" for 1, the standard's names for its other key types, else "key type N".
std::string keyTypeName(unsigned type);

/// The role, usage and lifecycle words that the form and the tables use; numbers for others.
std::string roleName(Role role);
std::string usageName(std::uint8_t usage);
std::string lifecycleName(std::uint16_t lifecycle);

/// Digits of a 128-bit number, highest first, without leading zeros: "0x1f".
std::string hexText(std::span<const std::uint8_t, 16> littleEndian);

}  // namespace certif
