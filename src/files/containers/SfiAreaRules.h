#pragma once
#include "files/base/Records.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace files
{

/// Checks the areas of an SFI image against each other: ranges inside the address space, overlaps
/// among `F` and among `E` areas (the last area takes no part), modules alone in their last Flash
/// word. The time grows with n log n.
/// @return the sentence of the first refusal, or nullopt
std::optional<std::wstring> refusalOfSfiAreas(std::span<const SegmentSFI> areas);

/// The same for an SSFI image, where only `F` areas are compared and ranges are checked.
std::optional<std::wstring> refusalOfSsfiAreas(std::span<const SegmentSFI> areas);

}  // namespace files
