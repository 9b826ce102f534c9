#include "files/firmware/Crc32.h"

#include <array>
#include <cstdint>

namespace
{

consteval std::array<std::uint32_t, 256> makeTable()
{
    constexpr std::uint32_t kPolynomial = 0xEDB88320;
    std::array<std::uint32_t, 256> table = {};
    for (std::uint32_t i = 0; i < table.size(); ++i) {
        std::uint32_t rest = i;
        for (int bit = 0; bit < 8; ++bit) {
            rest = rest >> 1 ^ ((rest & 1) != 0 ? kPolynomial : 0);
        }
        table[i] = rest;
    }
    return table;
}

constexpr std::array<std::uint32_t, 256> poly8_lookup = makeTable();

}  // namespace

unsigned CRC32(unsigned char *data, unsigned int size)
{
    std::uint32_t sum = 0xFFFFFFFF;
    for (unsigned int i = 0; i < size; ++i) {
        sum = sum >> 8 ^ poly8_lookup[(sum ^ data[i]) & 0xFF];
    }
    return ~sum;
}
