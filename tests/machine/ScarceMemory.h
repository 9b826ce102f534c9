#pragma once
#include <cstddef>

/// Lets the program's own allocations of 4 KiB and more fail: `malloc` and its kin and `new`, where
/// our code calls them. What Qt and OpenSSL ask for themselves always succeeds. For one thread.
///
/// The linker puts these in the way of the real ones, see CMakeLists.txt.
class ScarceMemory
{
public:
    /// @param first    the allocation that fails, counted from 1; 0: none does
    /// @param forEver  all behind it fail, too
    ScarceMemory(std::size_t first, bool forEver);
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
