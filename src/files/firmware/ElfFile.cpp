#include "files/firmware/ElfFile.h"

#include "files/base/ByteCursor.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace files
{

namespace
{

/// Bytes of the structures in a file, by class.
struct StructureBytes {
    std::size_t head;
    std::size_t segment;
    std::size_t section;
};
constexpr StructureBytes kBytes32 = {sizeof(Elf32_Ehdr), sizeof(Elf32_Phdr), sizeof(Elf32_Shdr)};
constexpr StructureBytes kBytes64 = {sizeof(Elf64_Ehdr), sizeof(Elf64_Phdr), sizeof(Elf64_Shdr)};

/// A byte cursor that knows the file's byte order, and how wide an address is in its class.
class FieldCursor
{
public:
    FieldCursor(std::span<const std::uint8_t> bytes, const ElfHead &head)
        : m_in(bytes), m_isBig(head.encoding == ELFDATA2MSB), m_is64(head.elfClass == ELFCLASS64)
    {
    }

    std::uint8_t u8() { return m_in.u8(); }
    std::uint16_t u16() { return static_cast<std::uint16_t>(number<2>()); }
    std::uint32_t u32() { return static_cast<std::uint32_t>(number<4>()); }
    std::uint64_t u64() { return number<8>(); }
    /// An address, offset or size: 4 bytes or 8.
    std::uint64_t address() { return m_is64 ? u64() : u32(); }
    void skip(std::size_t bytes) { m_in.skip(bytes); }

private:
    template <std::size_t Width>
    std::uint64_t number()
    {
        const auto bytes = m_in.bytes(Width);
        std::uint64_t value = 0;
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            value = value << 8 | bytes[m_isBig ? i : Width - 1 - i];
        }
        return value;
    }

    ByteCursor m_in;
    bool m_isBig;
    bool m_is64;
};

Elf64_Ehdr readHead(FieldCursor &in)
{
    Elf64_Ehdr head = {};
    for (unsigned char &byte : head.e_ident) {
        byte = in.u8();
    }
    head.e_type = in.u16();
    head.e_machine = in.u16();
    head.e_version = in.u32();
    head.e_entry = in.address();
    head.e_phoff = in.address();
    head.e_shoff = in.address();
    head.e_flags = in.u32();
    head.e_ehsize = in.u16();
    head.e_phentsize = in.u16();
    head.e_phnum = in.u16();
    head.e_shentsize = in.u16();
    head.e_shnum = in.u16();
    head.e_shstrndx = in.u16();
    return head;
}

ElfSegment readSegment(FieldCursor &in, bool is64)
{
    ElfSegment segment;
    segment.header.headerType = in.u32();
    if (is64) {
        segment.header.headerFlags = in.u32();
    }
    segment.fileOffset = in.address();
    segment.header.virtualAddress = in.address();
    segment.header.physicalAddress = in.address();
    segment.header.fileSize = in.address();
    segment.header.memorySize = in.address();
    if (!is64) {
        segment.header.headerFlags = in.u32();
    }
    segment.header.align = in.address();
    return segment;
}

section_header readSection(FieldCursor &in, std::size_t index)
{
    section_header section;
    section.index = static_cast<std::uint16_t>(index);
    section.nameOffset = in.u32();
    section.sectionType = in.u32();
    section.sectionFlags = in.address();
    section.sectionAddress = in.address();
    section.fileOffset = in.address();
    section.sectionSize = in.address();
    section.link = in.u32();
    section.info = in.u32();
    section.addrAlign = in.address();
    section.entrySize = in.address();
    return section;
}

Elf32_Sym readSymbol(FieldCursor &in)
{
    Elf32_Sym symbol = {};
    symbol.st_name = in.u32();
    symbol.st_value = in.u32();
    symbol.st_size = in.u32();
    symbol.st_info = in.u8();
    symbol.st_other = in.u8();
    symbol.st_shndx = in.u16();
    return symbol;
}

Elf32_Rela readRelocation(FieldCursor &in)
{
    Elf32_Rela relocation = {};
    relocation.r_offset = in.u32();
    relocation.r_info = in.u32();
    relocation.r_addend = static_cast<std::int32_t>(in.u32());
    return relocation;
}

/// Reads what tells how to read the rest. @return false when it isn't an ELF file
bool readIdent(std::span<const std::uint8_t> bytes, ElfHead *head)
{
    ByteCursor in(bytes);
    const auto magic = in.bytes(SELFMAG);
    head->elfClass = in.u8();
    head->encoding = in.u8();
    head->identVersion = in.u8();
    head->osAbi = in.u8();
    head->abiVersion = in.u8();
    return in.ok() && std::memcmp(magic.data(), ELFMAG, SELFMAG) == 0 &&
           (head->elfClass == ELFCLASS32 || head->elfClass == ELFCLASS64) &&
           (head->encoding == ELFDATA2LSB || head->encoding == ELFDATA2MSB) &&
           head->identVersion == EV_CURRENT;
}

}  // namespace

ElfFile::ElfFile(QIODevice &device)
    : m_device(&device), m_size(static_cast<std::uint64_t>(std::max<qint64>(device.size(), 0)))
{
}

Result<ElfFile> ElfFile::load(QIODevice &device)
{
    ElfFile file(device);
    std::array<std::uint8_t, EI_NIDENT> ident = {};
    if (!file.read(0, ident) || !readIdent(ident, &file.m_head)) {
        return fail(ErrorCode::BadValue, "the file has no ELF identification");
    }
    if (const auto loaded = file.loadTables(); !loaded) {
        return tl::unexpected<Error>(loaded.error());
    }
    return file;
}

Result<void> ElfFile::loadTables()
{
    const auto bytes = table(0, 1, (is64() ? kBytes64 : kBytes32).head);
    if (!bytes) {
        return fail(ErrorCode::Truncated, "the ELF head is cut short");
    }
    FieldCursor in(*bytes, m_head);
    m_head.fields = readHead(in);
    if (auto loaded = loadSegments(); !loaded) {
        return loaded;
    }
    loadSections();
    return {};
}

Result<void> ElfFile::loadSegments()
{
    const Elf64_Ehdr &head = m_head.fields;
    const std::size_t entryBytes = (is64() ? kBytes64 : kBytes32).segment;
    if (head.e_phnum == 0) {
        return {};
    }
    if (head.e_phentsize != entryBytes) {
        return fail(ErrorCode::BadValue, "program headers of " + std::to_string(head.e_phentsize) +
                                             " bytes instead of " + std::to_string(entryBytes));
    }
    const auto bytes = table(head.e_phoff, head.e_phnum, entryBytes);
    if (!bytes) {
        return fail(ErrorCode::Truncated, "the program-header table ends outside the file");
    }
    FieldCursor in(*bytes, m_head);
    for (std::size_t i = 0; i < head.e_phnum; ++i) {
        const ElfSegment segment = readSegment(in, is64());
        if (segment.header.headerType != PT_NULL && segment.header.fileSize != 0 &&
            !contains(segment.fileOffset, segment.header.fileSize)) {
            return fail(ErrorCode::Truncated, "the bytes of program header " + std::to_string(i) +
                                                  " end outside the file");
        }
        m_segments.push_back(segment);
    }
    return {};
}

void ElfFile::loadSections()
{
    const Elf64_Ehdr &head = m_head.fields;
    const std::size_t entryBytes = (is64() ? kBytes64 : kBytes32).section;
    if (head.e_shentsize != entryBytes || !contains(head.e_shoff, 0)) {
        return;
    }
    const std::uint64_t present = (m_size - head.e_shoff) / entryBytes;
    const std::uint64_t count = std::min<std::uint64_t>(head.e_shnum, present);
    const auto bytes = table(head.e_shoff, count, entryBytes);
    if (!bytes) {
        return;
    }
    FieldCursor in(*bytes, m_head);
    for (std::size_t i = 0; i < count; ++i) {
        m_sections.push_back(readSection(in, i));
    }
    nameSections();
}

void ElfFile::nameSections()
{
    const std::size_t index = m_head.fields.e_shstrndx;
    if (index == SHN_UNDEF || index >= m_sections.size()) {
        return;
    }
    const std::vector<std::uint8_t> text = data(m_sections[index]);
    ElfNames names(m_size);
    for (section_header &section : m_sections) {
        section.name = names.at(text, section.nameOffset);
    }
}

/// The bytes of `count` entries; nothing when they don't all stand in the file.
std::optional<std::vector<std::uint8_t>> ElfFile::table(std::uint64_t offset, std::uint64_t count,
                                                        std::size_t entryBytes) const
{
    if (count > m_size / entryBytes || !contains(offset, count * entryBytes)) {
        return std::nullopt;
    }
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(count) * entryBytes);
    if (!read(offset, bytes)) {
        return std::nullopt;
    }
    return bytes;
}

bool ElfFile::contains(std::uint64_t offset, std::uint64_t size) const
{
    return offset <= m_size && size <= m_size - offset;
}

bool ElfFile::read(std::uint64_t offset, std::span<std::uint8_t> bytes) const
{
    if (!contains(offset, bytes.size()) || !m_device->seek(static_cast<qint64>(offset))) {
        return false;
    }
    while (!bytes.empty()) {
        const qint64 count = m_device->read(reinterpret_cast<char *>(bytes.data()),
                                            static_cast<qint64>(bytes.size()));
        if (count <= 0) {
            return false;
        }
        bytes = bytes.subspan(static_cast<std::size_t>(count));
    }
    return true;
}

bool ElfFile::hasData(const section_header &section) const
{
    return section.sectionType != SHT_NULL && section.sectionType != SHT_NOBITS &&
           contains(section.fileOffset, section.sectionSize);
}

std::vector<std::uint8_t> ElfFile::data(const section_header &section) const
{
    std::vector<std::uint8_t> bytes;
    if (hasData(section)) {
        bytes.resize(static_cast<std::size_t>(section.sectionSize));
        if (!read(section.fileOffset, bytes)) {
            bytes.clear();
        }
    }
    return bytes;
}

template <typename Entry, typename ReadEntry>
std::vector<Entry> ElfFile::entriesOf(const section_header &section, ReadEntry readEntry) const
{
    if (section.entrySize < sizeof(Entry)) {
        return {};
    }
    const std::vector<std::uint8_t> bytes = data(section);
    std::vector<Entry> entries(bytes.size() / static_cast<std::size_t>(section.entrySize));
    FieldCursor in(bytes, m_head);
    for (Entry &entry : entries) {
        entry = readEntry(in);
        in.skip(static_cast<std::size_t>(section.entrySize) - sizeof(Entry));
    }
    return entries;
}

std::vector<Elf32_Sym> ElfFile::symbolsOf(const section_header &section) const
{
    return entriesOf<Elf32_Sym>(section, readSymbol);
}

std::vector<Elf32_Rela> ElfFile::relocationsOf(const section_header &section) const
{
    return entriesOf<Elf32_Rela>(section, readRelocation);
}

Elf32_Nhdr ElfFile::noteHead(std::span<const std::uint8_t, 12> bytes) const
{
    FieldCursor in(bytes, m_head);
    Elf32_Nhdr head = {};
    head.n_namesz = in.u32();
    head.n_descsz = in.u32();
    head.n_type = in.u32();
    return head;
}

ElfNames::ElfNames(std::uint64_t fileBytes) : m_left(4 * fileBytes + std::uint64_t{1024} * 1024) {}

std::string ElfNames::at(std::span<const std::uint8_t> table, std::uint64_t offset)
{
    if (offset >= table.size() || m_left == 0) {
        return {};
    }
    const auto rest = table.subspan(static_cast<std::size_t>(offset));
    const auto searched =
        rest.first(static_cast<std::size_t>(std::min<std::uint64_t>(rest.size(), m_left)));
    const auto end = std::find(searched.begin(), searched.end(), std::uint8_t{0});
    if (end == searched.end() && searched.size() < rest.size()) {
        m_left = 0;
        return {};
    }
    m_left -= static_cast<std::uint64_t>(end - searched.begin());
    return {searched.begin(), end};
}

}  // namespace files
