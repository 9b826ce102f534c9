#pragma once
#include "files/firmware/HexRecord.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace files
{

/// A data record as nearly all lines hold one.
struct QuickRecord {
    std::uint32_t address = 0;   ///< HEX bases not yet added
    std::size_t size = 0;        ///< bytes of data
    std::size_t characters = 0;  ///< of the line with its end; 0 when the line isn't of this kind
};

/// Room for the data of a record and the checksum behind it.
using RecordRoom = std::span<std::uint8_t, 256>;

/// Decodes a line if it is a faultless data record with data and with nothing but "\n" or "\r\n"
/// behind it. All other lines, faulty ones too, are for `decodeIntelLine`, which explains them.
/// @param line  the characters from the line's start on
/// @param room  takes the data; bytes behind them are overwritten
QuickRecord quickIntelRecord(std::span<const std::uint8_t, kMostLineCharacters> line,
                             RecordRoom room);

/// The same for `S1` to `S3` records and `decodeSRecordLine`.
QuickRecord quickSRecord(std::span<const std::uint8_t, kMostLineCharacters> line, RecordRoom room);

}  // namespace files
