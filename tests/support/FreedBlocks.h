#pragma once
#include <cstddef>
#include <cstdint>
#include <span>

/// Keeps every heap block that is freed while it lives, as it was when it was freed, so that a test
/// can look for secrets which nobody wiped. Only in programs that link FreedBlocks.cpp, which takes
/// the place of `free` and `realloc`; one at a time.
class FreedBlocks
{
public:
    FreedBlocks();
    ~FreedBlocks();
    FreedBlocks(const FreedBlocks &) = delete;
    FreedBlocks &operator=(const FreedBlocks &) = delete;

    /// How many freed blocks hold the bytes.
    [[nodiscard]] static std::size_t holding(std::span<const std::uint8_t> secret);
};
