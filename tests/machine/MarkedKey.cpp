// Preloaded into a program: tells of every block that goes back to the heap with a key in it. The
// key is the file that KEY_MARKER names; of its bytes, the first 12 are enough.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <malloc.h>
#include <unistd.h>

namespace
{

constexpr std::size_t kMarkerSize = 12;

struct Marker {
    unsigned char bytes[kMarkerSize] = {};
    bool isKnown = false;

    Marker()
    {
        const char *const path = std::getenv("KEY_MARKER");
        const int file = path != nullptr ? ::open(path, O_RDONLY | O_CLOEXEC) : -1;
        isKnown = file >= 0 && ::read(file, bytes, kMarkerSize) == kMarkerSize;
        ::close(file);
    }
};

void look(const void *block)
{
    static const Marker marker;
    if (block == nullptr || !marker.isKnown) {
        return;
    }
    const std::size_t size = ::malloc_usable_size(const_cast<void *>(block));
    if (::memmem(block, size, marker.bytes, kMarkerSize) != nullptr) {
        char line[80];
        const int length = std::snprintf(line, sizeof line, "KEY in a freed block of %zu\n", size);
        static_cast<void>(!::write(STDERR_FILENO, line, static_cast<std::size_t>(length)));
    }
}

template <typename Function>
Function next(const char *name)
{
    return reinterpret_cast<Function>(::dlsym(RTLD_NEXT, name));
}

}  // namespace

extern "C" void free(void *block)
{
    static const auto real = next<void (*)(void *)>("free");
    look(block);
    real(block);
}

extern "C" void *realloc(void *block, std::size_t size)
{
    static const auto real = next<void *(*)(void *, std::size_t)>("realloc");
    if (block != nullptr && size > ::malloc_usable_size(block)) {
        look(block);  // it may move, and what stays behind is what was in it
    }
    return real(block, size);
}
