#pragma once
#include <QByteArray>

/// The small head in front of a filtered flash layout, for loaders that expect one in front of
/// every image.
/// @param size      bytes of the head; fields that lie behind its end are left out
/// @param checksum  sum of the data's bytes
/// @param length    bytes of the data
/// @return zeros but for "VDR2" at 0x00, and little-endian words: checksum at 0x44, 0x00010000 at
///         0x48, length at 0x4C, 1 at 0x64
QByteArray createDummyHeader(int size, unsigned int checksum, unsigned int length);

/// Puts a 256-byte dummy header in front of the data.
void createSignedImage(QByteArray &data);
