#include "files/base/Records.h"

#include <cstdlib>

namespace files
{

namespace
{

void freeSegments(FileData &record)
{
    for (const SegmentData &segment : record.segments) {
        std::free(segment.data);
    }
}

void freeTlvs(const std::vector<TLV> &list)
{
    for (const TLV &entry : list) {
        std::free(entry.value);
    }
}

void freePayload(FileSFI &image)
{
    std::free(image.header);
    std::free(image.nonce);
    for (const SegmentSFI &area : image.areas) {
        std::free(area.data);
        std::free(area.areaHeader);
        std::free(area.tag);
    }
    // `segments` of an SSFI may list the areas a second time; the blocks are the areas' own.
}

void freePayload(FileTSV &layout)
{
    std::free(layout.text);
    for (const partition &row : layout.partitions) {
        std::free(row.opt);
        std::free(row.name);
        std::free(row.partitionType);
        std::free(row.ip);
        std::free(row.offset);
        std::free(row.binary);
    }
}

void freePayload(FileMCSV &list)
{
    for (const SegmentDataMCSV &module : list.modules) {
        std::free(module.licence);
        std::free(module.hsmFwId);
        std::free(module.module);
        std::free(module.moduleName);
    }
}

}  // namespace

void releaseRecord(FileType *record) noexcept
{
    if (record == nullptr) {
        return;
    }
    switch (record->type) {
    case file_type::kSfi:
    case file_type::kSsfi:
        freePayload(*static_cast<FileSFI *>(record));
        break;
    case file_type::kTsv:
        freePayload(*static_cast<FileTSV *>(record));
        break;
    case file_type::kMcsv:
        freePayload(*static_cast<FileMCSV *>(record));
        break;
    case file_type::kSmu:
        freeTlvs(static_cast<FileSMU *>(record)->tlvs);
        freeTlvs(static_cast<FileSMU *>(record)->protectedTlvs);
        freeSegments(*static_cast<FileData *>(record));
        break;
    default:
        freeSegments(*static_cast<FileData *>(record));
        break;
    }
    releaseRecordHead(record);
}

void releaseRecordHead(FileType *record) noexcept
{
    // The head's type is the only thing that tells which destructor fits.
    if (record == nullptr) {
        return;
    }
    switch (record->type) {
    case file_type::kSfi:
    case file_type::kSsfi:
        delete static_cast<FileSFI *>(record);
        break;
    case file_type::kTsv:
        delete static_cast<FileTSV *>(record);
        break;
    case file_type::kMcsv:
        delete static_cast<FileMCSV *>(record);
        break;
    case file_type::kSmu:
        delete static_cast<FileSMU *>(record);
        break;
    case file_type::kElf:
        delete static_cast<FileELF *>(record);
        break;
    case file_type::kObk:
        delete static_cast<FileOBK *>(record);
        break;
    default:
        delete static_cast<FileData *>(record);
        break;
    }
}

void storeOnlySegment(FileData &record, MallocArray<std::uint8_t> block, std::uint32_t size)
{
    record.segments.reserve(1);  // a throw here must still find the block owned
    record.segments.push_back({0, size, block.release()});
    record.segmentCount = 1;
}

}  // namespace files
