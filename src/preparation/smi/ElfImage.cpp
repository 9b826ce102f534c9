#include "preparation/smi/ElfImage.h"

#include "files/firmware/ElfFile.h"

#include <QBuffer>

#include <algorithm>

namespace preparation
{

namespace
{

using files::ErrorCode;
using files::fail;

// Where the fields that change stand in the head.
constexpr std::size_t kSegmentsOffsetAt = 28;
constexpr std::size_t kSectionsOffsetAt = 32;
constexpr std::size_t kSegmentCountAt = 44;

Elf32_Phdr narrow(const files::ElfSegment &from)
{
    Elf32_Phdr segment = {};
    segment.p_type = from.header.headerType;
    segment.p_offset = static_cast<std::uint32_t>(from.fileOffset);
    segment.p_vaddr = static_cast<std::uint32_t>(from.header.virtualAddress);
    segment.p_paddr = static_cast<std::uint32_t>(from.header.physicalAddress);
    segment.p_filesz = static_cast<std::uint32_t>(from.header.fileSize);
    segment.p_memsz = static_cast<std::uint32_t>(from.header.memorySize);
    segment.p_flags = from.header.headerFlags;
    segment.p_align = static_cast<std::uint32_t>(from.header.align);
    return segment;
}

Elf32_Shdr narrow(const section_header &from)
{
    Elf32_Shdr section = {};
    section.sh_name = from.nameOffset;
    section.sh_type = from.sectionType;
    section.sh_flags = static_cast<std::uint32_t>(from.sectionFlags);
    section.sh_addr = static_cast<std::uint32_t>(from.sectionAddress);
    section.sh_offset = static_cast<std::uint32_t>(from.fileOffset);
    section.sh_size = static_cast<std::uint32_t>(from.sectionSize);
    section.sh_link = from.link;
    section.sh_info = from.info;
    section.sh_addralign = static_cast<std::uint32_t>(from.addrAlign);
    section.sh_entsize = static_cast<std::uint32_t>(from.entrySize);
    return section;
}

Elf32_Ehdr narrow(const Elf64_Ehdr &from)
{
    Elf32_Ehdr head = {};
    head.e_phoff = static_cast<std::uint32_t>(from.e_phoff);
    head.e_shoff = static_cast<std::uint32_t>(from.e_shoff);
    head.e_phnum = from.e_phnum;
    head.e_shnum = from.e_shnum;
    head.e_ehsize = from.e_ehsize;
    head.e_phentsize = from.e_phentsize;
    head.e_shentsize = from.e_shentsize;
    head.e_shstrndx = from.e_shstrndx;
    return head;
}

}  // namespace

files::Result<ElfImage> ElfImage::open(ByteView file)
{
    if (file.size() > UINT32_MAX / 2) {
        return fail(ErrorCode::TooLarge, "The ELF file is larger than 2 GiB");
    }
    // A view: nothing is copied until the image's own bytes are.
    QByteArray view = QByteArray::fromRawData(reinterpret_cast<const char *>(file.data()),
                                              static_cast<int>(file.size()));
    QBuffer device(&view);
    device.open(QIODevice::ReadOnly);
    const auto elf = files::ElfFile::load(device);
    if (!elf || elf->head().elfClass != ELFCLASS32) {
        return fail(ErrorCode::BadValue, "The file is no 32-bit ELF file");
    }
    ElfImage image;
    image.isBigEndian = elf->head().encoding == ELFDATA2MSB;
    image.head = narrow(elf->head().fields);
    if (image.head.e_ehsize != sizeof(Elf32_Ehdr) || elf->segments().empty() ||
        elf->sections().empty() || elf->sections().size() != image.head.e_shnum) {
        return fail(ErrorCode::BadValue, "The ELF file lacks one of its tables");
    }
    for (const auto &segment : elf->segments()) {
        image.segments.push_back(narrow(segment));
    }
    for (const auto &section : elf->sections()) {
        image.sections.push_back(narrow(section));
        image.names.push_back(section.name);
    }
    image.bytes.assign(file.begin(), file.end());
    return image;
}

std::uint32_t ElfImage::u32(std::size_t at) const
{
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        value |= static_cast<std::uint32_t>(bytes[at + i]) << (isBigEndian ? 24 - 8 * i : 8 * i);
    }
    return value;
}

void ElfImage::putU16(std::size_t at, std::uint16_t value)
{
    bytes[at + (isBigEndian ? 1 : 0)] = static_cast<std::uint8_t>(value);
    bytes[at + (isBigEndian ? 0 : 1)] = static_cast<std::uint8_t>(value >> 8);
}

void ElfImage::putU32(std::size_t at, std::uint32_t value)
{
    for (std::size_t i = 0; i < 4; ++i) {
        bytes[at + i] = static_cast<std::uint8_t>(value >> (isBigEndian ? 24 - 8 * i : 8 * i));
    }
}

std::size_t ElfImage::appendRoom(std::size_t count, std::uint32_t like)
{
    const std::size_t at = bytes.size() + (like - static_cast<std::uint32_t>(bytes.size())) % 4;
    bytes.resize(at + count);
    return at;
}

bool ElfImage::hasBytes(const Elf32_Shdr &section) const
{
    return section.sh_type != SHT_NULL && section.sh_type != SHT_NOBITS && section.sh_size != 0 &&
           section.sh_offset <= bytes.size() && section.sh_size <= bytes.size() - section.sh_offset;
}

FileRange ElfImage::rangeOf(const Elf32_Shdr &section) const
{
    return hasBytes(section) ? FileRange::of(section.sh_offset, section.sh_size) : FileRange();
}

bool ElfImage::isLoaded(const FileRange &range) const
{
    return std::any_of(segments.begin(), segments.end(), [&range](const Elf32_Phdr &segment) {
        return segment.p_type == PT_LOAD && segment.p_filesz != 0 &&
               files::overlaps(range, preparation::rangeOf(segment));
    });
}

void ElfImage::writeTables(std::uint32_t segmentsAt, std::uint32_t sectionsAt)
{
    putU32(kSegmentsOffsetAt, segmentsAt);
    putU32(kSectionsOffsetAt, sectionsAt);
    putU16(kSegmentCountAt, static_cast<std::uint16_t>(segments.size()));
    std::size_t at = segmentsAt;
    const auto put = [this, &at](std::initializer_list<std::uint32_t> words) {
        for (const std::uint32_t word : words) {
            putU32(at, word);
            at += 4;
        }
    };
    for (const Elf32_Phdr &s : segments) {
        put({s.p_type, s.p_offset, s.p_vaddr, s.p_paddr, s.p_filesz, s.p_memsz, s.p_flags,
             s.p_align});
    }
    at = sectionsAt;
    for (const Elf32_Shdr &s : sections) {
        put({s.sh_name, s.sh_type, s.sh_flags, s.sh_addr, s.sh_offset, s.sh_size, s.sh_link,
             s.sh_info, s.sh_addralign, s.sh_entsize});
    }
}

}  // namespace preparation
