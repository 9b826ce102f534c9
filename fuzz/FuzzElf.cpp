#include "FuzzSupport.h"

#include "files/FileManager.h"
#include "support/ElfBytes.h"

#include <cstdlib>
#include <sys/mman.h>
#include <unistd.h>

namespace
{

void require(bool claim)
{
    if (!claim) {
        std::abort();
    }
}

/// The reader wants a file by name: one file without a disk behind it serves all inputs.
QString storedInput(const std::uint8_t *data, std::size_t size)
{
    static const int handle = ::memfd_create("input", MFD_CLOEXEC);
    require(::ftruncate(handle, 0) == 0);
    require(::pwrite(handle, data, size, 0) == static_cast<ssize_t>(size));
    return QStringLiteral("/proc/self/fd/%1").arg(handle);
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
    return {elfBytes(usualElf()), elfBytes(big), elfBytes(wide), elfBytes(object), elfBytes(bare)};
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    QFile file(storedInput(data, size));
    FileManager manager;
    const files::RecordOwner<FileELF> elf(new FileELF);
    if (manager.ELF_Parsing(&file, elf.get())) {
        require(elf->elfClass == 1 && elf->segmentCount == elf->segments.size());
        require(elf->segmentCount > 0 && elf->sections.size() == elf->sectionCount);
        require(elf->programHeaders.size() == elf->programHeaderCount);
        for (const symbols &symbol : elf->symbolTable) {
            require(symbol.name.size() <= size);
        }
    }
    elf->type = file_type::kElf;
    unsigned char *section = nullptr;
    const int bytes = manager.GetDataFromSection(file.fileName().toStdString(), ".note", &section);
    require((bytes > 0) <= (section != nullptr));
    std::free(section);
    return 0;
}
