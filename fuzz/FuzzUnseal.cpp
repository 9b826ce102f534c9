// A hostile image and a hostile key: the first 16 bytes are the key, the rest is the image. Opening
// must not crash, and nothing but what the builder itself sealed may come out as authentic.
#include "FuzzSupport.h"
#include "preparation/ImageOpener.h"
#include "preparation/SfiRequestBuilder.h"

#include <algorithm>
#include <cstdlib>

namespace
{

using namespace preparation;

/// Good images of both versions and profiles, each with its key in front.
std::vector<Bytes> sealedInputs()
{
    std::vector<Bytes> inputs;
    for (int variant = 0; variant < 4; ++variant) {
        SfiRequestBuilder request;
        request.hash = (variant & 1) != 0;
        request.profile = (variant & 2) != 0 ? kProfileH5 : kProfileUsual;
        request.combined = true;
        request.ssfiArea(ramp(0, 1, 46), {1});
        request.module(0x08100000, {1, 2, 3}, {}, "ID").smi(smiFile(0x08200000, 5));
        request.obk(0x0FFD0000, 1, {1}).firmware(0x08000000, Bytes(200)).external(0x90000000, {1});
        request.regions.append(ExtBinInfo());
        request.ramSize = 600;
        request.token = 0x20000000;
        Bytes input = bytesOf(request.key);
        const Bytes image = bytesOf(request.build());
        input.insert(input.end(), image.begin(), image.end());
        inputs.push_back(std::move(input));
    }
    return inputs;
}

}  // namespace

std::vector<std::vector<std::uint8_t>> fuzzSeeds()
{
    return sealedInputs();
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const auto sealed = sealedInputs();
    const ByteView input(data, size);
    const std::size_t keyBytes = std::min(size, kKeyBytes);
    const auto opened = openImage(input.subspan(keyBytes), input.first(keyBytes));
    if (!opened) {
        return 0;
    }
    const bool ours = std::any_of(sealed.begin(), sealed.end(), [&input](const Bytes &good) {
        return std::ranges::equal(good, input);
    });
    if (opened->authentic != ours || opened->plain.empty() != !ours) {
        std::abort();
    }
    return 0;
}
