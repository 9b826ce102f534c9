#include "support/ScarceMemory.h"

#include <cstdlib>
#include <new>
#include <utility>

namespace
{

constexpr std::size_t kSmallestThrown = 4096;

bool g_isCounting = false;
std::size_t g_count = 0;
std::size_t g_first = 0;
bool g_forEver = false;
std::size_t g_smallest = 0;

bool mayHave(std::size_t size, std::size_t smallest = g_smallest)
{
    if (!g_isCounting || size < smallest) {
        return true;
    }
    ++g_count;
    return g_first == 0 || g_count < g_first || (g_count > g_first && !g_forEver);
}

}  // namespace

ScarceMemory::ScarceMemory(std::size_t first, bool forEver, std::size_t smallest)
{
    g_count = 0;
    g_first = first;
    g_forEver = forEver;
    g_smallest = smallest;
    g_isCounting = true;
}

ScarceMemory::~ScarceMemory()
{
    g_isCounting = false;
}

ScarceMemory::Pause::Pause() : m_wasCounting(std::exchange(g_isCounting, false)) {}

ScarceMemory::Pause::~Pause()
{
    g_isCounting = m_wasCounting;
}

std::size_t ScarceMemory::count()
{
    return g_count;
}

// The linker's names for what stands in the way and for what is behind it.
// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp,readability-identifier-naming)
extern "C" {
void *__real_malloc(std::size_t size);
void *__real_calloc(std::size_t count, std::size_t size);
void *__real_realloc(void *block, std::size_t size);
void *__real_aligned_alloc(std::size_t alignment, std::size_t size);
void *__real__Znwm(std::size_t size);
void *__real__Znam(std::size_t size);
void *__real__ZnwmRKSt9nothrow_t(std::size_t size, const std::nothrow_t &tag);
void *__real__ZnamRKSt9nothrow_t(std::size_t size, const std::nothrow_t &tag);

void *__wrap_malloc(std::size_t size)
{
    return mayHave(size) ? __real_malloc(size) : nullptr;
}

void *__wrap_calloc(std::size_t count, std::size_t size)
{
    return mayHave(count * size) ? __real_calloc(count, size) : nullptr;
}

void *__wrap_realloc(void *block, std::size_t size)
{
    return mayHave(size) ? __real_realloc(block, size) : nullptr;
}

void *__wrap_aligned_alloc(std::size_t alignment, std::size_t size)
{
    return mayHave(size) ? __real_aligned_alloc(alignment, size) : nullptr;
}

void *__wrap__Znwm(std::size_t size)
{
    return mayHave(size, kSmallestThrown) ? __real__Znwm(size) : throw std::bad_alloc();
}

void *__wrap__Znam(std::size_t size)
{
    return mayHave(size, kSmallestThrown) ? __real__Znam(size) : throw std::bad_alloc();
}

void *__wrap__ZnwmRKSt9nothrow_t(std::size_t size, const std::nothrow_t &tag)
{
    return mayHave(size) ? __real__ZnwmRKSt9nothrow_t(size, tag) : nullptr;
}

void *__wrap__ZnamRKSt9nothrow_t(std::size_t size, const std::nothrow_t &tag)
{
    return mayHave(size) ? __real__ZnamRKSt9nothrow_t(size, tag) : nullptr;
}
}
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp,readability-identifier-naming)
