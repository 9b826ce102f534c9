#pragma once
#include <cstdint>
#include <span>
#include <vector>

namespace files
{

/// Reads an unsigned little-endian number; the span's static length is the bounds check.
constexpr std::uint16_t readU16le(std::span<const std::uint8_t, 2> bytes)
{
    return static_cast<std::uint16_t>(bytes[0] | bytes[1] << 8);
}

constexpr std::uint32_t readU32le(std::span<const std::uint8_t, 4> bytes)
{
    return static_cast<std::uint32_t>(bytes[0]) | static_cast<std::uint32_t>(bytes[1]) << 8 |
           static_cast<std::uint32_t>(bytes[2]) << 16 | static_cast<std::uint32_t>(bytes[3]) << 24;
}

/// Appends an unsigned number to a vector-like container of bytes, lowest byte first.
template <typename Bytes>
void appendU16le(Bytes &out, std::uint16_t value)
{
    using Byte = typename Bytes::value_type;
    out.push_back(static_cast<Byte>(value & 0xFF));
    out.push_back(static_cast<Byte>(value >> 8));
}

template <typename Bytes>
void appendU32le(Bytes &out, std::uint32_t value)
{
    appendU16le(out, static_cast<std::uint16_t>(value & 0xFFFF));
    appendU16le(out, static_cast<std::uint16_t>(value >> 16));
}

}  // namespace files
