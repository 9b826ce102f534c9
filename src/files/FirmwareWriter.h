#pragma once
#include <QFile>

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
