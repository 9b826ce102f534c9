#pragma once
#include "files/firmware/OutputBuffer.h"

#include <cstdint>
#include <span>

namespace files
{

/// The number of address bytes in a file's S-records: 2 for S1 and S9, 3 for S2 and S8, 4 for S3
/// and S7.
enum class SRecordWidth { Two = 2, Three = 3, Four = 4 };

/// The kind that can hold every address up to `topAddress`.
SRecordWidth srecordWidth(std::uint32_t topAddress);

/// Appends one Intel HEX record, upper case. @param data  at most 255 bytes
void appendIntelRecord(OutputBuffer &out, std::uint8_t type, std::uint16_t offset,
                       std::span<const std::uint8_t> data);

/// Appends a segment as Intel HEX data records of 32 bytes, in blocks of 256 with an extended
/// linear address record ahead of each block above 64 KiB. The last block is filled up with records
/// of length 0, which all readers skip: files have always looked like this.
/// @param start  address of the first byte; start + data.size() is at most 2^32
void appendIntelSegment(OutputBuffer &out, std::uint32_t start, std::span<const std::uint8_t> data);

/// Appends a segment as S-records of 32 bytes: count and address in lower case, data and checksum
/// in upper case. Limits as above.
void appendSRecordSegment(OutputBuffer &out, std::uint32_t start,
                          std::span<const std::uint8_t> data, SRecordWidth width);

/// The record that ends a file of this kind.
void appendSRecordEnd(OutputBuffer &out, SRecordWidth width);

}  // namespace files
