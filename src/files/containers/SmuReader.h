#pragma once
#include "files/base/Records.h"
#include "files/base/Result.h"

#include <cstdint>
#include <span>

namespace files
{

/// Reads a secure module image of the MCUboot kind: head, then two blocks of tagged values. The
/// format has no refusal of its own: what the bytes end before is 0 or isn't listed.
/// @param file                  all bytes of the file
/// @param outProtectedMissing  whether the head counts protected values and their block isn't there
/// @return NoMemory, with the message
Result<RecordOwner<FileSMU>> readSmu(std::span<const std::uint8_t> file, bool *outProtectedMissing);

}  // namespace files
