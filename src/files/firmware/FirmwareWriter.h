#pragma once
#include "files/base/Records.h"
#include "files/base/SafeWriter.h"

#include <QFile>

#include <span>
#include <vector>

namespace files
{

/// A piece of an image on its way out; never empty.
struct Piece {
    std::uint32_t address = 0;
    std::span<const std::uint8_t> bytes;
};

/// What has bytes: a segment without any plays no part in the span of a file.
std::vector<Piece> piecesOf(const FileData &file);
/// The modules of a list, without licences.
std::vector<Piece> piecesOf(const FileMCSV &modules);

/// Takes the pieces that run past the end of the address space out of the list: text can't show
/// their addresses.
/// @return where they begin
std::vector<std::uint32_t> dropPiecesBeyondTheEnd(std::vector<Piece> &pieces);

/// Writes raw binary: the first piece's address is file offset 0. The list must be sorted.
/// @param padding  fills holes
/// @return bytes of the file; TooLarge for starts more than 0x1FFFFFFF apart, NoMemory,
/// WriteFailed. Until it
///         returns bytes the target is as it was. The text is the message
Result<std::int64_t> writeBinary(SafeWriter &writer, const std::vector<Piece> &pieces,
                                 std::uint8_t padding);

/// Writes Intel HEX. @param hasEnd  whether the end record stands behind the pieces
/// @return NoMemory or WriteFailed with the message
Result<void> writeHex(SafeWriter &writer, const std::vector<Piece> &pieces, bool hasEnd);

/// Writes S-records, all of the kind that the highest address needs. @return as above
Result<void> writeSrec(SafeWriter &writer, const std::vector<Piece> &pieces);

}  // namespace files

/// @file
/// The record writers behind `FileManager::SaveHexFile` and `FileManager::SaveSrecFile`, for
/// callers that have an open file of their own. Addresses are of bytes; `end` is that of the last
/// byte.

/// Writes `data` as the Intel HEX records of one segment; nothing when `end` < `start`.
/// A file that takes fewer bytes is closed.
/// @return always 1
int IntelSave(QFile *file, unsigned char *data, unsigned int start, unsigned int end);

/// Writes one Intel HEX data record.
/// @param offset   where the record's bytes begin in `data`
/// @param address  of the record; its low 16 bits are written
/// @param length   bytes, at most 255
/// @return nonzero when fewer characters were taken than the line holds
int put_rec(unsigned char *data, unsigned int offset, unsigned int address, unsigned int length,
            QFile *file);

/// Writes `data` as S-records of the kind that `topAddress` needs; nothing when `start` > `end`.
/// @return always 1
int MotorolaSave32(QFile *file, unsigned char *data, unsigned int start, unsigned int end,
                   unsigned int topAddress);

/// The sum of all bytes, modulo 2^32; 0 for none.
unsigned checksum(unsigned char *data, unsigned int size);
