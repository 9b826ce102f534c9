// For scripts/check-elf.py: what the reader makes of ELF files, one line for each thing.
#include "files/FileManager.h"

#include <QByteArray>
#include <QString>

#include <cstdio>

namespace
{

std::string hexOf(const SegmentData &segment)
{
    return QByteArray(reinterpret_cast<const char *>(segment.data), static_cast<int>(segment.size))
        .toHex()
        .toStdString();
}

void print(const FileELF &elf)
{
    std::printf("head %u %u %lu %u %lu %lu\n", elf.elfType, elf.machine, elf.entry, elf.flags,
                elf.segmentsOffset, elf.sectionsOffset);
    for (const program_header &head : elf.programHeaders) {
        std::printf("program %u %lu %lu %lu %lu %u %lu\n", head.headerType, head.virtualAddress,
                    head.physicalAddress, head.fileSize, head.memorySize, head.headerFlags,
                    head.align);
    }
    for (const section_header &head : elf.sections) {
        std::printf("section %u %s %u %lu %lu %lu %lu %lu %u %u %lu\n", head.index,
                    head.name.empty() ? "-" : head.name.c_str(), head.sectionType,
                    head.sectionAddress, head.fileOffset, head.sectionSize, head.entrySize,
                    head.sectionFlags, head.link, head.info, head.addrAlign);
    }
    for (const symbols &symbol : elf.symbolTable) {
        std::printf("symbol %lu %lu %u %u %u %s\n", symbol.value, symbol.symbolSize,
                    symbol.symbolType, symbol.bind, symbol.sectionIndex,
                    symbol.name.empty() ? "-" : symbol.name.c_str());
    }
    for (const SegmentData &segment : elf.segments) {
        std::printf("bytes %u %s\n", segment.address, hexOf(segment).c_str());
    }
}

}  // namespace

int main(int argc, char **argv)
{
    for (int at = 1; at < argc; ++at) {
        FileType *record = nullptr;
        const bool isRead =
            FileManager().Open(QString(argv[at]).toStdWString(), &record, 0xFF, 0, 0);
        std::printf("file %s\n", isRead ? "read" : "refused");
        if (isRead) {
            print(static_cast<const FileELF &>(*record));
        }
        files::releaseRecord(record);
    }
    return 0;
}
