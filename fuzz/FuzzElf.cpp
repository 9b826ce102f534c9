#include "FuzzWords.h"

#include "files/firmware/ElfReader.h"
#include "files/firmware/SegmentList.h"
#include "support/ElfBytes.h"
#include "support/HexLines.h"

#include <algorithm>
#include <cstdlib>
#include <elf.h>
#include <span>
#include <sys/mman.h>
#include <unistd.h>

namespace
{

/// The reader wants a file by name: one file without a disk behind it serves all inputs.
QString storedInput(const std::uint8_t *data, std::size_t size)
{
    static const int handle = ::memfd_create("input", MFD_CLOEXEC);
    require(::ftruncate(handle, 0) == 0);
    require(::pwrite(handle, data, size, 0) == static_cast<ssize_t>(size));
    return QStringLiteral("/proc/self/fd/%1").arg(handle);
}

/// A number of a 32-bit file in its own byte order; 0 outside.
std::uint32_t numberAt(std::span<const std::uint8_t> file, std::size_t at, std::size_t width)
{
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < width && at + width <= file.size(); ++i) {
        value = value << 8 | file[at + (file[EI_DATA] == ELFDATA2MSB ? i : width - 1 - i)];
    }
    return value;
}

void tidy(FileData &image)
{
    FileSegmentsTri(&image);
    files::reduceSegments(image, 0xFF);
}

/// The segments read plainly: one for each header, then sorted and reduced.
files::RecordOwner<FileData> plainSegments(std::span<const std::uint8_t> file)
{
    files::RecordOwner<FileData> image(new FileData);
    const std::size_t table = numberAt(file, 28, 4);
    for (std::size_t i = 0; i < numberAt(file, 44, 2); ++i) {
        const std::size_t entry = table + i * 32;
        if (numberAt(file, entry, 4) != PT_LOAD) {
            continue;
        }
        const std::uint32_t size = numberAt(file, entry + 16, 4);
        auto *data = static_cast<std::uint8_t *>(std::malloc(std::size_t{size} + 1));
        if (size != 0) {
            const auto bytes = file.subspan(numberAt(file, entry + 4, 4), size);
            std::copy(bytes.begin(), bytes.end(), data);
        }
        image->segments.push_back({numberAt(file, entry + 12, 4), size, data});
        ++image->segmentCount;
    }
    tidy(*image);
    return image;
}

void compareSegments(const FileData &found, const FileData &expected)
{
    require(found.segmentCount == expected.segmentCount);
    for (std::size_t i = 0; i < expected.segments.size(); ++i) {
        const SegmentData &a = found.segments[i];
        const SegmentData &b = expected.segments[i];
        require(a.address == b.address && a.size == b.size);
        require(std::equal(a.data, a.data + a.size, b.data));
    }
}

}  // namespace

std::vector<std::vector<std::uint8_t>> fuzzSeeds()
{
    ElfPlan big = usualElf();
    big.isBigEndian = true;
    ElfPlan wide = usualElf();
    wide.is64 = true;
    ElfPlan object;
    object.type = 1;
    object.sections = usualElf().sections;
    ElfPlan bare;
    bare.segments = {{1, 0x10, {1}}, {1, 0x1B, {2}}, {0, 0, {}}, {1, 0x18, {3, 4}}};
    ElfPlan nested;
    nested.segments = {{1, 0, patternBytes(100)}, {1, 50, patternBytes(10)}, {1, 70, {1}}};
    return {elfBytes(nested), elfBytes(usualElf()), elfBytes(big),
            elfBytes(wide),   elfBytes(object),     elfBytes(bare)};
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    using files::ErrorCode;
    const QString path = storedInput(data, size);
    const auto read = files::readElf(path, 0xFF);
    if (read) {
        FileELF &elf = **read;
        require(elf.elfClass == 1 && elf.segmentCount == elf.segments.size());
        require(elf.segmentCount > 0 && elf.sections.size() == elf.sectionCount);
        require(elf.programHeaders.size() == elf.programHeaderCount);
        tidy(elf);
        compareSegments(elf, *plainSegments({data, size}));
        for (const symbols &symbol : elf.symbolTable) {
            require(symbol.name.size() <= size);
        }
    } else {
        requireWords(read.error(), {{ErrorCode::BadVersion, "64-bit ELF files are not supported"},
                                    {ErrorCode::NoMemory, "Unable to allocate memory"},
                                    {ErrorCode::BadValue, "the file has no ELF identification"},
                                    {ErrorCode::BadValue, "program headers of "},
                                    {ErrorCode::BadValue, "a head of "},
                                    {ErrorCode::Truncated, "the ELF head is cut short"},
                                    {ErrorCode::Truncated, "the program-header table ends "},
                                    {ErrorCode::Truncated, "the bytes of program header "},
                                    {ErrorCode::Missing, "no program header loads anything"}});
        require(read.error().code != ErrorCode::BadVersion || data[EI_CLASS] == ELFCLASS64);
    }
    const auto section = files::readElfSection(path, ".note");
    require(!section || section->data != nullptr);
    return 0;
}
