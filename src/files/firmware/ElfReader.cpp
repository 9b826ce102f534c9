#include "files/firmware/ElfReader.h"
#include "files/base/ByteCursor.h"
#include "files/base/FileReader.h"
#include "files/base/PageBlock.h"
#include "files/firmware/ElfFile.h"

#include <QFileInfo>
#include <QtEndian>

#include <algorithm>
#include <new>

namespace files
{

namespace
{

constexpr std::uint64_t kMiB = std::uint64_t{1024} * 1024;

tl::unexpected<Error> outOfMemory()
{
    return fail(ErrorCode::NoMemory, "Unable to allocate memory");
}

/// @param input  is opened, and must outlive the result
Result<ElfFile> openElf(QFile &input, const QString &path)
{
    if (const auto opened = openForReading(input, path); !opened) {
        return tl::unexpected<Error>(opened.error());
    }
    return ElfFile::load(input);
}

void storeHead(const ElfFile &file, FileELF *elf)
{
    const Elf64_Ehdr &head = file.head().fields;
    elf->elfClass = file.head().elfClass;
    elf->elfVersion = file.head().identVersion;
    elf->encoding = file.head().encoding;
    elf->version = head.e_version;
    elf->headerSize = head.e_ehsize;
    elf->sectionEntrySize = head.e_shentsize;
    elf->sectionCount = static_cast<std::uint16_t>(file.sections().size());
    elf->segmentEntrySize = head.e_phentsize;
    elf->programHeaderCount = static_cast<std::uint16_t>(file.segments().size());
    elf->osAbi = file.head().osAbi;
    elf->abiVersion = file.head().abiVersion;
    elf->elfType = head.e_type;
    elf->machine = head.e_machine;
    elf->flags = head.e_flags;
    elf->entry = head.e_entry;
    elf->sectionsOffset = head.e_shoff;
    elf->segmentsOffset = head.e_phoff;
    elf->sectionNameIndex = head.e_shstrndx;
}

void storeSections(const ElfFile &file, FileELF *elf)
{
    elf->sections = file.sections();
    if (file.head().encoding != ELFDATA2MSB) {
        return;
    }
    // Offsets have always been shown as the raw little-endian words of the table.
    for (section_header &section : elf->sections) {
        section.fileOffset = qbswap(static_cast<quint32>(section.fileOffset));
    }
}

/// A PT_LOAD header that is to become a segment, or a part of one.
struct Load {
    std::uint32_t address = 0;
    std::uint32_t size = 0;
    std::uint64_t fileOffset = 0;
};

/// Neighbours that will be one segment in the end, and where it ends: one past its last byte.
struct LoadRun {
    std::vector<Load> loads;
    std::uint64_t end = 0;
};

std::vector<Load> loadsOf(const ElfFile &file)
{
    std::vector<Load> loads;
    for (const ElfSegment &segment : file.segments()) {
        if (segment.header.headerType == PT_LOAD) {
            loads.push_back({static_cast<std::uint32_t>(segment.header.physicalAddress),
                             static_cast<std::uint32_t>(segment.header.fileSize),
                             segment.fileOffset});
        }
    }
    return loads;
}

/// Puts neighbours together, so that their bytes are read to where they stay: code and initial data
/// hardly ever have a hole between them. Each load stays alone when any two of them overlap, as
/// then the order of joining decides which bytes win.
std::vector<LoadRun> runsOf(std::vector<Load> loads)
{
    constexpr std::uint64_t kWidestGap = 31;
    std::stable_sort(loads.begin(), loads.end(),
                     [](const Load &a, const Load &b) { return a.address < b.address; });
    std::vector<LoadRun> runs;
    bool isOrdered = true;
    for (const Load &load : loads) {
        const std::uint64_t end = std::uint64_t{load.address} + load.size;
        const bool follows = !runs.empty() && load.address >= runs.back().end;
        isOrdered = isOrdered && end <= UINT32_MAX && (runs.empty() || follows);
        if (isOrdered && follows && load.address - runs.back().end <= kWidestGap) {
            runs.back().loads.push_back(load);
            runs.back().end = end;
        } else {
            runs.push_back({{load}, end});
        }
    }
    if (!isOrdered) {
        runs.clear();
        for (const Load &load : loads) {
            runs.push_back({{load}, std::uint64_t{load.address} + load.size});
        }
    }
    return runs;
}

Result<void> storeRun(const ElfFile &file, const LoadRun &run, std::uint8_t padding, FileELF *elf)
{
    const std::uint32_t address = run.loads.front().address;
    const auto size = static_cast<std::size_t>(run.end - address);
    MallocArray<std::uint8_t> block = allocateBlock(size + 1);
    if (!block) {
        return outOfMemory();
    }
    const std::span<std::uint8_t> bytes(block.get(), size);
    std::size_t filled = 0;
    for (const Load &load : run.loads) {
        const std::size_t at = load.address - address;
        std::fill_n(bytes.begin() + static_cast<std::ptrdiff_t>(filled), at - filled, padding);
        if (load.size != 0 && !file.read(load.fileOffset, bytes.subspan(at, load.size))) {
            return fail(ErrorCode::ReadFailed, "the bytes of a segment can't be read");
        }
        filled = at + load.size;
    }
    elf->segments.push_back({address, static_cast<std::uint32_t>(size), nullptr});
    elf->segments.back().data = block.release();  // the record owns it from here
    ++elf->segmentCount;
    return {};
}

Result<void> storeLoads(const ElfFile &file, std::uint8_t padding, FileELF *elf)
{
    for (const ElfSegment &segment : file.segments()) {
        elf->programHeaders.push_back(segment.header);
    }
    const std::vector<Load> loads = loadsOf(file);
    // Forged headers may all name the same bytes; real ones hardly do.
    const std::uint64_t most = std::max(4 * file.size(), 256 * kMiB);
    std::uint64_t total = 0;
    for (const Load &load : loads) {
        total += load.size;
    }
    if (total > most) {
        return outOfMemory();
    }
    for (const LoadRun &run : runsOf(loads)) {
        if (auto stored = storeRun(file, run, padding, elf); !stored) {
            return stored;
        }
    }
    return {};
}

/// Fills the lists that come from sections. All tables together may take as many bytes as the file
/// has, or a little more: only forged sections share their bytes.
class TableReader
{
public:
    TableReader(const ElfFile &file, FileELF *elf)
        : m_file(file), m_elf(elf), m_left(std::max(file.size(), 16 * kMiB)), m_names(file.size())
    {
    }

    void run()
    {
        for (const section_header &section : m_file.sections()) {
            if (section.sectionType == SHT_SYMTAB && afford(section)) {
                storeSymbols(section);
            }
        }
        for (const section_header &section : m_file.sections()) {
            if (section.sectionType == SHT_RELA && afford(section)) {
                storeRelocations(section);
            }
        }
        for (const section_header &section : m_file.sections()) {
            if (section.sectionType == SHT_NOTE && afford(section)) {
                storeNotes(m_file.data(section));
            }
        }
    }

private:
    bool afford(const section_header &section)
    {
        if (!m_file.hasData(section) || section.sectionSize > m_left) {
            return false;
        }
        m_left -= section.sectionSize;
        return true;
    }

    /// The string table that a symbol table names; the last one is kept.
    const std::vector<std::uint8_t> &strings(std::uint32_t index)
    {
        if (index != m_stringsIndex) {
            m_stringsIndex = index;
            m_strings.clear();
            if (index < m_file.sections().size() && afford(m_file.sections()[index])) {
                m_strings = m_file.data(m_file.sections()[index]);
            }
        }
        return m_strings;
    }

    void storeSymbols(const section_header &section)
    {
        const std::vector<Elf32_Sym> entries = m_file.symbolsOf(section);
        const std::vector<std::uint8_t> &text = strings(section.link);
        for (const Elf32_Sym &entry : entries) {
            symbols &symbol = m_elf->symbolTable.emplace_back();
            symbol.name = m_names.at(text, entry.st_name);
            symbol.value = entry.st_value;
            symbol.symbolSize = entry.st_size;
            symbol.bind = entry.st_info >> 4;
            symbol.symbolType = entry.st_info & 15;
            symbol.sectionIndex = entry.st_shndx;
            symbol.other = entry.st_other;
        }
    }

    void storeRelocations(const section_header &section)
    {
        for (const Elf32_Rela &entry : m_file.relocationsOf(section)) {
            m_elf->relocationTable.push_back(
                {entry.r_offset, entry.r_info >> 8, entry.r_info & 255, entry.r_addend});
        }
    }

    /// Names and descriptors are padded to words; a note that runs over ends the walk.
    void storeNotes(const std::vector<std::uint8_t> &data)
    {
        const auto padded = [](std::uint32_t size) { return (std::uint64_t{size} + 3) / 4 * 4; };
        ByteCursor in(data);
        while (in.left() >= sizeof(Elf32_Nhdr)) {
            const Elf32_Nhdr head =
                m_file.noteHead(in.bytes(sizeof(Elf32_Nhdr)).first<sizeof(Elf32_Nhdr)>());
            const auto name = in.bytes(static_cast<std::size_t>(padded(head.n_namesz)));
            const auto descriptor = in.bytes(static_cast<std::size_t>(padded(head.n_descsz)));
            if (!in.ok()) {
                return;
            }
            notes &note = m_elf->noteTable.emplace_back();
            note.noteType = head.n_type;
            note.name = m_names.at(name.first(head.n_namesz), 0);
            note.descriptorSize = head.n_descsz;
            note.descriptor = head.n_descsz == 0 ? nullptr : descriptor.data();
        }
    }

    const ElfFile &m_file;
    FileELF *m_elf;
    std::uint64_t m_left;  ///< bytes of tables that may still be read
    ElfNames m_names;
    std::uint32_t m_stringsIndex = SHN_UNDEF;
    std::vector<std::uint8_t> m_strings;
};

}  // namespace

Result<RecordOwner<FileELF>> readElf(const QString &path, std::uint8_t padding)
{
    QFile input;
    const auto loaded = openElf(input, path);
    if (!loaded) {
        return tl::unexpected<Error>(loaded.error());
    }
    if (loaded->head().elfClass == ELFCLASS64) {
        return fail(ErrorCode::BadVersion, "64-bit ELF files are not supported");
    }
    RecordOwner<FileELF> elf(new FileELF);
    elf->type = file_type::kElf;
    storeHead(*loaded, elf.get());
    if (elf->headerSize != sizeof(Elf32_Ehdr)) {
        return fail(ErrorCode::BadValue, "a head of " + std::to_string(elf->headerSize) +
                                             " bytes instead of " +
                                             std::to_string(sizeof(Elf32_Ehdr)));
    }
    storeSections(*loaded, elf.get());
    if (auto stored = storeLoads(*loaded, padding, elf.get()); !stored) {
        return tl::unexpected<Error>(stored.error());
    }
    TableReader(*loaded, elf.get()).run();
    if (elf->segmentCount == 0) {
        return fail(ErrorCode::Missing, "no program header loads anything");
    }
    return elf;
}

Result<OwnedSegment> readElfSection(const QString &path, const std::string &name)
{
    constexpr std::uint64_t kLargest = 0x1FFFFFFF;
    QFile input;
    const auto loaded = openElf(input, path);
    if (!loaded) {
        return tl::unexpected<Error>(loaded.error());
    }
    const auto &list = loaded->sections();
    const auto section = std::find_if(list.begin(), list.end(),
                                      [&name](const auto &one) { return one.name == name; });
    if (section == list.end()) {
        return fail(ErrorCode::Missing, "no section has this name");
    }
    const auto size = static_cast<std::size_t>(section->sectionSize);
    OwnedSegment bytes;
    if (size <= kLargest) {
        // A section without bytes of its own reads as zeros.
        bytes.data.reset(static_cast<std::uint8_t *>(std::calloc(size + 1, 1)));
    }
    if (!bytes.data) {
        return outOfMemory();
    }
    bytes.size = static_cast<std::uint32_t>(size);
    if (loaded->hasData(*section)) {
        loaded->read(section->fileOffset, {bytes.data.get(), size});
    }
    return bytes;
}

}  // namespace files
