#pragma once
#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace files
{

/// What the rules look at in an area of a protected image.
struct AreaExtent {
    std::uint8_t letter = 0;
    std::uint32_t address = 0;
    std::uint32_t size = 0;  ///< bytes of the area's data
};

/// The trailer of an external area, which is no part of its firmware.
inline constexpr std::uint32_t kExternalTrailer = 16;

/// Checks the areas of an SFI image against each other: ranges inside the address space, overlaps
/// among `F` and among `E` areas (the last area takes no part), modules alone in their last Flash
/// word. The time grows with n log n.
/// @return the sentence of the first refusal, or nullopt
std::optional<std::wstring> refusalOfSfiAreas(std::span<const AreaExtent> areas);

/// The same for an SSFI image, where only `F` areas are compared and ranges are checked.
std::optional<std::wstring> refusalOfSsfiAreas(std::span<const AreaExtent> areas);

}  // namespace files
