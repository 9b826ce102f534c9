#pragma once
#include "crypto/primitives/Bytes.h"
#include "files/base/Result.h"

#include <vector>

namespace preparation
{

using crypto::ByteView;

/// How the end of a slot is laid out; goes by the flash and by how the boot loader upgrades.
struct BootSlot {
    std::uint32_t size = 0;               ///< bytes of the whole slot
    std::uint32_t align = 1;              ///< bytes that flash writes at once: 1, 2, 4, 8, 16 or 32
    std::uint32_t maxAlign = 8;           ///< the same of the slot that takes most: 8, 16 or 32
    std::uint32_t maxSectors = 128;       ///< the most sectors a slot has
    bool overwriteOnly = false;           ///< the loader doesn't swap, so no states of sectors
    std::uint32_t encryptedKeyBytes = 0;  ///< what the trailer keeps for each of two keys; 0: none
    std::uint8_t erased = 0xFF;           ///< what an erased byte of flash reads as: 0 or 0xFF
};

/// Bytes that the trailer takes at the end of the slot: states of sectors (three writes for each),
/// two keys, sizes and flags, 16 bytes of magic.
std::size_t trailerBytes(const BootSlot &slot);

/// Fills the slot: erased bytes, then the trailer with its magic.
/// @param isConfirmed  sets the flag of an image that stays; loaders that only overwrite have none
/// @return TooLarge when image and trailer don't fit the slot
files::Result<void> padToSlot(std::vector<std::uint8_t> &image, const BootSlot &slot,
                              bool isConfirmed);

/// What stands behind an image.
enum class BootRest {
    None,       ///< nothing: the image isn't padded
    Padded,     ///< padding and trailer
    Confirmed,  ///< likewise, with the flag set
};

/// Reads padding and trailer. All that is neither magic nor flag must be erased.
/// @return BadMagic or BadValue
files::Result<BootRest> readBootRest(ByteView rest);

}  // namespace preparation
