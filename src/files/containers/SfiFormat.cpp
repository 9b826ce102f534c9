#include "files/containers/SfiFormat.h"

#include <algorithm>

namespace files
{

namespace
{

/// Writes `count` bytes of a number, lowest first, and returns the place behind them.
template <typename Iterator>
Iterator putLe(Iterator out, std::uint32_t value, int count)
{
    for (int i = 0; i < count; ++i) {
        *out++ = static_cast<std::uint8_t>(value >> (8 * i));
    }
    return out;
}

}  // namespace

bool isSsfiLetter(std::uint8_t letter)
{
    return areaLabel(letter)[0] != '-';
}

bool isSfiLetter(std::uint8_t letter)
{
    return letter != letter::kA && isSsfiLetter(letter);
}

const char *areaLabel(std::uint8_t letter)
{
    switch (letter) {
    case letter::kFirmware:
        return "Firmware";
    case letter::kExternal:
        return "External";
    case letter::kModule:
    case letter::kFreeModule:
        return "Module";
    case letter::kOptionBytes:
        return "Configuration";
    case letter::kObk:
        return "OBkey";
    case letter::kKeyArea:
        return "Key";
    case letter::kPause:
        return "Pause";
    case letter::kResume:
        return "Resume";
    case letter::kSsfi:
        return "SSFI";
    case letter::kH:
        return "H";
    case letter::kA:
        return "A";
    default:
        return "-";
    }
}

PrefixBytes encodePrefix(const AreaPrefix &prefix)
{
    PrefixBytes bytes{};
    bytes[0] = prefix.letter;
    bytes[1] = prefix.imageVersion;
    auto out = putLe(bytes.begin() + 2, prefix.index, 2);
    out = putLe(out, prefix.dataSize, 4);
    out = putLe(out, prefix.address, 4);
    putLe(out, prefix.areaCount, 2);
    return bytes;
}

AreaPrefix readPrefix(ByteCursor &in)
{
    AreaPrefix prefix;
    prefix.letter = in.u8();
    prefix.imageVersion = in.u8();
    prefix.index = in.u16le();
    prefix.dataSize = in.u32le();
    prefix.address = in.u32le();
    prefix.areaCount = in.u16le();
    return prefix;
}

SfiHeadBytes encodeHead(std::uint16_t version, std::uint16_t areaCount,
                        std::span<const std::uint8_t, kNonceBytes> nonce)
{
    SfiHeadBytes bytes{};
    auto out = std::copy(kSfiMagic.begin(), kSfiMagic.end(), bytes.begin());
    out = putLe(out, version, 2);
    out = putLe(out, areaCount, 2);
    std::copy(nonce.begin(), nonce.end(), out);
    return bytes;
}

}  // namespace files
