#pragma once
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

/// Each fuzz target builds its good inputs in code, so that the first run starts from files that
/// reach deep, and the repository holds no blobs. When the environment variable SPB_FUZZ_SEEDS
/// names a folder, they are written there before fuzzing starts.
std::vector<std::vector<std::uint8_t>> fuzzSeeds();

/// A broken claim is a crash, so that the fuzzer keeps the input.
inline void require(bool claim, int line = __builtin_LINE())
{
    if (!claim) {
        std::fprintf(stderr, "the claim of line %d is broken\n", line);
        std::abort();
    }
}
