#pragma once
#include "files/base/Result.h"
#include "preparation/sealing/ImageFormat.h"

#include <string_view>

namespace preparation
{

inline constexpr char kSfuMagicText[] = "SFUH";
inline constexpr std::string_view kSfuMagic = kSfuMagicText;
inline constexpr std::size_t kSfuHeaderBytes = 64;
inline constexpr std::size_t kSfuPieceBytes = 4096;  ///< plain bytes of a piece, the last has fewer
inline constexpr std::uint16_t kSfuProtocol = 1;

/// The header file of a secure update; the views refer to its bytes. Nothing in it is verified yet.
struct ParsedSfu {
    std::uint16_t protocol = 0;
    std::uint16_t imageVersion = 0;
    std::uint32_t loadAddress = 0;
    std::uint32_t plainSize = 0;
    std::uint16_t pieceSize = 0;
    std::uint32_t pieces = 0;
    ByteView header;    ///< 64 bytes
    ByteView nonce;     ///< 16 bytes
    ByteView tag;       ///< 16 bytes
    ByteView reserved;  ///< 8 bytes, zeros
};

/// Pieces of an update of that size.
constexpr std::uint64_t sfuPieces(std::uint64_t plainSize)
{
    return (plainSize + kSfuPieceBytes - 1) / kSfuPieceBytes;
}

/// Bytes of the body: each piece has its tag behind it.
constexpr std::uint64_t sfuBodyBytes(std::uint64_t plainSize)
{
    return plainSize + sfuPieces(plainSize) * kTagBytes;
}

/// Reads a header file. The bytes may be hostile.
/// @return BadValue for another magic, protocol, header or piece size, no bytes, or a number of
///         pieces that isn't the size's; WrongSize for a file that hasn't 64 bytes
files::Result<ParsedSfu> parseSfuHeader(ByteView file);

}  // namespace preparation
