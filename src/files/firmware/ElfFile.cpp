#include "files/firmware/ElfFile.h"
#include "files/base/ByteCursor.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <libelf.h>

namespace files
{

namespace
{

/// What differs between the two classes. `Translate` turns file form into host form.
struct Layout32 {
    using Head = Elf32_Ehdr;
    using Segment = Elf32_Phdr;
    using Section = Elf32_Shdr;
};
struct Layout64 {
    using Head = Elf64_Ehdr;
    using Segment = Elf64_Phdr;
    using Section = Elf64_Shdr;
};

using Translate = Elf_Data *(*)(Elf_Data *, const Elf_Data *, unsigned);

struct TableKind {
    Elf_Type type;
    Translate translate;
};

template <typename Entry>
constexpr TableKind kKind = {};
template <>
constexpr TableKind kKind<Elf32_Ehdr> = {ELF_T_EHDR, elf32_xlatetom};
template <>
constexpr TableKind kKind<Elf32_Phdr> = {ELF_T_PHDR, elf32_xlatetom};
template <>
constexpr TableKind kKind<Elf32_Shdr> = {ELF_T_SHDR, elf32_xlatetom};
template <>
constexpr TableKind kKind<Elf32_Sym> = {ELF_T_SYM, elf32_xlatetom};
template <>
constexpr TableKind kKind<Elf32_Rela> = {ELF_T_RELA, elf32_xlatetom};
template <>
constexpr TableKind kKind<Elf32_Word> = {ELF_T_WORD, elf32_xlatetom};
template <>
constexpr TableKind kKind<Elf64_Ehdr> = {ELF_T_EHDR, elf64_xlatetom};
template <>
constexpr TableKind kKind<Elf64_Phdr> = {ELF_T_PHDR, elf64_xlatetom};
template <>
constexpr TableKind kKind<Elf64_Shdr> = {ELF_T_SHDR, elf64_xlatetom};

/// Turns entries that hold file bytes into host form, in place.
template <typename Entry>
bool toHost(std::span<Entry> entries, std::uint8_t encoding)
{
    elf_version(EV_CURRENT);
    Elf_Data data = {};
    data.d_buf = entries.data();
    data.d_size = entries.size_bytes();
    data.d_type = kKind<Entry>.type;
    data.d_version = EV_CURRENT;
    return entries.empty() || kKind<Entry>.translate(&data, &data, encoding) != nullptr;
}

template <typename Entry>
std::span<std::uint8_t> bytesOf(std::span<Entry> entries)
{
    return {reinterpret_cast<std::uint8_t *>(entries.data()), entries.size_bytes()};
}

template <typename From>
Elf64_Ehdr wideHead(const From &from)
{
    Elf64_Ehdr head = {};
    std::copy(std::begin(from.e_ident), std::end(from.e_ident), std::begin(head.e_ident));
    head.e_type = from.e_type;
    head.e_machine = from.e_machine;
    head.e_version = from.e_version;
    head.e_entry = from.e_entry;
    head.e_phoff = from.e_phoff;
    head.e_shoff = from.e_shoff;
    head.e_flags = from.e_flags;
    head.e_ehsize = from.e_ehsize;
    head.e_phentsize = from.e_phentsize;
    head.e_phnum = from.e_phnum;
    head.e_shentsize = from.e_shentsize;
    head.e_shnum = from.e_shnum;
    head.e_shstrndx = from.e_shstrndx;
    return head;
}

template <typename From>
section_header recordOf(const From &from, std::size_t index)
{
    section_header section;
    section.index = static_cast<std::uint16_t>(index);
    section.fileOffset = from.sh_offset;
    section.sectionType = from.sh_type;
    section.sectionFlags = from.sh_flags;
    section.info = from.sh_info;
    section.link = from.sh_link;
    section.addrAlign = from.sh_addralign;
    section.entrySize = from.sh_entsize;
    section.sectionAddress = from.sh_addr;
    section.sectionSize = from.sh_size;
    section.nameOffset = from.sh_name;
    return section;
}

template <typename From>
ElfSegment segmentOf(const From &from)
{
    ElfSegment segment;
    segment.header.headerType = from.p_type;
    segment.header.headerFlags = from.p_flags;
    segment.header.align = from.p_align;
    segment.header.virtualAddress = from.p_vaddr;
    segment.header.physicalAddress = from.p_paddr;
    segment.header.fileSize = from.p_filesz;
    segment.header.memorySize = from.p_memsz;
    segment.fileOffset = from.p_offset;
    return segment;
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
    const auto loaded = file.m_head.elfClass == ELFCLASS32 ? file.loadTables<Layout32>()
                                                           : file.loadTables<Layout64>();
    if (!loaded) {
        return tl::unexpected<Error>(loaded.error());
    }
    return file;
}

template <typename Layout>
Result<void> ElfFile::loadTables()
{
    const auto head = table<typename Layout::Head>(0, 1);
    if (!head) {
        return fail(ErrorCode::Truncated, "the ELF head is cut short");
    }
    m_head.fields = wideHead(head->front());
    if (auto loaded = loadSegments<Layout>(); !loaded) {
        return loaded;
    }
    loadSections<Layout>();
    return {};
}

template <typename Layout>
Result<void> ElfFile::loadSegments()
{
    using Segment = typename Layout::Segment;
    const Elf64_Ehdr &head = m_head.fields;
    if (head.e_phnum == 0) {
        return {};
    }
    if (head.e_phentsize != sizeof(Segment)) {
        return fail(ErrorCode::BadValue, "program headers of " + std::to_string(head.e_phentsize) +
                                             " bytes instead of " +
                                             std::to_string(sizeof(Segment)));
    }
    const auto entries = table<Segment>(head.e_phoff, head.e_phnum);
    if (!entries) {
        return fail(ErrorCode::Truncated, "the program-header table ends outside the file");
    }
    for (const Segment &entry : *entries) {
        if (entry.p_type != PT_NULL && entry.p_filesz != 0 &&
            !contains(entry.p_offset, entry.p_filesz)) {
            return fail(ErrorCode::Truncated, "the bytes of program header " +
                                                  std::to_string(m_segments.size()) +
                                                  " end outside the file");
        }
        m_segments.push_back(segmentOf(entry));
    }
    return {};
}

template <typename Layout>
void ElfFile::loadSections()
{
    using Section = typename Layout::Section;
    const Elf64_Ehdr &head = m_head.fields;
    if (head.e_shentsize != sizeof(Section) || !contains(head.e_shoff, 0)) {
        return;
    }
    const std::uint64_t present = (m_size - head.e_shoff) / sizeof(Section);
    const auto entries =
        table<Section>(head.e_shoff, std::min<std::uint64_t>(head.e_shnum, present));
    if (!entries) {
        return;
    }
    for (const Section &entry : *entries) {
        m_sections.push_back(recordOf(entry, m_sections.size()));
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

template <typename Entry>
std::optional<std::vector<Entry>> ElfFile::table(std::uint64_t offset, std::uint64_t count) const
{
    if (count > m_size / sizeof(Entry) || !contains(offset, count * sizeof(Entry))) {
        return std::nullopt;
    }
    std::vector<Entry> entries(static_cast<std::size_t>(count));
    if (!read(offset, bytesOf<Entry>(entries)) || !toHost<Entry>(entries, m_head.encoding)) {
        return std::nullopt;
    }
    return entries;
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

template <typename Entry>
std::vector<Entry> ElfFile::entriesOf(const section_header &section) const
{
    if (section.entrySize < sizeof(Entry)) {
        return {};
    }
    const std::vector<std::uint8_t> bytes = data(section);
    std::vector<Entry> entries(bytes.size() / static_cast<std::size_t>(section.entrySize));
    ByteCursor in(bytes);
    for (Entry &entry : entries) {
        const auto source = in.bytes(sizeof(Entry));
        std::memcpy(&entry, source.data(), source.size());
        in.skip(static_cast<std::size_t>(section.entrySize) - sizeof(Entry));
    }
    if (!toHost<Entry>(entries, m_head.encoding)) {
        entries.clear();
    }
    return entries;
}

std::vector<Elf32_Sym> ElfFile::symbolsOf(const section_header &section) const
{
    return entriesOf<Elf32_Sym>(section);
}

std::vector<Elf32_Rela> ElfFile::relocationsOf(const section_header &section) const
{
    return entriesOf<Elf32_Rela>(section);
}

Elf32_Nhdr ElfFile::noteHead(std::span<const std::uint8_t, 12> bytes) const
{
    std::array<Elf32_Word, 3> words = {};
    std::memcpy(words.data(), bytes.data(), bytes.size());
    toHost<Elf32_Word>(words, m_head.encoding);
    return {words[0], words[1], words[2]};
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
