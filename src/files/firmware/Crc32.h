#pragma once

/// CRC-32 of IEEE 802.3 (reflected polynomial 0xEDB88320), as zip and Ethernet have it.
/// @param size  bytes of `data`
/// @return the sum; 0 for no bytes
unsigned CRC32(unsigned char *data, unsigned int size);
