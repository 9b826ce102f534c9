#pragma once
#include "files/base/Result.h"
#include "preparation/sealing/ImageFormat.h"

#include <string>

namespace preparation
{

inline constexpr std::size_t kSmiHeadBytes = 96;
inline constexpr std::size_t kSmiVersionBytes = 16;  ///< security version file
inline constexpr std::uint16_t kSmiHasCheck = 1;     ///< bit of the flags

/// A secure module image as it stands in a file; the views refer to the file's bytes. Nothing in it
/// is verified yet.
struct ParsedSmi {
    std::uint16_t flags = 0;
    std::uint32_t loadAddress = 0;
    std::uint32_t plainSize = 0;
    ByteView head;             ///< 96 bytes
    ByteView nonce;            ///< 16 bytes
    ByteView securityVersion;  ///< 16 bytes
    ByteView tag;              ///< 16 bytes
    ByteView check;            ///< 16 bytes, zeros without the flag
    ByteView reserved;         ///< 12 bytes, zeros
    ByteView data;             ///< encrypted
    ByteView padding;          ///< up to a multiple of 32 bytes

    [[nodiscard]] bool hasCheck() const { return (flags & kSmiHasCheck) != 0; }
};

/// Bytes of a file for a module of that size.
constexpr std::uint64_t smiFileBytes(std::uint64_t plainSize)
{
    return (kSmiHeadBytes + plainSize + kFlashWordBytes - 1) / kFlashWordBytes * kFlashWordBytes;
}

/// Splits a file. The bytes may be hostile.
/// @param what  names the file in the refusal: "SMI file 2"
/// @return BadValue for another magic or version; WrongSize for a length that isn't the head's
files::Result<ParsedSmi> parseSmi(ByteView file, const std::string &what);

}  // namespace preparation
