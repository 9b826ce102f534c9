#include "crypto/primitives/WipedHeap.h"

#include "files/base/Wipe.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <malloc.h>
#include <openssl/crypto.h>

namespace crypto
{

namespace
{

// All blocks are the C library's own, so whoever has one may also give it to free().
void *take(std::size_t size, const char *, int)
{
    return std::malloc(size);
}

void giveBack(void *block, const char *, int)
{
    files::wipe(block, block != nullptr ? ::malloc_usable_size(block) : 0);
    std::free(block);
}

void *resize(void *block, std::size_t size, const char *file, int line)
{
    if (block == nullptr || size == 0) {
        giveBack(block, file, line);
        return size != 0 ? take(size, file, line) : nullptr;
    }
    // Never in the C library's way, which leaves the old block as it was.
    void *const moved = take(size, file, line);
    if (moved != nullptr) {
        std::memcpy(moved, block, std::min(size, ::malloc_usable_size(block)));
        giveBack(block, file, line);
    }
    return moved;
}

}  // namespace

bool wipeFreedBlocks()
{
    return CRYPTO_set_mem_functions(&take, &resize, &giveBack) == 1;
}

}  // namespace crypto
