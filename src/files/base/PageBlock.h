#pragma once
#include "files/base/Ownership.h"

#include <cstddef>
#include <cstdint>

namespace files
{

/// An uninitialised block for bulk data, released with `free`. One of a mebibyte or more begins on
/// a page, because `read()` into a large `malloc` block, which begins 16 bytes behind a page, is
/// nearly four times slower; and it asks for large pages, as below.
/// @return null when memory is short
MallocArray<std::uint8_t> allocateBlock(std::size_t size);

/// Asks the system for pages of 2 MiB under a block from `malloc` that is going to be filled: the
/// first use of each small page costs a fault, which together take as long as the data themselves.
/// Only a wish; blocks below 4 MiB are left alone. The block may still grow by `realloc`.
void preferLargePages(void *block);

}  // namespace files
