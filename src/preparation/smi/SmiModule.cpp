#include "preparation/smi/SmiModule.h"

#include "files/base/FileReader.h"
#include "preparation/smi/ClearElf.h"

#include <QFile>

#include <algorithm>
#include <elf.h>

namespace preparation
{

namespace
{

using files::ErrorCode;
using files::fail;
using files::Result;

Result<files::ByteBuffer> readElf(const std::string &path)
{
    QFile file;
    auto opened = files::openForReading(file, QString::fromStdString(path));
    if (!opened) {
        return tl::unexpected(opened.error());
    }
    return files::readAll(file);
}

}  // namespace

const section_header *findSection(const FileELF &elf, const std::string &name)
{
    const auto section =
        std::find_if(elf.sections.begin(), elf.sections.end(),
                     [&name](const section_header &one) { return one.name == name; });
    return section == elf.sections.end() ? nullptr : &*section;
}

SmiPlacement placementOf(const FileELF &elf, const section_header &section)
{
    const std::uint64_t begin = section.sectionAddress;
    const std::uint64_t end = begin + section.sectionSize;
    const std::uint64_t lastWord = (end - 1) / kFlashWordBytes;
    SmiPlacement placement;
    placement.misalignedStart = begin % kFlashWordBytes != 0;
    placement.misalignedEnd = end % kFlashWordBytes != 0;
    placement.singleWord = begin / kFlashWordBytes == lastWord;
    placement.nextInLastWord =
        placement.misalignedEnd &&
        std::any_of(elf.sections.begin(), elf.sections.end(), [&](const section_header &other) {
            return (other.sectionFlags & SHF_ALLOC) != 0 && other.sectionType != SHT_NOBITS &&
                   other.sectionSize != 0 && other.sectionAddress >= end &&
                   other.sectionAddress / kFlashWordBytes == lastWord;
        });
    return placement;
}

Result<SmiModule> buildModule(const std::string &elfPath, const FileELF *elf,
                              const std::string &name, SmiRequest request,
                              std::vector<std::string> &notices)
{
    if (elf == nullptr || elf->type != file_type::kElf) {
        return fail(ErrorCode::BadValue, "There is no ELF record");
    }
    const section_header *const section = findSection(*elf, name);
    if (section == nullptr) {
        return fail(ErrorCode::BadValue, "The ELF file has no section " + name);
    }
    request.loadAddress = static_cast<std::uint32_t>(section->sectionAddress);
    auto file = buildSmi(request);
    if (!file) {
        return tl::unexpected(file.error());
    }
    const auto elfBytes = readElf(elfPath);
    if (!elfBytes) {
        return fail(elfBytes.error().code, "The ELF file can't be read: " + elfBytes.error().text);
    }
    const auto clear =
        ClearElf::make(elfBytes->span(), {name, request.loadAddress, request.section});
    if (!clear) {
        return tl::unexpected(clear.error());
    }
    if (const std::size_t count = clear->debugSections(); count != 0) {
        notices.push_back("The clear ELF file keeps " + std::to_string(count) +
                          " debug sections, which describe the module's inside");
    }
    return SmiModule{std::move(*file), request.loadAddress, clear->bytes(),
                     placementOf(*elf, *section)};
}

}  // namespace preparation
