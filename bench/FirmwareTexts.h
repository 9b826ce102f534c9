#pragma once
#include <cstddef>
#include <string>

/// Intel HEX text of `payload` bytes at 0x08000000 in records of `recordBytes`.
std::string denseIntelText(std::size_t payload, std::size_t recordBytes);

/// S3 records of 32 bytes, otherwise as above.
std::string denseSRecordText(std::size_t payload);

/// S3 records of 4 bytes, each a segment of its own, from the highest address down; neighbours are
/// `distance` bytes apart (below 4 they overlap).
std::string descendingText(std::size_t segments, std::size_t distance);
