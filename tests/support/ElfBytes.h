#pragma once
#include <cstdint>
#include <string>
#include <vector>

/// What an ELF file is to hold; `elfBytes` lays it out: head, program headers, bytes of the
/// segments and sections in order, names, section table.
struct ElfPlan {
    struct Segment {
        std::uint32_t type = 1;
        std::uint32_t physical = 0;
        std::vector<std::uint8_t> bytes;
        std::uint32_t virtualAddress = 0;
        std::uint32_t extraMemory = 0;  ///< bytes that only memory has
    };
    struct Section {
        std::string name;
        std::uint32_t type = 1;
        std::vector<std::uint8_t> bytes;
        std::uint32_t link = 0;
        std::uint32_t entrySize = 0;
        std::uint32_t flags = 0;
        std::uint32_t bytesInMemory = 0;  ///< the size of a section without bytes (type 8)
    };
    bool is64 = false;
    bool isBigEndian = false;
    std::uint16_t type = 2;
    std::vector<Segment> segments;
    /// A null section goes ahead and the name table behind; none at all when empty.
    std::vector<Section> sections;
};

std::vector<std::uint8_t> elfBytes(const ElfPlan &plan);

/// Overwrites a little-endian number of `width` bytes.
std::vector<std::uint8_t> forged(std::vector<std::uint8_t> bytes, std::size_t at,
                                 std::uint64_t value, int width);

/// Entries of a symbol table, of RELA relocations, and one note, in file form.
std::vector<std::uint8_t> symbolBytes(std::uint32_t name, std::uint32_t value, std::uint32_t size,
                                      std::uint8_t info, std::uint16_t section,
                                      bool isBigEndian = false);
std::vector<std::uint8_t> relaBytes(std::uint32_t offset, std::uint32_t info, std::uint32_t addend);
std::vector<std::uint8_t> noteBytes(const std::string &name, std::uint32_t type,
                                    const std::vector<std::uint8_t> &descriptor);

std::vector<std::uint8_t> operator+(std::vector<std::uint8_t> a,
                                    const std::vector<std::uint8_t> &b);

/// A small executable with all kinds of tables.
ElfPlan usualElf();
