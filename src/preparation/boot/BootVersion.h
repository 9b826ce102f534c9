#pragma once
#include "files/base/Result.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace preparation
{

/// Version of a boot image; 8 bytes in its header.
struct BootVersion {
    std::uint8_t major = 0;
    std::uint8_t minor = 0;
    std::uint16_t revision = 0;
    std::uint32_t build = 0;

    bool operator==(const BootVersion &) const = default;
};

/// Another image that this one needs, by its number, in at least that version.
struct BootDependency {
    std::uint8_t image = 0;
    BootVersion version;

    bool operator==(const BootDependency &) const = default;
};

/// Reads "1", "1.2", "1.2.3" or "1.2.3+4"; what isn't there is 0.
/// @return BadValue with the text
files::Result<BootVersion> parseBootVersion(std::string_view text);

/// "1.2.3+4".
std::string toText(const BootVersion &version);

/// Reads "(0, 1.2.3+4)", any number of them, with or without commas between.
/// @return BadValue with the text
files::Result<std::vector<BootDependency>> parseBootDependencies(std::string_view text);

/// The counter that a version stands for: major in the highest byte, then minor, then revision.
std::uint32_t securityCounterOf(const BootVersion &version);

}  // namespace preparation
