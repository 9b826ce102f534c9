#pragma once
#include "files/base/Wipe.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace obk
{

/// Wipes each block before it goes back, also the ones that a growing vector leaves behind.
template <typename T>
struct WipingAllocator {
    using value_type = T;

    WipingAllocator() = default;
    template <typename U>
    WipingAllocator(const WipingAllocator<U> &)
    {
    }

    T *allocate(std::size_t count) { return std::allocator<T>().allocate(count); }
    void deallocate(T *block, std::size_t count)
    {
        files::wipe(block, count * sizeof(T));
        std::allocator<T>().deallocate(block, count);
    }
    bool operator==(const WipingAllocator &) const { return true; }
};

/// Bytes that may hold keys or a password, and may grow.
using SecretBuffer = std::vector<std::uint8_t, WipingAllocator<std::uint8_t>>;

}  // namespace obk
