#pragma once
#include "crypto/primitives/EcKey.h"
#include "preparation/sealing/SealCipher.h"

#include <string_view>

namespace preparation
{

inline constexpr char kSignMagicText[] = "SPBSIGN1";
inline constexpr std::string_view kSignMagic = kSignMagicText;  ///< begins and ends the trailer
inline constexpr std::size_t kSignTrailerBytes = 128;
inline constexpr std::size_t kSignAuthenticated =
    56;  ///< bytes of the trailer that are signed, too

/// What stands behind a signed image.
struct SignTrailer {
    std::uint32_t imageVersion = 0;
    std::uint32_t signedSize = 0;  ///< bytes from the file's start
    std::uint32_t fileSize = 0;    ///< without the trailer
    std::uint8_t curve = 0;        ///< value of `Curve`
    std::uint8_t sizeKind = 0;
    Digest keyIdentifier{};
    crypto::RawSignature signature{};
};

using SignTrailerBytes = std::array<std::uint8_t, kSignTrailerBytes>;
SignTrailerBytes encodeSignTrailer(const SignTrailer &trailer);

/// Finds the trailer at the end of a file. The bytes may be hostile.
/// @return BadValue for a wrong magic at either end, an unknown curve, bytes that must be zero, or
///         sizes that don't agree with the file's
files::Result<SignTrailer> parseSignTrailer(ByteView file);

/// The digest that is signed: over the first `signedSize` bytes and the trailer up to the
/// signature.
/// @param trailer  128 bytes, or as many as are signed
files::Result<Digest> signDigest(ByteView signedBytes, ByteView trailer);

}  // namespace preparation
