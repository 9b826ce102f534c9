#pragma once
#include <cstddef>
#include <functional>

/// @file
/// OpenSSL that gets no memory: each of its calls can fail then, which is the only way to see what
/// the callers make of it. A program that links this asks for all of OpenSSL's memory through it.

namespace failing_library
{

/// Runs something while one allocation of OpenSSL after the other fails, alone and with all behind
/// it. An own failure of memory in between is the runner's matter.
/// @param run   takes part in nothing but the operation; runs unharmed before
/// @param most  places that fail, evenly spread over all of them
/// @return places that failed
std::size_t failEverywhere(const std::function<void()> &run, std::size_t most = 400);

/// While it lives, OpenSSL gets what it wants: for a look at what an operation gave.
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

}  // namespace failing_library
