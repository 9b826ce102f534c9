#pragma once
#include "support/ImageBytes.h"

#include <string_view>
#include <vector>

/// One area to be written by `sfiBytes` or `ssfiBytes`.
struct AreaBytes {
    char letter = 'F';
    std::uint32_t address = 0;
    std::uint32_t size = 0;  ///< data bytes, filled with the letter
    std::uint8_t imageVersion = 3;
};

inline void appendAreas(ImageBytes &out, const std::vector<AreaBytes> &areas, bool isLong)
{
    std::uint32_t index = 0;
    for (const AreaBytes &area : areas) {
        out.u8(static_cast<std::uint8_t>(area.letter)).u8(area.imageVersion).u16le(++index);
        out.u32le(area.size).u32le(area.address);
        out.u16le(static_cast<std::uint32_t>(areas.size())).fill(16, 0x71);
        if (isLong) {
            out.fill(16, 0x72);
        }
        out.fill(area.size, static_cast<std::uint8_t>(area.letter));
    }
}

/// An SFI image without real encryption: good structure, made-up tags and data.
inline ImageBytes sfiBytes(const std::vector<AreaBytes> &areas, std::uint16_t version = 1)
{
    ImageBytes out;
    out.text("SFIMAGIC").u16le(version).u16le(static_cast<std::uint32_t>(areas.size()));
    out.fill(16, 0x4E);
    appendAreas(out, areas, version == 2);
    return out;
}

/// The same for SSFI; format version 65001 has the long head.
inline ImageBytes ssfiBytes(const std::vector<AreaBytes> &areas, std::uint16_t version = 1)
{
    ImageBytes out;
    out.text("SFIMAGIC").u16le(version).u32le(0x01020304);
    out.u16le(static_cast<std::uint32_t>(areas.size())).fill(16, 0x4E);
    if (version == 65001) {
        out.fill(96, 0x55);
    }
    appendAreas(out, areas, true);
    return out;
}
