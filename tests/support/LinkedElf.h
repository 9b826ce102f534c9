#pragma once
#include <cstdint>
#include <string>
#include <vector>

/// A 32-bit little-endian ELF file as a linker makes it: segments are runs of sections. A null
/// section goes ahead and the name table behind; the section table ends the file.
struct LinkedElf {
    struct Section {
        std::string name;
        std::uint32_t address = 0;
        std::vector<std::uint8_t> bytes;
        std::uint32_t type = 1;
        std::uint32_t gap = 0;            ///< bytes 0xA5 ahead of it
        std::uint32_t bytesInMemory = 0;  ///< the size of a section without bytes (type 8)
    };
    struct Segment {
        std::size_t first = 0;  ///< index into `sections`
        std::size_t count = 1;
        std::uint32_t physical = 0;
        std::uint32_t type = 1;
        bool hasHead = false;  ///< begins at offset 0 of the file
    };
    std::vector<Section> sections;
    std::vector<Segment> segments;

    [[nodiscard]] std::vector<std::uint8_t> bytes() const;
};

/// Code, initial data loaded behind it, memory without bytes and tables without an address.
LinkedElf linkedFirmware();
