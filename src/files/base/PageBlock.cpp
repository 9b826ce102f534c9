#include "files/base/PageBlock.h"

#include <cstdlib>
#include <malloc.h>
#include <sys/mman.h>

namespace files
{

namespace
{

constexpr std::size_t kPage = 4096;
/// What the allocator keeps ahead of a block.
constexpr std::size_t kHeader = 2 * sizeof(std::size_t);
constexpr std::size_t kLargeBlock = std::size_t{1024} * 1024;
constexpr std::size_t kLargePage = std::size_t{2} * 1024 * 1024;

}  // namespace

MallocArray<std::uint8_t> allocateBlock(std::size_t size)
{
    MallocArray<std::uint8_t> block;
    if (size < kLargeBlock) {
        block.reset(static_cast<std::uint8_t *>(std::malloc(size == 0 ? 1 : size)));
        return block;
    }
    if (size > SIZE_MAX - kPage) {
        return block;
    }
    // aligned_alloc wants a multiple of the alignment.
    const std::size_t rounded = (size + kPage - 1) / kPage * kPage;
    block.reset(static_cast<std::uint8_t *>(std::aligned_alloc(kPage, rounded)));
    if (block) {
        preferLargePages(block.get());
    }
    return block;
}

void preferLargePages(void *block)
{
    const std::size_t size = ::malloc_usable_size(block);
    if (size < 2 * kLargePage) {
        return;
    }
    // The whole mapping of the block, its header included: a part of another kind would make two
    // mappings of it, and then `realloc` copies the block instead of moving its pages.
    const auto start = reinterpret_cast<std::uintptr_t>(block);
    const std::size_t ahead = kHeader + (start - kHeader) % kPage;
    const std::size_t bytes = (ahead + size + kPage - 1) / kPage * kPage;
    static_cast<void>(::madvise(static_cast<std::uint8_t *>(block) - ahead, bytes, MADV_HUGEPAGE));
}

}  // namespace files
