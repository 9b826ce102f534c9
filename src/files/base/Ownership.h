#pragma once
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <span>

namespace files
{

/// Deleter for handles of C libraries: `std::unique_ptr<Elf, FreeWith<&elf_end>>`.
template <auto Free>
struct FreeWith {
    template <typename T>
    void operator()(T *handle) const noexcept
    {
        Free(handle);
    }
};

/// An array from `malloc`; record payloads are such arrays and are released with `free`.
template <typename T>
using MallocArray = std::unique_ptr<T[], FreeWith<&std::free>>;

/// A `malloc` copy, as record payloads are. Never null for want of bytes, only for want of memory.
/// @param spare  bytes behind the copy, set to 0
inline MallocArray<std::uint8_t> copyBytes(std::span<const std::uint8_t> bytes,
                                           std::size_t spare = 0)
{
    const std::size_t size = bytes.size() + spare;
    MallocArray<std::uint8_t> copy(
        static_cast<std::uint8_t *>(std::malloc(std::max<std::size_t>(size, 1))));
    if (copy) {
        std::copy(bytes.begin(), bytes.end(), copy.get());
        std::fill_n(copy.get() + bytes.size(), spare, std::uint8_t{0});
    }
    return copy;
}

}  // namespace files
