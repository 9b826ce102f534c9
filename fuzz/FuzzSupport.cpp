#include "FuzzSupport.h"

#include <cstdlib>
#include <fstream>

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    const char *folder = std::getenv("SPB_FUZZ_SEEDS");
    if (folder == nullptr) {
        return 0;
    }
    int number = 0;
    for (const auto &seed : fuzzSeeds()) {
        std::ofstream out(std::string(folder) + "/seed-" + std::to_string(number++),
                          std::ios::binary);
        out.write(reinterpret_cast<const char *>(seed.data()),
                  static_cast<std::streamsize>(seed.size()));
    }
    return 0;
}
