#pragma once
#include "files/base/Result.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace files
{

/// The two text syntaxes of firmware; the first record of a text decides, not the file's name.
enum class HexSyntax { Unknown, IntelHex, SRecord };

/// Most characters of a line that are looked at together, its line feed included; what follows
/// counts as a line of its own.
inline constexpr std::size_t kMostLineCharacters = 399;

/// What one line of text means.
struct HexRecord {
    enum class Kind {
        Nothing,      ///< no record, or one without meaning here
        Data,         ///< `size` bytes at `value`, HEX bases not yet added
        EndOfData,    ///< closes the open segment; more may follow
        SegmentBase,  ///< `value` is the new 8086 segment base
        LinearBase,   ///< `value` is the new linear base
    };
    Kind kind = Kind::Nothing;
    std::uint32_t value = 0;
    std::size_t size = 0;  ///< bytes of data
    /// `size` bytes, all of them checked against the record's checksum.
    std::array<std::uint8_t, 256> data = {};
};

/// Decodes one line of Intel HEX. Upper and lower case alike; what follows the checksum is ignored,
/// and a line that doesn't begin with ':' is Nothing. The count isn't compared with what a record
/// type needs: a missing byte of a base counts as 0.
/// @param line  at most `kMostLineCharacters`
/// @return BadDigit (a line cut short too), BadChecksum, BadValue; the text is the final message
Result<HexRecord> decodeIntelLine(std::span<const std::uint8_t> line);

/// Decodes one S-record, which must begin with 'S'; otherwise as above.
Result<HexRecord> decodeSRecordLine(std::span<const std::uint8_t> line);

}  // namespace files
