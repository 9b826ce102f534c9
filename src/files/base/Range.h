#pragma once
#include <cstdint>

namespace files
{

/// All 32-bit addresses; the first one behind them.
inline constexpr std::uint64_t kAddressSpace = std::uint64_t{1} << 32;

/// Addresses from `begin` up to, not including, `end`. 64 bits wide, so that an end at or above
/// 2^32 can be told from a small one.
struct Range {
    std::uint64_t begin = 0;
    std::uint64_t end = 0;

    static constexpr Range of(std::uint32_t address, std::uint64_t bytes)
    {
        return {address, std::uint64_t{address} + bytes};
    }

    /// With an end that is a 32-bit sum, wrap included, as the rule for merging files has it.
    static constexpr Range wrapping(std::uint32_t address, std::uint32_t bytes)
    {
        const std::uint32_t end = address + bytes;
        return {address, end};
    }

    [[nodiscard]] constexpr bool empty() const { return begin >= end; }
};

/// Whether two ranges that aren't empty share an address.
constexpr bool overlaps(const Range &left, const Range &right)
{
    return left.begin < right.end && right.begin < left.end;
}

}  // namespace files
