#pragma once
#include <cstddef>

/// Lets the program's own allocations fail, where our code calls for them: those that answer with
/// null
/// (`malloc` and its kin, `new (std::nothrow)`) from a chosen size on, those that throw from 4 KiB
/// on. What Qt and OpenSSL ask for themselves always succeeds. For one thread.
///
/// The linker puts these in the way of the real ones, see CMakeLists.txt.
class ScarceMemory
{
public:
    /// @param first    the allocation that fails, counted from 1; 0: none does
    /// @param forEver  all behind it fail, too
    /// @param smallest bytes of the least one that may answer with null
    ScarceMemory(std::size_t first, bool forEver, std::size_t smallest = 4096);
    ~ScarceMemory();
    ScarceMemory(const ScarceMemory &) = delete;
    ScarceMemory &operator=(const ScarceMemory &) = delete;

    /// While it lives, a test's own allocations neither count nor fail.
    class Pause
    {
    public:
        Pause();
        ~Pause();
        Pause(const Pause &) = delete;
        Pause &operator=(const Pause &) = delete;

    private:
        bool m_wasCounting;
    };

    /// Allocations so far.
    [[nodiscard]] static std::size_t count();
};
