#include "preparation/smi/ElfSymbolCut.h"

#include <algorithm>
#include <cstring>

namespace preparation
{

namespace
{

constexpr std::size_t kSymbolBytes = sizeof(Elf32_Sym);
constexpr std::size_t kInfoAt = 12;
constexpr std::size_t kSectionAt = 14;
constexpr std::uint32_t kGone = UINT32_MAX;

/// One symbol table while symbols are taken out of it.
class SymbolTable
{
public:
    SymbolTable(ElfImage &image, std::size_t index)
        : m_image(image), m_index(index), m_table(image.sections[index])
    {
    }

    /// Decides which symbols go. @return false when none does
    bool choose(std::size_t sectionIndex)
    {
        const std::size_t count = m_table.sh_size / kSymbolBytes;
        m_newIndex.assign(count, kGone);
        std::uint32_t kept = 0;
        for (std::size_t i = 0; i < count; ++i) {
            const std::size_t at = m_table.sh_offset + i * kSymbolBytes;
            const bool goes = i != 0 && (m_image.bytes[at + kInfoAt] >> 4) == STB_LOCAL &&
                              sectionOf(i) == sectionIndex;
            if (!goes) {
                m_newIndex[i] = kept++;
                m_keptLocals += i < m_table.sh_info ? 1 : 0;
            }
        }
        return kept != count;
    }

    void apply()
    {
        forgetNames();
        compact(m_table, kSymbolBytes);
        m_table.sh_info = m_keptLocals;
        for (Elf32_Shdr &other : m_image.sections) {
            if (other.sh_link != m_index || (other.sh_flags & SHF_ALLOC) != 0) {
                continue;
            }
            if (other.sh_type == SHT_REL || other.sh_type == SHT_RELA) {
                renumber(other);
            } else if (other.sh_type == SHT_SYMTAB_SHNDX && m_image.hasBytes(other)) {
                compact(other, sizeof(Elf32_Word));
            } else if (other.sh_type == SHT_GROUP) {
                other.sh_info = newIndex(other.sh_info);
            }
        }
    }

private:
    [[nodiscard]] std::uint32_t newIndex(std::uint32_t old) const
    {
        return old < m_newIndex.size() && m_newIndex[old] != kGone ? m_newIndex[old]
                                                                   : std::uint32_t{STN_UNDEF};
    }

    /// The section that a symbol is defined in; large numbers stand in a table of their own.
    [[nodiscard]] std::uint32_t sectionOf(std::size_t symbol) const
    {
        const std::size_t at = m_table.sh_offset + symbol * kSymbolBytes + kSectionAt;
        const std::uint32_t value =
            m_image.isBigEndian
                ? static_cast<std::uint32_t>(m_image.bytes[at] << 8 | m_image.bytes[at + 1])
                : static_cast<std::uint32_t>(m_image.bytes[at] | m_image.bytes[at + 1] << 8);
        if (value != SHN_XINDEX) {
            return value;
        }
        for (const Elf32_Shdr &other : m_image.sections) {
            if (other.sh_type == SHT_SYMTAB_SHNDX && other.sh_link == m_index &&
                m_image.hasBytes(other) && symbol < other.sh_size / sizeof(Elf32_Word)) {
                return m_image.u32(other.sh_offset + symbol * sizeof(Elf32_Word));
            }
        }
        return SHN_UNDEF;
    }

    /// Moves the entries that stay to the front and clears the rest.
    void compact(Elf32_Shdr &section, std::size_t entryBytes)
    {
        std::uint8_t *const base = m_image.bytes.data() + section.sh_offset;
        const std::size_t count = std::min(section.sh_size / entryBytes, m_newIndex.size());
        std::size_t size = 0;
        for (std::size_t i = 0; i < count; ++i) {
            if (m_newIndex[i] != kGone) {
                std::memmove(base + size, base + i * entryBytes, entryBytes);
                size += entryBytes;
            }
        }
        std::fill(base + size, base + section.sh_size, std::uint8_t{0});
        section.sh_size = static_cast<std::uint32_t>(size);
    }

    void renumber(const Elf32_Shdr &relocations)
    {
        const std::size_t entryBytes =
            relocations.sh_type == SHT_REL ? sizeof(Elf32_Rel) : sizeof(Elf32_Rela);
        if (relocations.sh_entsize != entryBytes || !m_image.hasBytes(relocations)) {
            return;
        }
        for (std::size_t i = 0; i < relocations.sh_size / entryBytes; ++i) {
            const std::size_t at = relocations.sh_offset + i * entryBytes + 4;
            const std::uint32_t info = m_image.u32(at);
            m_image.putU32(at, newIndex(info >> 8) << 8 | (info & 0xFF));
        }
    }

    /// Clears the names of the symbols that go, but for characters that another name needs: linkers
    /// let names share their ends.
    void forgetNames()
    {
        if (m_table.sh_link >= m_image.sections.size()) {
            return;
        }
        const Elf32_Shdr &strings = m_image.sections[m_table.sh_link];
        if (!m_image.hasBytes(strings) || (strings.sh_flags & SHF_ALLOC) != 0 ||
            m_image.isLoaded(m_image.rangeOf(strings))) {
            return;
        }
        std::vector<bool> goesFrom(strings.sh_size);
        std::vector<bool> staysFrom(strings.sh_size);
        markNames(goesFrom, staysFrom);
        bool goes = false;
        bool stays = false;
        for (std::size_t i = 0; i < strings.sh_size; ++i) {
            std::uint8_t &byte = m_image.bytes[strings.sh_offset + i];
            goes = goes || goesFrom[i];
            stays = stays || staysFrom[i];
            const bool ends = byte == 0;
            byte = goes && !stays ? std::uint8_t{0} : byte;
            goes = goes && !ends;
            stays = stays && !ends;
        }
    }

    void markNames(std::vector<bool> &goesFrom, std::vector<bool> &staysFrom) const
    {
        const auto mark = [](std::vector<bool> &marks, std::uint32_t at) {
            if (at < marks.size()) {
                marks[at] = true;
            }
        };
        for (std::size_t t = 0; t < m_image.sections.size(); ++t) {
            const Elf32_Shdr &table = m_image.sections[t];
            const bool isTable = table.sh_type == SHT_SYMTAB || table.sh_type == SHT_DYNSYM;
            if (!isTable || table.sh_link != m_table.sh_link || !m_image.hasBytes(table)) {
                continue;
            }
            for (std::size_t i = 0; i < table.sh_size / kSymbolBytes; ++i) {
                const bool goes = t == m_index && m_newIndex[i] == kGone;
                mark(goes ? goesFrom : staysFrom, m_image.u32(table.sh_offset + i * kSymbolBytes));
            }
        }
        if (m_table.sh_link == m_image.head.e_shstrndx) {
            for (const Elf32_Shdr &section : m_image.sections) {
                mark(staysFrom, section.sh_name);
            }
        }
    }

    ElfImage &m_image;
    std::size_t m_index;
    Elf32_Shdr &m_table;
    std::vector<std::uint32_t> m_newIndex;  ///< by old number, or kGone
    std::uint32_t m_keptLocals = 0;
};

}  // namespace

void removeLocalSymbols(ElfImage &image, std::size_t sectionIndex)
{
    for (std::size_t i = 0; i < image.sections.size(); ++i) {
        const Elf32_Shdr &table = image.sections[i];
        // What is loaded must stay as it is.
        if (table.sh_type != SHT_SYMTAB || table.sh_entsize != kSymbolBytes ||
            !image.hasBytes(table) || image.isLoaded(image.rangeOf(table))) {
            continue;
        }
        SymbolTable symbols(image, i);
        if (symbols.choose(sectionIndex)) {
            symbols.apply();
        }
    }
}

}  // namespace preparation
