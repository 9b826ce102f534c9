#include "files/firmware/ElfExtension.h"

#include <algorithm>
#include <bit>
#include <cstdio>
#include <cstring>
#include <optional>
#include <unordered_map>

static_assert(std::endian::native == std::endian::little, "structures are copied as they stand");

namespace files
{

namespace
{

using Bytes = std::vector<std::uint8_t>;
using ByteView = std::span<const std::uint8_t>;

constexpr std::uint32_t kWord = 4;

/// The bytes of a section as they will be written: what it has, and what is put behind.
struct Block {
    ByteView bytes;
    Bytes tail;

    [[nodiscard]] std::uint64_t size() const { return bytes.size() + tail.size(); }
    void pad(std::uint64_t count, std::uint8_t value)
    {
        tail.insert(tail.end(), static_cast<std::size_t>(count), value);
    }
};

/// An ELF file taken apart.
struct Parts {
    Elf32_Ehdr head = {};
    std::vector<Elf32_Phdr> segments;
    std::vector<Elf32_Shdr> sections;
    std::vector<Block> blocks;  ///< one for each section
};

bool hasBytes(const Elf32_Shdr &section)
{
    return section.sh_type != SHT_NULL && section.sh_type != SHT_NOBITS;
}

std::uint64_t endOf(const Elf32_Shdr &section)
{
    return std::uint64_t{section.sh_offset} + section.sh_size;
}

/// @return the part of the file, or nothing when it isn't all there
std::optional<ByteView> partOf(ByteView file, std::uint64_t offset, std::uint64_t size)
{
    if (offset > file.size() || size > file.size() - offset) {
        return std::nullopt;
    }
    return file.subspan(static_cast<std::size_t>(offset), static_cast<std::size_t>(size));
}

template <typename Entry>
std::optional<std::vector<Entry>> readTable(ByteView file, std::uint64_t offset, std::size_t count)
{
    const auto bytes = partOf(file, offset, std::uint64_t{count} * sizeof(Entry));
    if (!bytes) {
        return std::nullopt;
    }
    std::vector<Entry> table(count);
    if (count != 0) {
        std::memcpy(table.data(), bytes->data(), bytes->size());
    }
    return table;
}

template <typename Entry>
void append(Bytes &out, const Entry *entries, std::size_t count)
{
    const auto *bytes = reinterpret_cast<const std::uint8_t *>(entries);
    out.insert(out.end(), bytes, bytes + count * sizeof(Entry));
}

Result<Elf32_Ehdr> readHead(ByteView file)
{
    Elf32_Ehdr head = {};
    if (file.size() < sizeof head) {
        return fail(ErrorCode::Truncated, "the ELF head is cut short");
    }
    std::memcpy(&head, file.data(), sizeof head);
    const unsigned char *ident = head.e_ident;
    if (std::memcmp(ident, ELFMAG, SELFMAG) != 0 || ident[EI_CLASS] != ELFCLASS32 ||
        ident[EI_DATA] != ELFDATA2LSB || ident[EI_VERSION] != EV_CURRENT) {
        return fail(ErrorCode::BadValue, "it is no 32-bit little-endian ELF file");
    }
    if (head.e_ehsize != sizeof(Elf32_Ehdr) || head.e_shentsize != sizeof(Elf32_Shdr) ||
        (head.e_phentsize != sizeof(Elf32_Phdr) && head.e_phnum != 0)) {
        return fail(ErrorCode::BadValue, "the entries of its tables have strange sizes");
    }
    if (head.e_shstrndx == SHN_UNDEF || head.e_shstrndx >= head.e_shnum) {
        return fail(ErrorCode::BadValue, "it has no table of section names");
    }
    return head;
}

/// Bounds what forged headers that all name the same bytes could cost.
Result<void> checkLoads(ByteView file, const std::vector<Elf32_Phdr> &segments)
{
    constexpr std::uint64_t kMuch = std::uint64_t{256} << 20;
    std::uint64_t total = 0;
    for (const Elf32_Phdr &segment : segments) {
        if (segment.p_type == PT_LOAD && segment.p_filesz != 0) {
            total += segment.p_filesz;
            if (!partOf(file, segment.p_offset, segment.p_filesz)) {
                return fail(ErrorCode::Truncated, "the bytes of a segment end outside the file");
            }
        }
    }
    if (total > std::max<std::uint64_t>(4 * file.size(), kMuch)) {
        return fail(ErrorCode::BadValue, "its segments hold far more bytes than the file");
    }
    return {};
}

Result<Parts> takeApart(ByteView file)
{
    Parts parts;
    const auto head = readHead(file);
    if (!head) {
        return tl::unexpected<Error>(head.error());
    }
    parts.head = *head;
    auto segments = readTable<Elf32_Phdr>(file, head->e_phoff, head->e_phnum);
    auto sections = readTable<Elf32_Shdr>(file, head->e_shoff, head->e_shnum);
    if (!segments || !sections) {
        return fail(ErrorCode::Truncated, "its tables end outside the file");
    }
    parts.segments = std::move(*segments);
    parts.sections = std::move(*sections);
    if (!hasBytes(parts.sections[head->e_shstrndx])) {
        return fail(ErrorCode::BadValue, "it has no table of section names");
    }
    std::uint64_t total = 0;
    for (const Elf32_Shdr &section : parts.sections) {
        Block &block = parts.blocks.emplace_back();
        if (!hasBytes(section)) {
            continue;
        }
        const auto bytes = partOf(file, section.sh_offset, section.sh_size);
        total += section.sh_size;
        if (!bytes || total > file.size()) {
            return fail(ErrorCode::Truncated, "the bytes of its sections aren't all in the file");
        }
        block.bytes = *bytes;
    }
    if (auto checked = checkLoads(file, parts.segments); !checked) {
        return tl::unexpected<Error>(std::move(checked).error());
    }
    return parts;
}

/// The free bytes in front of each section with an address.
std::vector<std::uint64_t> gapsOf(const std::vector<Elf32_Shdr> &sections)
{
    std::vector<std::uint32_t> lowestLater(sections.size() + 1, UINT32_MAX);
    for (std::size_t i = sections.size(); i-- > 0;) {
        lowestLater[i] = std::min(lowestLater[i + 1], sections[i].sh_offset);
    }
    std::vector<std::uint64_t> gaps(sections.size(), 0);
    std::optional<std::uint64_t> end;
    std::uint64_t taken = 0;
    for (std::size_t i = 0; i < sections.size(); ++i) {
        const Elf32_Shdr &section = sections[i];
        if (section.sh_addr != 0 && hasBytes(section)) {
            if (end && section.sh_offset > *end && lowestLater[i + 1] >= section.sh_offset) {
                // Sections without an address may lie between; their bytes aren't free. An
                // addition stands behind such ones, and would take their size again at each call.
                gaps[i] =
                    section.sh_offset - std::clamp<std::uint64_t>(taken, *end, section.sh_offset);
            }
            end = endOf(section);
        }
        if (hasBytes(section)) {
            taken = std::max(taken, endOf(section));
        }
    }
    return gaps;
}

/// @return the section that a segment of the file ends with, when their sizes add up
std::optional<std::size_t> lastSectionOf(const Elf32_Phdr &segment,
                                         const std::vector<Elf32_Shdr> &sections)
{
    const auto first =
        std::find_if(sections.begin(), sections.end(), [&segment](const Elf32_Shdr &section) {
            return section.sh_addr == segment.p_vaddr;
        });
    std::uint64_t sum = 0;
    for (auto section = first; section != sections.end() && sum < segment.p_filesz; ++section) {
        sum += section->sh_size;
        if (sum == segment.p_filesz) {
            return static_cast<std::size_t>(section - sections.begin());
        }
    }
    return std::nullopt;
}

/// Only the first segment that ends inside a word is filled up.
void fillFirstOddSegment(Parts &parts, std::uint8_t padding)
{
    const auto odd =
        std::find_if(parts.segments.begin(), parts.segments.end(), [](const Elf32_Phdr &segment) {
            return segment.p_type == PT_LOAD && segment.p_filesz % kWord != 0;
        });
    if (odd == parts.segments.end()) {
        return;
    }
    if (const auto last = lastSectionOf(*odd, parts.sections)) {
        const std::uint32_t missing = kWord - odd->p_filesz % kWord;
        parts.blocks[*last].pad(missing, padding);
        parts.sections[*last].sh_size += missing;
        odd->p_filesz += missing;
        odd->p_memsz += missing;
    }
}

void addSection(Parts &parts, const ElfAddition &addition)
{
    Block &names = parts.blocks[parts.head.e_shstrndx];
    const auto nameOffset = static_cast<std::uint32_t>(names.size());
    names.tail.assign(addition.name.begin(), addition.name.end());
    const std::vector<std::uint64_t> gaps = gapsOf(parts.sections);
    for (std::size_t i = 0; i + 1 < parts.blocks.size(); ++i) {
        parts.blocks[i].pad(gaps[i + 1], addition.padding);
    }
    fillFirstOddSegment(parts, addition.padding);
    names.pad(kWord - names.size() % kWord, addition.padding);
    parts.sections[parts.head.e_shstrndx].sh_size = static_cast<std::uint32_t>(names.size());

    const auto size = static_cast<std::uint32_t>(addition.data.size());
    Elf32_Shdr section = {};
    section.sh_name = nameOffset;
    section.sh_type = SHT_PROGBITS;
    section.sh_flags = SHF_WRITE | SHF_ALLOC;
    section.sh_addr = addition.address;
    section.sh_size = size;
    section.sh_addralign = kWord;
    parts.sections.push_back(section);
    parts.blocks.push_back({addition.data, {}});

    Elf32_Phdr segment = {};
    segment.p_type = PT_LOAD;
    segment.p_vaddr = addition.address;
    segment.p_paddr = addition.address;
    segment.p_filesz = size;
    segment.p_memsz = size;
    segment.p_flags = PF_R;
    segment.p_align = kWord;
    parts.segments.push_back(segment);
}

/// Gives every section and segment its new place. @return bytes up to the section table
std::uint64_t layOut(Parts &parts)
{
    std::uint64_t offset = sizeof(Elf32_Ehdr);
    std::uint64_t total = offset;
    for (std::size_t i = 0; i < parts.sections.size(); ++i) {
        parts.sections[i].sh_offset = static_cast<std::uint32_t>(offset);
        offset += parts.sections[i].sh_type == SHT_NOBITS ? 0 : parts.blocks[i].size();
        total += parts.blocks[i].size();
    }
    // The first section of an address counts, and for address 0 the first one with contents.
    std::unordered_map<std::uint32_t, const Elf32_Shdr *> byAddress;
    for (const Elf32_Shdr &section : parts.sections) {
        byAddress.try_emplace(section.sh_addr, &section);
    }
    const auto contents =
        std::find_if(parts.sections.begin(), parts.sections.end(),
                     [](const Elf32_Shdr &section) { return section.sh_type == SHT_PROGBITS; });
    byAddress[0] = &*contents;  // the addition is one, if nothing else
    for (Elf32_Phdr &segment : parts.segments) {
        const auto found = byAddress.find(segment.p_vaddr);
        if (found == byAddress.end()) {
            continue;
        }
        segment.p_offset = found->second->sh_offset;
        if (segment.p_vaddr == 0) {
            segment.p_filesz = found->second->sh_size;
            segment.p_memsz = found->second->sh_size;
        }
    }
    return total;
}

Bytes assembled(Parts &parts, std::uint64_t tablesAt)
{
    Elf32_Ehdr &head = parts.head;
    head.e_shnum = static_cast<Elf32_Half>(parts.sections.size());
    head.e_phnum = static_cast<Elf32_Half>(parts.segments.size());
    head.e_phentsize = sizeof(Elf32_Phdr);
    head.e_shoff = static_cast<Elf32_Off>(tablesAt);
    head.e_phoff = static_cast<Elf32_Off>(tablesAt + parts.sections.size() * sizeof(Elf32_Shdr));
    Bytes file;
    file.reserve(static_cast<std::size_t>(head.e_phoff) +
                 parts.segments.size() * sizeof(Elf32_Phdr));
    append(file, &head, 1);
    for (const Block &block : parts.blocks) {
        file.insert(file.end(), block.bytes.begin(), block.bytes.end());
        file.insert(file.end(), block.tail.begin(), block.tail.end());
    }
    append(file, parts.sections.data(), parts.sections.size());
    append(file, parts.segments.data(), parts.segments.size());
    return file;
}

tl::unexpected<Error> lost(const ElfAddition &addition, std::size_t number, std::uint32_t address)
{
    char place[16];
    std::snprintf(place, sizeof place, "0x%08X", address);
    return fail(ErrorCode::Refused,
                "Adding \"" + addition.name + "\" would lose bytes of the segment " +
                    std::to_string(number) + " at " + place + ", the ELF file stays as it was");
}

/// Whether `segment` of the new file begins with `bytes`, and has at most `more` behind them.
bool holds(ByteView file, const Elf32_Phdr &segment, ByteView bytes, std::uint64_t more)
{
    const auto found = partOf(file, segment.p_offset, segment.p_filesz);
    return found && found->size() >= bytes.size() && found->size() - bytes.size() <= more &&
           std::equal(bytes.begin(), bytes.end(), found->begin());
}

/// The layout goes by addresses of sections and can't carry what no section holds; so the result is
/// looked at, not trusted.
Result<void> checkNothingLost(ByteView before, ByteView after, const ElfAddition &addition)
{
    const auto old = takeApart(before);
    const auto made = takeApart(after);
    for (std::size_t i = 0; i < old->segments.size(); ++i) {
        const Elf32_Phdr &segment = old->segments[i];
        if (segment.p_type != PT_LOAD ||
            (segment.p_filesz == 0 && made && made->segments[i].p_filesz == 0)) {
            continue;
        }
        const ByteView bytes = segment.p_filesz == 0
                                   ? ByteView()
                                   : *partOf(before, segment.p_offset, segment.p_filesz);
        const std::uint32_t odd = segment.p_filesz % kWord;
        if (!made || !holds(after, made->segments[i], bytes, odd == 0 ? 0 : kWord - odd)) {
            return lost(addition, i + 1, segment.p_paddr);
        }
    }
    if (!made || !holds(after, made->segments.back(), addition.data, 0)) {
        return lost(addition, old->segments.size() + 1, addition.address);
    }
    return {};
}

}  // namespace

Result<Bytes> withAddition(ByteView file, const ElfAddition &addition)
{
    auto parts = takeApart(file);
    if (!parts) {
        return tl::unexpected<Error>(std::move(parts).error());
    }
    const std::uint64_t most = UINT32_MAX;
    if (parts->sections.size() + 1 >= SHN_LORESERVE || parts->segments.size() + 1 >= PN_XNUM) {
        return fail(ErrorCode::TooLarge, "The ELF file has too many sections for another one");
    }
    if (addition.data.size() > most + 1 - addition.address) {
        return fail(ErrorCode::TooLarge,
                    "\"" + addition.name + "\" runs past the end of the address space");
    }
    addSection(*parts, addition);
    const std::uint64_t tablesAt = layOut(*parts);
    const std::uint64_t tables =
        parts->sections.size() * sizeof(Elf32_Shdr) + parts->segments.size() * sizeof(Elf32_Phdr);
    if (tablesAt + tables > most) {
        return fail(ErrorCode::TooLarge, "The ELF file would be larger than 4 GiB");
    }
    Bytes made = assembled(*parts, tablesAt);
    if (auto checked = checkNothingLost(file, made, addition); !checked) {
        return tl::unexpected<Error>(std::move(checked).error());
    }
    return made;
}

Result<std::vector<Elf32_Phdr>> loadsOf(ByteView file)
{
    auto parts = takeApart(file);
    if (!parts) {
        return tl::unexpected<Error>(std::move(parts).error());
    }
    std::erase_if(parts->segments,
                  [](const Elf32_Phdr &segment) { return segment.p_type != PT_LOAD; });
    return std::move(parts->segments);
}

}  // namespace files
