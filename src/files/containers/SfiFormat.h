#pragma once
#include "files/base/ByteCursor.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

/// @file
/// What is known of the containers, for readers, builder and tables alike. All numbers in them are
/// little-endian. `docs/formats.md` tells the whole formats.

namespace files
{

// Arrays, because each file may have its own copy of a literal: begin and end of one view could
// then belong to two of them.
inline constexpr char kSfiMagicText[] = "SFIMAGIC";
inline constexpr std::string_view kSfiMagic = kSfiMagicText;  ///< begins SFI, SFIx and SSFI images
inline constexpr char kSmiMagicText[] = "SMIMAGIC";
inline constexpr std::string_view kSmiMagic = kSmiMagicText;  ///< begins a secure module image
inline constexpr std::size_t kMagicBytes = 8;                 ///< of both

inline constexpr std::size_t kSfiHeadBytes = 28;   ///< in front of the first area
inline constexpr std::size_t kSsfiHeadBytes = 32;  ///< the same of an SSFI image
inline constexpr std::size_t kSsfiLongHeadBytes = 128;
inline constexpr std::uint16_t kSsfiLongHeadVersion = 65001;  ///< format version with the long head

inline constexpr std::size_t kNonceBytes = 16;        ///< image nonce, the end of the short heads
inline constexpr std::size_t kPrefixBytes = 14;       ///< area header up to the tag
inline constexpr std::size_t kTagBytes = 16;          ///< behind the prefix
inline constexpr std::size_t kCheckBytes = 16;        ///< behind the tag; not in SFI version 1
inline constexpr std::size_t kTrailerBytes = 16;      ///< behind the firmware of an external area
inline constexpr std::size_t kMaxAreas = 65535;       ///< what the count in the head can hold
inline constexpr std::size_t kObkHeadBytes = 12;      ///< three words in front of an OBK payload
inline constexpr std::uint64_t kFlashWordBytes = 32;  ///< programmed at once

/// Bytes in front of each area's data in an SFI image of format version 1 or 2.
constexpr std::size_t areaHeaderBytes(std::uint16_t version)
{
    return version == 1 ? kPrefixBytes + kTagBytes : kPrefixBytes + kTagBytes + kCheckBytes;
}

/// The letter of an area tells what it holds.
namespace letter
{
inline constexpr std::uint8_t kFirmware = 'F';
inline constexpr std::uint8_t kExternal = 'E';
inline constexpr std::uint8_t kModule = 'M';      ///< with a licence, or from an SMI file
inline constexpr std::uint8_t kFreeModule = 'm';  ///< without a licence
inline constexpr std::uint8_t kOptionBytes = 'C';
inline constexpr std::uint8_t kObk = 'O';
inline constexpr std::uint8_t kKeyArea = 'K';
inline constexpr std::uint8_t kPause = 'P';
inline constexpr std::uint8_t kResume = 'R';
inline constexpr std::uint8_t kSsfi = 'S';
inline constexpr std::uint8_t kH = 'H';
inline constexpr std::uint8_t kA = 'A';  ///< in SSFI images only
}  // namespace letter

/// Whether areas with this letter may stand in an SFI image, in an SSFI image.
bool isSfiLetter(std::uint8_t letter);
bool isSsfiLetter(std::uint8_t letter);

/// The word that tables show for an area; "-" for a letter that names none.
const char *areaLabel(std::uint8_t letter);

/// The readable and authenticated front of an area header.
struct AreaPrefix {
    std::uint8_t letter = 0;
    std::uint8_t imageVersion = 0;
    std::uint16_t index = 0;     ///< from 1
    std::uint32_t dataSize = 0;  ///< bytes
    std::uint32_t address = 0;   ///< 0 where an area has no destination
    std::uint16_t areaCount = 0;
};

/// Where the fields end in a prefix: how many bytes must be there to know one.
namespace prefix_end
{
inline constexpr std::size_t kLetter = 1;
inline constexpr std::size_t kImageVersion = 2;
inline constexpr std::size_t kIndex = 4;
}  // namespace prefix_end

using PrefixBytes = std::array<std::uint8_t, kPrefixBytes>;
using SfiHeadBytes = std::array<std::uint8_t, kSfiHeadBytes>;

PrefixBytes encodePrefix(const AreaPrefix &prefix);

/// Reads a prefix; fields that the bytes end before are 0.
AreaPrefix readPrefix(ByteCursor &in);

/// The head of an SFI image. @param nonce  as it goes into the head
SfiHeadBytes encodeHead(std::uint16_t version, std::uint16_t areaCount,
                        std::span<const std::uint8_t, kNonceBytes> nonce);

}  // namespace files
