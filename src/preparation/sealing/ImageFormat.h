#pragma once
#include "files/base/Range.h"
#include "files/containers/SfiFormat.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

/// @file
/// The builder's share of a protected image. What readers know of it, too, stands in
/// `files/containers`.

namespace preparation
{

namespace letter = files::letter;
using files::areaHeaderBytes;
using files::areaLabel;
using files::AreaPrefix;
using files::encodeHead;
using files::encodePrefix;
using files::kAddressSpace;
using files::kCheckBytes;
using files::kFlashWordBytes;
using files::kMagicBytes;
using files::kMaxAreas;
using files::kNonceBytes;
using files::kObkHeadBytes;
using files::kPrefixBytes;
using files::kSfiMagic;
using files::kSmiMagic;
using files::kTagBytes;
using files::kTrailerBytes;
using files::PrefixBytes;

/// Bytes that belong to someone else.
using ByteView = std::span<const std::uint8_t>;

inline constexpr std::size_t kHeadBytes = files::kSfiHeadBytes;
inline constexpr std::size_t kKeyBytes = 16;         ///< key file
inline constexpr std::size_t kNonceFileBytes = 12;   ///< nonce file
inline constexpr std::size_t kModuleHeadBytes = 32;  ///< in front of a module
inline constexpr std::size_t kTokenAreaBytes = 16;   ///< data of a pause and of a resume area
inline constexpr std::uint64_t kMaxImageBytes = 0x7FFFFFFF;

inline constexpr std::uint32_t kProfileUsual = 0xFF;  ///< all devices but VDR32H5
inline constexpr std::uint32_t kProfileH5 = 0x484;    ///< VDR32H5

using HeadBytes = files::SfiHeadBytes;
using NonceBytes = std::array<std::uint8_t, kNonceBytes>;
using Tag = std::array<std::uint8_t, kTagBytes>;

}  // namespace preparation
