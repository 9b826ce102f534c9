#pragma once
#include "files/base/Records.h"
#include "files/base/Result.h"

#include <span>

namespace files
{

/// Checks the areas of an SFI image against each other: ranges inside the address space, overlaps
/// among `F` and among `E` areas (the last area takes no part), modules alone in their last Flash
/// word. The time grows with n log n.
/// @return BadValue for a range that can't be compared, Overlap, or Refused for a shared Flash
/// word;
///         the text is the message
Result<void> checkSfiAreas(std::span<const SegmentSFI> areas);

/// The same for an SSFI image, where only `F` areas are compared and ranges are checked.
Result<void> checkSsfiAreas(std::span<const SegmentSFI> areas);

}  // namespace files
