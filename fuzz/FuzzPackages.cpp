#include "FuzzSupport.h"

#include "preparation/PackageInputs.h"
#include "preparation/sfu/SfuSealer.h"
#include "preparation/sign/SignVerifier.h"
#include "preparation/smi/ClearElf.h"
#include "preparation/smi/SmiSealer.h"
#include "preparation/ssp/SspSealer.h"

#include <algorithm>

namespace
{

using preparation::ByteView;

const Bytes kKey(16, 7);
const Bytes kModule = ramp(9, 5, 40);
constexpr std::uint32_t kModuleAddress = 0x08004000 + 32;

void require(bool claim)
{
    if (!claim) {
        __builtin_trap();
    }
}

Bytes seed(std::uint8_t kind, const QByteArray &file)
{
    Bytes bytes = {kind};
    bytes.insert(bytes.end(), file.begin(), file.end());
    return bytes;
}

/// Whatever is authentic holds what its head counts.
void openAny(std::uint8_t kind, ByteView file, std::optional<ByteView> key)
{
    if (kind == 0) {
        const auto opened = preparation::openSmi(file, key);
        require(!opened || opened->verdict != preparation::Verdict::Authentic ||
                opened->plain.size() == opened->parsed.plainSize);
    } else if (kind == 1) {
        const std::size_t header = std::min<std::size_t>(file.size(), 64);
        const auto opened = preparation::openSfu(file.first(header), file.subspan(header), key);
        require(!opened || opened->verdict != preparation::Verdict::Authentic ||
                opened->plain.size() == opened->parsed.plainSize);
    } else if (kind == 2) {
        const auto opened = preparation::openSsp(file, key);
        require(!opened || opened->payload.size() == 0 || opened->payload.size() == 152);
    } else if (kind == 3) {
        const auto opened = preparation::openSigned(file, nullptr);
        require(!opened || opened->trailer.signedSize <= file.size());
    } else {
        const auto clear = preparation::ClearElf::make(file, {".module", kModuleAddress, kModule});
        require(!clear || clear->bytes().size() >= static_cast<int>(file.size()));
    }
}

}  // namespace

std::vector<std::vector<std::uint8_t>> fuzzSeeds()
{
    const Bytes nonce(12, 1);
    const Bytes longNonce(16, 1);
    const Bytes firmware(5000, 3);
    const auto smi = preparation::buildSmi({kModule, kModuleAddress, true, kKey, nonce, longNonce});
    const auto sfu = preparation::buildSfu({firmware, 0x08000000, 3, kKey, nonce});
    const auto ssp = preparation::buildSsp({Bytes(152, 1), kKey, longNonce, {1, {}}});
    preparation::SignTrailer trailer;
    trailer.curve = 1;
    const auto sign = preparation::encodeSignTrailer(trailer);
    const Bytes plain = elfOf({0x08004000, {{".a", Bytes(32, 1)}, {".module", kModule}}, false});
    const Bytes loaded =
        elfOf({0x08004000, {{".a", Bytes(32, 1)}, {".module", kModule}, {".b", {1}}}, true});
    return {seed(0, smi.value()), seed(1, sfu.value()),
            seed(2, ssp.value()), Bytes{3} + Bytes(sign.begin(), sign.end()),
            Bytes{4} + plain,     Bytes{4} + loaded};
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size == 0) {
        return 0;
    }
    openAny(data[0] % 5, {data + 1, size - 1}, ByteView(kKey));
    openAny(data[0] % 4, {data + 1, size - 1}, std::nullopt);
    return 0;
}
