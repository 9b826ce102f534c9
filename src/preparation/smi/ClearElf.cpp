#include "preparation/smi/ClearElf.h"

#include "preparation/smi/ElfSegmentCut.h"
#include "preparation/smi/ElfSymbolCut.h"

#include <algorithm>
#include <climits>

namespace preparation
{

namespace
{

using files::ErrorCode;
using files::fail;
using files::Result;

constexpr std::size_t kSegmentBytes = sizeof(Elf32_Phdr);
constexpr std::size_t kSectionBytes = sizeof(Elf32_Shdr);
constexpr std::size_t kMostSegments = 0xFFFE;

FileRange segmentTable(const ElfImage &image, std::size_t count)
{
    return FileRange::of(image.head.e_phoff, count * kSegmentBytes);
}

FileRange sectionTable(const ElfImage &image)
{
    return FileRange::of(image.head.e_shoff, image.sections.size() * kSectionBytes);
}

/// Looks the section up and compares it with what the caller read earlier.
Result<std::size_t> findSection(const ElfImage &image, const ModuleSection &module)
{
    const auto name = std::find(image.names.begin(), image.names.end(), module.name);
    if (name == image.names.end()) {
        return fail(ErrorCode::BadValue, "The ELF file has no section " + module.name);
    }
    const auto index = static_cast<std::size_t>(name - image.names.begin());
    const Elf32_Shdr &section = image.sections[index];
    const FileRange range = image.rangeOf(section);
    if (range.empty()) {
        return fail(ErrorCode::BadValue, "The section " + module.name + " has no bytes");
    }
    if (section.sh_addr != module.address || section.sh_size != module.bytes.size() ||
        !std::equal(module.bytes.begin(), module.bytes.end(),
                    image.bytes.begin() + section.sh_offset)) {
        return fail(ErrorCode::BadValue,
                    "The section " + module.name + " has changed since the ELF file was read");
    }
    if (files::overlaps(range, FileRange{0, sizeof(Elf32_Ehdr)}) ||
        files::overlaps(range, segmentTable(image, image.segments.size())) ||
        files::overlaps(range, sectionTable(image))) {
        return fail(ErrorCode::BadValue,
                    "The section " + module.name + " lies over the ELF file's head or tables");
    }
    return index;
}

void clear(ElfImage &image, const FileRange &range)
{
    std::fill(image.bytes.begin() + static_cast<std::ptrdiff_t>(range.begin),
              image.bytes.begin() + static_cast<std::ptrdiff_t>(range.end), std::uint8_t{0});
}

/// Relocations of the section tell about its inside. Loaded ones are what runs and stay.
void dropRelocations(ElfImage &image, std::size_t index)
{
    for (Elf32_Shdr &section : image.sections) {
        const bool describes =
            (section.sh_type == SHT_REL || section.sh_type == SHT_RELA) && section.sh_info == index;
        const FileRange range = image.rangeOf(section);
        if (describes && !range.empty() && !image.isLoaded(range)) {
            clear(image, range);
            section.sh_size = 0;
        }
    }
}

/// Whether a table of `count` program headers fits where the old one is.
bool hasRoom(const ElfImage &image, std::size_t count)
{
    const FileRange wanted = segmentTable(image, count);
    const auto isFree = [&wanted](const FileRange &range) {
        return range.empty() || !files::overlaps(wanted, range);
    };
    return image.head.e_phoff >= sizeof(Elf32_Ehdr) && wanted.end <= image.bytes.size() &&
           isFree(sectionTable(image)) &&
           std::all_of(image.sections.begin(), image.sections.end(),
                       [&](const Elf32_Shdr &section) { return isFree(image.rangeOf(section)); }) &&
           std::all_of(image.segments.begin(), image.segments.end(),
                       [&](const Elf32_Phdr &segment) {
                           return segment.p_type == PT_PHDR || isFree(rangeOf(segment));
                       });
}

/// Writes head and tables where they fit: in place, or at the end of the file.
Result<void> writeTables(ElfImage &image, std::size_t oldCount)
{
    std::uint32_t segmentsAt = image.head.e_phoff;
    if (hasRoom(image, std::max(image.segments.size(), oldCount))) {
        clear(image, segmentTable(image, std::max(image.segments.size(), oldCount)));
        for (Elf32_Phdr &segment : image.segments) {
            if (segment.p_type == PT_PHDR) {
                segment.p_filesz = segment.p_memsz =
                    static_cast<std::uint32_t>(image.segments.size() * kSegmentBytes);
            }
        }
    } else {
        // The table isn't loaded where it goes, so nothing may say that it is.
        std::erase_if(image.segments,
                      [](const Elf32_Phdr &segment) { return segment.p_type == PT_PHDR; });
        segmentsAt =
            static_cast<std::uint32_t>(image.appendRoom(image.segments.size() * kSegmentBytes, 0));
    }
    std::uint32_t sectionsAt = image.head.e_shoff;
    if (image.isLoaded(sectionTable(image))) {
        sectionsAt =
            static_cast<std::uint32_t>(image.appendRoom(image.sections.size() * kSectionBytes, 0));
    }
    if (image.segments.size() > kMostSegments || image.bytes.size() > INT_MAX) {
        return fail(ErrorCode::TooLarge, "The clear ELF file would be too large");
    }
    image.writeTables(segmentsAt, sectionsAt);
    return {};
}

/// A part of a segment that holds no code any more isn't one to execute; checkers look at that.
void settleFlags(ElfImage &image, const std::vector<Elf32_Phdr> &old)
{
    const auto isOld = [&old](const Elf32_Phdr &segment) {
        return std::any_of(old.begin(), old.end(), [&segment](const Elf32_Phdr &one) {
            return one.p_offset == segment.p_offset && one.p_memsz == segment.p_memsz;
        });
    };
    for (Elf32_Phdr &segment : image.segments) {
        const bool hasCode =
            std::any_of(image.sections.begin(), image.sections.end(), [&](const auto &section) {
                return (section.sh_flags & SHF_EXECINSTR) != 0 &&
                       files::overlaps(image.rangeOf(section), rangeOf(segment));
            });
        if (segment.p_type == PT_LOAD && !hasCode && !isOld(segment)) {
            segment.p_flags &= ~std::uint32_t{PF_X};
        }
    }
}

std::size_t countDebugSections(const ElfImage &image)
{
    const auto count =
        std::count_if(image.names.begin(), image.names.end(), [](const std::string &name) {
            return name.starts_with(".debug") || name.starts_with(".zdebug");
        });
    return static_cast<std::size_t>(count);
}

}  // namespace

Result<ClearElf> ClearElf::make(ByteView file, const ModuleSection &module)
{
    const auto original = ElfImage::open(file);
    if (!original) {
        return tl::unexpected(original.error());
    }
    ElfImage image = *original;
    const auto index = findSection(image, module);
    if (!index) {
        return tl::unexpected(index.error());
    }
    const FileRange bytes = image.rangeOf(image.sections[*index]);
    const ElfHole hole{files::Range::of(module.address, module.bytes.size()), bytes};
    cutSegments(image.segments, hole);
    detachHead(image);
    dropRelocations(image, *index);
    removeLocalSymbols(image, *index);
    Elf32_Shdr &section = image.sections[*index];
    section.sh_type = SHT_NOBITS;
    // It is in no segment, so it can't claim to be loaded.
    section.sh_flags &= ~std::uint32_t{SHF_ALLOC | SHF_EXECINSTR};
    clear(image, bytes);
    settleFlags(image, original->segments);
    if (auto written = writeTables(image, original->segments.size()); !written) {
        return tl::unexpected(written.error());
    }
    const auto again = ElfImage::open(image.bytes);
    if (!again || !loadSame(*original, *again, hole)) {
        return fail(ErrorCode::Refused, "The finished clear ELF file was checked and dropped: it "
                                        "would load something else than the rest of the input");
    }
    ClearElf result;
    result.m_debugSections = countDebugSections(*original);
    result.m_bytes = QByteArray(reinterpret_cast<const char *>(image.bytes.data()),
                                static_cast<int>(image.bytes.size()));
    return result;
}

}  // namespace preparation
