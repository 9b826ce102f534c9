#pragma once
#include <cstdint>
#include <string>
#include <vector>

/// One Intel HEX record with a right checksum and a line feed.
std::string intelLine(unsigned type, unsigned offset, const std::vector<std::uint8_t> &data);

/// One S-record (`kind` '0' to '9') with a right checksum and a line feed.
std::string srecordLine(char kind, std::uint32_t address, const std::vector<std::uint8_t> &data);

/// `count` bytes that differ from their neighbours.
std::vector<std::uint8_t> patternBytes(std::size_t count, unsigned seed = 1);
