#pragma once
#include "files/base/Records.h"
#include "files/base/Result.h"

#include <QIODevice>

#include <cstdint>
#include <elf.h>
#include <optional>
#include <span>
#include <vector>

namespace files
{

/// The head of an ELF file, in host byte order.
struct ElfHead {
    std::uint8_t elfClass = 0;  ///< ELFCLASS32 or ELFCLASS64
    std::uint8_t encoding = 0;  ///< ELFDATA2LSB or ELFDATA2MSB
    std::uint8_t identVersion = 0;
    std::uint8_t osAbi = 0;
    std::uint8_t abiVersion = 0;
    Elf64_Ehdr fields = {};  ///< the wide form for both classes
};

/// A program header and where its bytes stand.
struct ElfSegment {
    program_header header;
    std::uint64_t fileOffset = 0;
};

/// An ELF file of either class and byte order, opened for reading its tables and contents. What is
/// read and from where is checked against the file's size; fields come through the byte cursor.
class ElfFile
{
public:
    /// Reads head, program headers and section table.
    /// @param device  open and random-access; must outlive the object
    /// @return BadValue or Truncated when the head, the program-header table or the bytes of a
    ///         program header don't stand in the file. Bad sections are no fault: a table of
    ///         strange entry size has none, and entries beyond the file's end are dropped
    static Result<ElfFile> load(QIODevice &device);

    [[nodiscard]] const ElfHead &head() const { return m_head; }
    [[nodiscard]] const std::vector<ElfSegment> &segments() const { return m_segments; }

    /// With their names; one whose name doesn't stand in the name table has none.
    [[nodiscard]] const std::vector<section_header> &sections() const { return m_sections; }

    /// Bytes of the whole file.
    [[nodiscard]] std::uint64_t size() const { return m_size; }

    /// Fills `bytes` from `offset` bytes into the file on. @return false when they aren't there
    bool read(std::uint64_t offset, std::span<std::uint8_t> bytes) const;

    /// Whether the section has bytes of its own, all of them inside the file.
    [[nodiscard]] bool hasData(const section_header &section) const;

    /// The section's bytes as they stand; empty when it has none.
    [[nodiscard]] std::vector<std::uint8_t> data(const section_header &section) const;

    /// The entries of a 32-bit section in host form; none when entries are too small.
    [[nodiscard]] std::vector<Elf32_Sym> symbolsOf(const section_header &section) const;
    [[nodiscard]] std::vector<Elf32_Rela> relocationsOf(const section_header &section) const;

    /// Three words in host form, as they begin a note.
    [[nodiscard]] Elf32_Nhdr noteHead(std::span<const std::uint8_t, 12> bytes) const;

private:
    explicit ElfFile(QIODevice &device);

    Result<void> loadTables();
    Result<void> loadSegments();
    void loadSections();
    [[nodiscard]] bool is64() const { return m_head.elfClass == ELFCLASS64; }
    [[nodiscard]] std::optional<std::vector<std::uint8_t>>
    table(std::uint64_t offset, std::uint64_t count, std::size_t entryBytes) const;
    template <typename Entry, typename ReadEntry>
    [[nodiscard]] std::vector<Entry> entriesOf(const section_header &section,
                                               ReadEntry readEntry) const;
    [[nodiscard]] bool contains(std::uint64_t offset, std::uint64_t size) const;
    void nameSections();

    QIODevice *m_device;
    std::uint64_t m_size;
    ElfHead m_head;
    std::vector<ElfSegment> m_segments;
    std::vector<section_header> m_sections;
};

/// The names of a string table, with a limit on all names together: a forged table without ends
/// would otherwise be copied once for each entry that points into it.
class ElfNames
{
public:
    /// @param fileBytes  size of the file, of which the limit is a small multiple; names beyond the
    ///                   limit are empty
    explicit ElfNames(std::uint64_t fileBytes);

    /// @return the name at `offset`, to the table's end when it has no end of its own; empty when
    ///         `offset` is outside
    std::string at(std::span<const std::uint8_t> table, std::uint64_t offset);

private:
    std::uint64_t m_left;
};

}  // namespace files
