#pragma once
#include "crypto/primitives/Bytes.h"
#include "files/base/Result.h"

#include <cstdint>
#include <string>
#include <vector>

namespace imgtool
{

/// The largest image that is read, in bytes.
inline constexpr std::uint32_t kLargestFile = std::uint32_t{256} << 20;

/// A firmware file as one piece of memory.
struct Firmware {
    std::uint32_t address = 0;  ///< of the first byte; 0 for a file without addresses
    std::vector<std::uint8_t> bytes;
};

/// Reads Intel HEX or S-records (.hex, .srec, .s19, .s28, .s37, .mot), ELF (.elf, .axf, .out, .o,
/// .so: what is loaded, at its physical address), or else raw binary.
/// @param filler  fills holes
/// @param limit   in bytes, from the first one to the last
/// @return a sentence with the file's name; TooLarge above the limit, Overlap for bytes that stand
///         twice
files::Result<Firmware> readFirmware(const std::string &path, std::uint8_t filler,
                                     std::uint32_t limit);

/// Writes Intel HEX (.hex), S-records (.srec, .s19, .s28, .s37, .mot) or else raw binary.
/// @param address  of the first byte, for the first two. @return a sentence with the file's name
files::Result<void> writeFirmware(const std::string &path, std::uint32_t address,
                                  crypto::ByteView bytes);

/// Whether both paths lead to one file that exists.
bool isSameFile(const std::string &one, const std::string &other);

}  // namespace imgtool
