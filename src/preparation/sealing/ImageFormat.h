#pragma once
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

/// @file
/// The container of a protected image: sizes, type letters and the two fixed structures. All
/// numbers in it are little-endian. `docs/formats.md` tells the whole format.

namespace preparation
{

/// Bytes that belong to someone else.
using ByteView = std::span<const std::uint8_t>;

inline constexpr char kMagic[] = "SFIMAGIC";         ///< begins an image
inline constexpr char kSmiMagic[] = "SMIMAGIC";      ///< begins a secure module image
inline constexpr std::size_t kMagicBytes = 8;        ///< of both, without the terminator
inline constexpr std::size_t kHeadBytes = 28;        ///< in front of the first area
inline constexpr std::size_t kPrefixBytes = 14;      ///< area header up to the tag
inline constexpr std::size_t kTagBytes = 16;         ///< behind the prefix
inline constexpr std::size_t kCheckBytes = 16;       ///< behind the tag, version 2 only
inline constexpr std::size_t kNonceBytes = 16;       ///< image nonce in the head
inline constexpr std::size_t kKeyBytes = 16;         ///< key file
inline constexpr std::size_t kNonceFileBytes = 12;   ///< nonce file
inline constexpr std::size_t kTrailerBytes = 16;     ///< behind the firmware of an `E` area
inline constexpr std::size_t kModuleHeadBytes = 32;  ///< in front of a module
inline constexpr std::size_t kTokenAreaBytes = 16;   ///< data of `P` and `R`
inline constexpr std::size_t kMaxAreas = 65535;      ///< what the count in the head can hold
inline constexpr std::uint64_t kMaxImageBytes = 0x7FFFFFFF;
inline constexpr std::uint64_t kFlashWordBytes = 32;  ///< programmed at once
inline constexpr std::uint64_t kAddressSpace = std::uint64_t{1} << 32;

inline constexpr std::uint32_t kProfileUsual = 0xFF;  ///< all devices but VDR32H5
inline constexpr std::uint32_t kProfileH5 = 0x484;    ///< VDR32H5

/// Bytes in front of each area's data: 30 in version 1, 46 in version 2.
constexpr std::size_t areaHeaderBytes(std::uint16_t version)
{
    return version == 1 ? kPrefixBytes + kTagBytes : kPrefixBytes + kTagBytes + kCheckBytes;
}

/// The readable and authenticated front of an area header.
struct AreaPrefix {
    std::uint8_t type = 0;  ///< ASCII letter
    std::uint8_t imageVersion = 0;
    std::uint16_t index = 0;     ///< from 1
    std::uint32_t dataSize = 0;  ///< bytes
    std::uint32_t address = 0;   ///< 0 where an area has no destination
    std::uint16_t areaCount = 0;
};

using PrefixBytes = std::array<std::uint8_t, kPrefixBytes>;
using HeadBytes = std::array<std::uint8_t, kHeadBytes>;
using NonceBytes = std::array<std::uint8_t, kNonceBytes>;
using Tag = std::array<std::uint8_t, kTagBytes>;

PrefixBytes encodePrefix(const AreaPrefix &prefix);
HeadBytes encodeHead(std::uint16_t version, std::uint16_t areaCount, const NonceBytes &nonce);

/// The word that tables show for a type letter; "-" for a letter that names no area.
const char *areaLabel(std::uint8_t type);

}  // namespace preparation
