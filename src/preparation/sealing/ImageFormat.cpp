#include "preparation/sealing/ImageFormat.h"

#include <algorithm>

namespace preparation
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

PrefixBytes encodePrefix(const AreaPrefix &prefix)
{
    PrefixBytes bytes{};
    bytes[0] = prefix.type;
    bytes[1] = prefix.imageVersion;
    auto out = putLe(bytes.begin() + 2, prefix.index, 2);
    out = putLe(out, prefix.dataSize, 4);
    out = putLe(out, prefix.address, 4);
    putLe(out, prefix.areaCount, 2);
    return bytes;
}

HeadBytes encodeHead(std::uint16_t version, std::uint16_t areaCount, const NonceBytes &nonce)
{
    HeadBytes bytes{};
    auto out = std::copy_n(kMagic, kMagicBytes, bytes.begin());
    out = putLe(out, version, 2);
    out = putLe(out, areaCount, 2);
    std::copy(nonce.begin(), nonce.end(), out);
    return bytes;
}

const char *areaLabel(std::uint8_t type)
{
    switch (type) {
    case 'F':
        return "Firmware";
    case 'E':
        return "External";
    case 'M':
    case 'm':
        return "Module";
    case 'C':
        return "Configuration";
    case 'O':
        return "OBkey";
    case 'K':
        return "Key";
    case 'P':
        return "Pause";
    case 'R':
        return "Resume";
    case 'S':
        return "SSFI";
    case 'H':
        return "H";
    case 'A':
        return "A";
    default:
        return "-";
    }
}

}  // namespace preparation
