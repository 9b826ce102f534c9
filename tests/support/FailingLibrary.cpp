#include "support/FailingLibrary.h"

#include <cstdlib>
#include <utility>

#include <openssl/crypto.h>
#include <openssl/err.h>

namespace
{

bool g_isCounting = false;
std::size_t g_count = 0;
std::size_t g_first = 0;
bool g_forEver = false;

bool mayHave()
{
    if (!g_isCounting) {
        return true;
    }
    ++g_count;
    return g_first == 0 || g_count < g_first || (g_count > g_first && !g_forEver);
}

void *take(std::size_t size, const char *, int)
{
    return mayHave() ? std::malloc(size) : nullptr;
}

void *resize(void *block, std::size_t size, const char *, int)
{
    if (size == 0) {
        std::free(block);
        return nullptr;
    }
    return mayHave() ? std::realloc(block, size) : nullptr;
}

void giveBack(void *block, const char *, int)
{
    std::free(block);
}

/// Before OpenSSL asks for its first block; later it would refuse.
[[maybe_unused]] const int kIsInstalled = CRYPTO_set_mem_functions(&take, &resize, &giveBack);

std::size_t runWith(const std::function<void()> &run, std::size_t first, bool forEver)
{
    g_count = 0;
    g_first = first;
    g_forEver = forEver;
    g_isCounting = true;
    run();
    g_isCounting = false;
    ERR_clear_error();
    return g_count;
}

}  // namespace

failing_library::Pause::Pause() : m_wasCounting(std::exchange(g_isCounting, false)) {}

failing_library::Pause::~Pause()
{
    ERR_clear_error();
    g_isCounting = m_wasCounting;
}

std::size_t failing_library::failEverywhere(const std::function<void()> &run, std::size_t most)
{
    run();  // what OpenSSL keeps for good isn't part of the operation
    const std::size_t places = runWith(run, 0, false);
    const std::size_t step = places / most + 1;
    std::size_t tried = 0;
    for (std::size_t at = 1; at <= places; at += step) {
        runWith(run, at, false);
        runWith(run, at, true);
        ++tried;
    }
    return kIsInstalled == 1 ? tried : 0;
}
