#include "support/HexLines.h"

#include <cstdio>

namespace
{

std::string hexText(const std::vector<std::uint8_t> &bytes)
{
    std::string text;
    for (const std::uint8_t byte : bytes) {
        char pair[3];
        std::snprintf(pair, sizeof pair, "%02X", static_cast<unsigned>(byte));
        text += pair;
    }
    return text;
}

std::uint8_t sumOf(const std::vector<std::uint8_t> &bytes)
{
    unsigned sum = 0;
    for (const std::uint8_t byte : bytes) {
        sum += byte;
    }
    return static_cast<std::uint8_t>(sum);
}

}  // namespace

std::string intelLine(unsigned type, unsigned offset, const std::vector<std::uint8_t> &data)
{
    std::vector<std::uint8_t> bytes = {
        static_cast<std::uint8_t>(data.size()), static_cast<std::uint8_t>(offset >> 8),
        static_cast<std::uint8_t>(offset), static_cast<std::uint8_t>(type)};
    bytes.insert(bytes.end(), data.begin(), data.end());
    bytes.push_back(static_cast<std::uint8_t>(-sumOf(bytes)));
    return ":" + hexText(bytes) + "\n";
}

std::string srecordLine(char kind, std::uint32_t address, const std::vector<std::uint8_t> &data)
{
    const int width = kind == '3' || kind == '7' ? 4 : kind == '2' || kind == '8' ? 3 : 2;
    std::vector<std::uint8_t> bytes = {
        static_cast<std::uint8_t>(data.size() + static_cast<std::size_t>(width) + 1)};
    for (int i = width - 1; i >= 0; --i) {
        bytes.push_back(static_cast<std::uint8_t>(address >> (8 * i)));
    }
    bytes.insert(bytes.end(), data.begin(), data.end());
    bytes.push_back(static_cast<std::uint8_t>(~sumOf(bytes)));
    return std::string("S") + kind + hexText(bytes) + "\n";
}

std::vector<std::uint8_t> patternBytes(std::size_t count, unsigned seed)
{
    std::vector<std::uint8_t> bytes(count);
    std::uint32_t state = seed * 2654435761U + 1;
    for (std::uint8_t &byte : bytes) {
        state = state * 1664525U + 1013904223U;
        byte = static_cast<std::uint8_t>(state >> 24);
    }
    return bytes;
}
