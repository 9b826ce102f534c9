#include "support/LinkedElf.h"

#include "support/HexLines.h"

#include <cstring>
#include <elf.h>

namespace
{

template <typename Entry>
void append(std::vector<std::uint8_t> &out, const Entry &entry)
{
    const auto *bytes = reinterpret_cast<const std::uint8_t *>(&entry);
    out.insert(out.end(), bytes, bytes + sizeof entry);
}

/// The segment over sections that are laid out already.
Elf32_Phdr headerOf(const LinkedElf::Segment &segment, const std::vector<Elf32_Shdr> &table)
{
    const Elf32_Shdr &first = table[segment.first + 1];
    Elf32_Phdr header = {};
    header.p_type = segment.type;
    header.p_offset = segment.hasHead ? 0 : first.sh_offset;
    header.p_vaddr = first.sh_addr - (first.sh_offset - header.p_offset);
    header.p_paddr = segment.physical;
    header.p_flags = PF_R | PF_X;
    header.p_align = 4;
    for (std::size_t i = segment.first + 1; i <= segment.first + segment.count; ++i) {
        const std::uint32_t end = table[i].sh_offset - header.p_offset + table[i].sh_size;
        header.p_memsz = end;
        header.p_filesz = table[i].sh_type == SHT_NOBITS ? header.p_filesz : end;
    }
    return header;
}

}  // namespace

std::vector<std::uint8_t> LinkedElf::bytes() const
{
    std::vector<Section> all = sections;
    all.insert(all.begin(), Section{"", 0, {}, SHT_NULL});
    all.push_back({".shstrtab", 0, {0}, SHT_STRTAB});
    std::vector<Elf32_Shdr> table;
    for (const Section &section : all) {
        Elf32_Shdr &entry = table.emplace_back();
        entry = {};
        std::vector<std::uint8_t> &names = all.back().bytes;
        entry.sh_name = section.name.empty() ? 0 : static_cast<std::uint32_t>(names.size());
        entry.sh_type = section.type;
        entry.sh_addr = section.address;
        entry.sh_addralign = 1;
        names.insert(names.end(), section.name.begin(), section.name.end());
        names.push_back(0);
    }
    std::vector<std::uint8_t> file(sizeof(Elf32_Ehdr) + segments.size() * sizeof(Elf32_Phdr));
    for (std::size_t i = 1; i < all.size(); ++i) {
        file.insert(file.end(), all[i].gap, 0xA5);
        table[i].sh_offset = static_cast<std::uint32_t>(file.size());
        table[i].sh_size = all[i].type == SHT_NOBITS
                               ? all[i].bytesInMemory
                               : static_cast<std::uint32_t>(all[i].bytes.size());
        file.insert(file.end(), all[i].bytes.begin(), all[i].bytes.end());
    }
    Elf32_Ehdr head = {};
    std::memcpy(head.e_ident,
                "\x7F"
                "ELF\1\1\1",
                7);
    head.e_type = ET_EXEC;
    head.e_machine = EM_ARM;
    head.e_version = EV_CURRENT;
    head.e_ehsize = sizeof head;
    head.e_phoff = segments.empty() ? 0 : sizeof head;
    head.e_phentsize = sizeof(Elf32_Phdr);
    head.e_phnum = static_cast<std::uint16_t>(segments.size());
    head.e_shoff = static_cast<std::uint32_t>(file.size());
    head.e_shentsize = sizeof(Elf32_Shdr);
    head.e_shnum = static_cast<std::uint16_t>(table.size());
    head.e_shstrndx = static_cast<std::uint16_t>(table.size() - 1);
    std::memcpy(file.data(), &head, sizeof head);
    for (std::size_t i = 0; i < segments.size(); ++i) {
        const Elf32_Phdr header = headerOf(segments[i], table);
        std::memcpy(&file[sizeof head + i * sizeof header], &header, sizeof header);
    }
    for (const Elf32_Shdr &entry : table) {
        append(file, entry);
    }
    return file;
}

LinkedElf linkedFirmware()
{
    LinkedElf elf;
    elf.sections = {{".text", 0x08000000, patternBytes(256)},
                    {".data", 0x20000000, patternBytes(30, 7), 1, 2},
                    {".bss", 0x20000020, {}, 8, 0, 64},
                    {".app", 0x08001000, patternBytes(100, 9)},
                    {".comment", 0, patternBytes(21)}};
    elf.segments = {{0, 1, 0x08000000}, {1, 2, 0x08000200}, {3, 1, 0x08001000}};
    return elf;
}
