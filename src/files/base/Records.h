#pragma once
#include "files/base/Ownership.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

/// @file
/// The in-memory record of every file the program reads. Field order and widths are a contract with
/// the image builder: plain structures, no virtual operations. Payload pointers come from `malloc`.
/// Addresses and sizes are unsigned 32-bit; sizes count bytes.

/// Value of `FileType::type`.
namespace file_type
{
inline constexpr std::uint32_t kBinary = 0;
inline constexpr std::uint32_t kIntelHex = 2;
inline constexpr std::uint32_t kSRecord = 3;
inline constexpr std::uint32_t kElf = 4;
inline constexpr std::uint32_t kTsv = 5;
inline constexpr std::uint32_t kCsv = 6;
inline constexpr std::uint32_t kSfi = 7;
inline constexpr std::uint32_t kSmi = 8;
inline constexpr std::uint32_t kObk = 9;
inline constexpr std::uint32_t kSmu = 10;
inline constexpr std::uint32_t kSsfi = 11;
inline constexpr std::uint32_t kMcsv = 12;
}  // namespace file_type

/// Common head of all records; says which record it really is. Destroy a record with
/// `files::releaseRecord`, never through this head.
struct FileType {
    std::uint32_t type = 0;
};

/// One contiguous block of firmware.
struct SegmentData {
    std::uint32_t address = 0;     ///< load address of the first byte
    std::uint32_t size = 0;        ///< bytes
    std::uint8_t *data = nullptr;  ///< `malloc` block of at least `size` bytes
};

/// A firmware image: types 0, 2, 3, 4, 6, 8, 9 and 10.
struct FileData : FileType {
    std::uint32_t segmentCount = 0;  ///< kept beside the list and read in preference to its size
    std::vector<SegmentData> segments;
};

/// A provisioning file: its 12-byte head as three words; the one segment holds the rest.
struct FileOBK : FileData {
    std::uint32_t obkAddress = 0;
    std::uint32_t obkSize = 0;
    std::uint32_t obkWord3 = 0;
};

/// One area of a protected image.
struct SegmentSFI {
    std::uint32_t address = 0;  ///< destination address
    std::uint32_t size = 0;     ///< bytes of `data`
    std::uint8_t *data = nullptr;
    std::uint8_t areaType = 0;           ///< type letter, ASCII
    std::uint8_t *areaHeader = nullptr;  ///< raw copy
    std::uint32_t areaHeaderSize = 0;    ///< 30 or 46
    std::uint8_t *tag = nullptr;         ///< authentication tag
    std::uint32_t tagSize = 0;           ///< 16
};

/// A protected image (types 7 and 11); `segmentCount` counts areas, `segments` stays empty.
struct FileSFI : FileData {
    std::uint8_t *header = nullptr;  ///< raw copy of the file's head
    std::uint32_t headerSize = 0;    ///< 28, 32 or 128
    std::uint16_t version = 0;       ///< format version of the file
    std::uint32_t imageVersion = 0;
    std::uint8_t *nonce = nullptr;
    std::uint32_t nonceSize = 0;  ///< 16
    std::vector<SegmentSFI> areas;
};

/// A tag-length-value entry of a secure module image.
struct TLV {
    const char *name = nullptr;  ///< static text
    std::uint16_t tlvType = 0;
    std::uint16_t length = 0;
    std::uint8_t *value = nullptr;  ///< `length` + 1 bytes
};

/// A secure module image (type 10).
struct FileSMU : FileData {
    std::uint32_t magic = 0;
    std::uint32_t loadAddress = 0;
    std::uint16_t headerSize = 0;
    std::uint16_t protectedTlvSize = 0;
    std::uint32_t imageSize = 0;
    std::uint32_t flags = 0;
    std::uint8_t versionMajor = 0;
    std::uint8_t versionMinor = 0;
    std::uint16_t versionRevision = 0;
    std::uint32_t versionBuild = 0;
    std::vector<TLV> protectedTlvs;
    std::vector<TLV> tlvs;
    std::uint8_t moduleFlag = 0;
};

struct section_header {
    std::uint16_t index = 0;
    std::string name;
    std::uint64_t fileOffset = 0;
    std::uint32_t sectionType = 0;
    std::uint64_t sectionFlags = 0;
    std::uint32_t info = 0;
    std::uint32_t link = 0;
    std::uint64_t addrAlign = 0;
    std::uint64_t entrySize = 0;
    std::uint64_t sectionAddress = 0;
    std::uint64_t sectionSize = 0;
    std::uint32_t nameOffset = 0;
};

struct program_header {
    std::uint32_t headerType = 0;
    std::uint64_t reserved = 0;  ///< keeps the layout; no reader sets it
    std::uint32_t headerFlags = 0;
    std::uint64_t align = 0;
    std::uint64_t virtualAddress = 0;
    std::uint64_t physicalAddress = 0;
    std::uint64_t fileSize = 0;
    std::uint64_t memorySize = 0;
};

struct symbols {
    std::string name;
    std::uint64_t value = 0;
    std::uint64_t symbolSize = 0;
    std::uint8_t bind = 0;
    std::uint8_t symbolType = 0;
    std::uint16_t sectionIndex = 0;
    std::uint8_t other = 0;
};

struct relocations {
    std::uint64_t offset = 0;
    std::uint32_t symbolIndex = 0;
    std::uint32_t relocationType = 0;
    std::int64_t addend = 0;
};

/// `descriptor` points into the reader's own buffer: compare it with null, never read it.
struct notes {
    std::uint32_t noteType = 0;
    std::string name;
    const void *descriptor = nullptr;
    std::uint32_t descriptorSize = 0;
};

struct dynamic_entry {
    std::uint64_t tag = 0;
    std::uint64_t value = 0;
    std::string name;
};

/// A 32-bit ELF file (type 4): one segment for each PT_LOAD header, then head and tables.
struct FileELF : FileData {
    std::uint8_t elfClass = 0;
    std::uint8_t elfVersion = 0;
    std::uint8_t encoding = 0;
    std::uint32_t version = 0;
    std::uint16_t headerSize = 0;
    std::uint16_t sectionEntrySize = 0;
    std::uint16_t sectionCount = 0;
    std::uint16_t segmentEntrySize = 0;
    std::uint16_t programHeaderCount = 0;
    std::uint8_t osAbi = 0;
    std::uint8_t abiVersion = 0;
    std::uint16_t elfType = 0;
    std::uint16_t machine = 0;
    std::uint32_t flags = 0;
    std::uint64_t entry = 0;
    std::uint64_t sectionsOffset = 0;
    std::uint64_t segmentsOffset = 0;
    std::uint16_t sectionNameIndex = 0;
    std::vector<section_header> sections;
    std::vector<program_header> programHeaders;
    std::vector<symbols> symbolTable;
    std::vector<relocations> relocationTable;
    std::vector<dynamic_entry> dynamicTable;  ///< part of the layout; stays empty
    std::vector<notes> noteTable;
};

/// One row of a layout file; heap copies with terminators.
struct partition {
    char *opt = nullptr;
    unsigned long id = 0;
    char *name = nullptr;
    char *partitionType = nullptr;
    char *ip = nullptr;
    char *offset = nullptr;
    wchar_t *binary = nullptr;
};

/// A layout file (type 5).
struct FileTSV : FileType {
    char *text = nullptr;
    std::uint32_t textSize = 0;  ///< without the terminator
    std::vector<partition> partitions;
};

/// One module of a modules list.
struct SegmentDataMCSV {
    std::uint32_t licenceIsFile = 0;  ///< 1 when the row named a licence file
    std::uint32_t address = 0;
    std::uint32_t moduleSize = 0;
    std::uint32_t licenceSize = 0;
    std::uint32_t hsmFwIdSize = 0;
    std::uint8_t *licence = nullptr;
    std::uint8_t *hsmFwId = nullptr;  ///< not NUL-terminated
    std::uint8_t *module = nullptr;
    char *moduleName = nullptr;  ///< as written in the list
};

/// A modules list (type 12), at most 8 modules.
struct FileMCSV : FileType {
    std::uint32_t moduleCount = 0;
    std::vector<SegmentDataMCSV> modules;
};

/// What the user told about one external firmware file.
struct ExtBinInfo {
    std::uint32_t startAddress = 0;
    std::uint32_t regionNumber = 0;
    std::uint32_t regionMode = 0;
    std::uint32_t keyAddress = 0;
};

namespace files
{

/// Frees every payload of a record, then destroys the record by its real kind. Null is fine.
/// Payloads shared with a merged image must not be freed twice: see `MergeFiles`.
void releaseRecord(FileType *record) noexcept;

/// Destroys a record by its kind but leaves its payloads alone: for the result of `MergeFiles`,
/// whose segments belong to its sources.
void releaseRecordHead(FileType *record) noexcept;

struct RecordDeleter {
    void operator()(FileType *record) const noexcept { releaseRecord(record); }
};
struct RecordHeadDeleter {
    void operator()(FileType *record) const noexcept { releaseRecordHead(record); }
};

/// Gives a record its one segment, at address 0.
/// @param block  of at least `size` bytes; the record takes it over, also when memory is short
void storeOnlySegment(FileData &record, MallocArray<std::uint8_t> block, std::uint32_t size);

/// Owner of a record and of all its payloads.
template <typename Record>
using RecordOwner = std::unique_ptr<Record, RecordDeleter>;
/// Owner of a record whose payloads belong to others.
template <typename Record>
using RecordView = std::unique_ptr<Record, RecordHeadDeleter>;

}  // namespace files
