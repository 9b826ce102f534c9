#pragma once
#include <cstdint>
#include <string>
#include <vector>

/// Each fuzz target builds its good inputs in code, so that the first run starts from files that
/// reach deep, and the repository holds no blobs. When the environment variable SPB_FUZZ_SEEDS
/// names a folder, they are written there before fuzzing starts.
std::vector<std::vector<std::uint8_t>> fuzzSeeds();
