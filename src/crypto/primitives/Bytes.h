#pragma once
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace crypto
{

/// Bytes that belong to someone else.
using ByteView = std::span<const std::uint8_t>;

/// A SHA-256 or HMAC-SHA-256 value.
using Digest = std::array<std::uint8_t, 32>;

}  // namespace crypto
