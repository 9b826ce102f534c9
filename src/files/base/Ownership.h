#pragma once
#include <cstdlib>
#include <memory>

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

}  // namespace files
