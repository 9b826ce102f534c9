#pragma once
#include <cstdint>
#include <vector>

/// A segment as a test writes it down: address and bytes.
struct Piece {
    std::uint32_t address = 0;
    std::vector<std::uint8_t> bytes;

    bool operator==(const Piece &) const = default;
};
