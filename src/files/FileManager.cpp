#include "files/FileManager.h"

#include "files/Reporting.h"
#include "files/base/FileReader.h"
#include "files/containers/ObkReader.h"
#include "files/containers/SmiReader.h"
#include "files/firmware/BinaryReader.h"
#include "files/firmware/SegmentList.h"

#include <QFileInfo>
#include <QRegExp>

#include <new>

namespace
{

using files::ErrorCode;
using files::RecordOwner;
using report::Level;
using OwnedRecord = RecordOwner<FileType>;

/// The record, or null after the error's own text has been reported.
template <typename Record>
OwnedRecord orReport(files::Result<RecordOwner<Record>> record)
{
    if (!record) {
        files::reportText(record.error());
        return nullptr;
    }
    return std::move(*record);
}

OwnedRecord readSmi(FileManager &, QFile &file)
{
    auto record = files::readSmi(file);
    if (!record && record.error().code == ErrorCode::BadMagic) {
        report::message(Level::Error, L"The file %ls is not an SMI image",
                        files::nameWithoutFolder(file).c_str());
        return nullptr;
    }
    return orReport(std::move(record));
}

OwnedRecord readObk(FileManager &, QFile &file)
{
    return orReport(files::readObk(file));
}

/// Runs a reader of its own file over a fresh record of its kind.
template <typename Record, auto Parse, std::uint32_t Type>
OwnedRecord readWith(FileManager &manager, QFile &file)
{
    RecordOwner<Record> record(new Record);
    record->type = Type;  // decides how the record is released, also after a failure
    if (!(manager.*Parse)(&file, record.get())) {
        return nullptr;
    }
    return record;
}

constexpr auto readHexSrec =
    &readWith<FileData, &FileManager::HexSrec_Parsing, file_type::kIntelHex>;

constexpr auto readElf = &readWith<FileELF, &FileManager::ELF_Parsing, file_type::kElf>;
constexpr auto readCsv = &readWith<FileData, &FileManager::extract_csv_config, file_type::kCsv>;
constexpr auto readSfi = &readWith<FileSFI, &FileManager::SFI_Parsing, file_type::kSfi>;
constexpr auto readSsfi = &readWith<FileSFI, &FileManager::SSFI_Parsing, file_type::kSsfi>;

constexpr auto readModules =
    &readWith<FileMCSV, &FileManager::extract_mcsv_config, file_type::kMcsv>;

constexpr auto readLayout = &readWith<FileTSV, &FileManager::filter_tsv_file, file_type::kTsv>;

OwnedRecord readSmu(FileManager &manager, QFile &file)
{
    RecordOwner<FileSMU> record(new FileSMU);
    record->type = file_type::kSmu;
    if (!manager.SMU_Parsing(&file, file.size(), record.get())) {
        return nullptr;
    }
    return record;
}

struct Format {
    const char *ending;
    OwnedRecord (*read)(FileManager &manager, QFile &file);
};

constexpr Format kFormats[] = {
    {".smi", readSmi},     {".smu", readSmu},      {".hex", readHexSrec}, {".srec", readHexSrec},
    {".s19", readHexSrec}, {".elf", readElf},      {".axf", readElf},     {".o", readElf},
    {".so", readElf},      {".out", readElf},      {".tsv", readLayout},  {".csv", readCsv},
    {".kcsv", readCsv},    {".sfi", readSfi},      {".sfix", readSfi},    {".ssfi", readSsfi},
    {".obk", readObk},     {".mcsv", readModules},
};

/// @return the reader for the path's ending, or null when no format claims it
const Format *formatOf(const QString &path)
{
    for (const Format &format : kFormats) {
        if (path.endsWith(QLatin1String(format.ending), Qt::CaseInsensitive)) {
            return &format;
        }
    }
    return nullptr;
}

bool isBinaryName(const QString &name)
{
    const QRegExp binary(QStringLiteral("([^\"]+\\.(bin|ssp|binary|vdr32[\\S]*|ext2|ext3|ext4|vfat|"
                                        "ubi|jffs2|img|wic))"),
                         Qt::CaseInsensitive);
    return binary.exactMatch(name);
}

void noticeUnknownEnding(const QFile &file)
{
    report::message(Level::Notice,
                    L"The file %ls has a non recognized extension !\nSupported extensions are : "
                    L"bin, hex, srec, s19, elf, axf, vdr32, ext2, ext3, ext4, vfat, ubi, jffs2, "
                    L"img, o, so, out, tsv, csv, kcsv, sfi, sfix, ssp, ssfi, smu, obk, mcsv, "
                    L"wic.",
                    files::nameWithoutFolder(file).c_str());
    report::message(Level::Notice, L"File will be considered and parsed as a binary format.");
}

}  // namespace

void FileManager::setDisplayCallback(void (*callback)(int level, const wchar_t *text))
{
    DisplayMng::getInstance().displayCallback = callback;
}

bool FileManager::Open(const std::wstring &path, FileType **file, unsigned char padding,
                       unsigned int position, unsigned int size)
{
    const QString name = QString::fromStdWString(path);
    const QFileInfo info(name);
    QFile input(name);
    paddingByte = padding;
    if (!info.exists()) {
        report::message(Level::Error, L"The file %ls does not exist, please check the file's path",
                        files::nameWithoutFolder(input).c_str());
        return false;
    }
    if (!files::openForReading(input, name)) {
        report::message(Level::Error, L"Unable to open the file %ls",
                        files::nameWithoutFolder(input).c_str());
        return false;
    }
    if (input.size() == 0) {
        report::message(Level::Error, L"The file %ls is empty",
                        files::nameWithoutFolder(input).c_str());
        return false;
    }
    OwnedRecord record;
    try {
        const bool isBinary = isBinaryName(info.fileName());
        const Format *format = isBinary ? nullptr : formatOf(name);
        if (format != nullptr) {
            record = format->read(*this, input);
        } else {
            if (!isBinary) {
                noticeUnknownEnding(input);
            }
            record = orReport(files::readBinary(input, position, size));
        }
    } catch (const std::bad_alloc &) {
        report::message(Level::Error, L"Out of memory");
        return false;
    }
    if (!record) {
        return false;
    }
    *file = record.release();
    return true;
}

int FileManager::ReduceFileSegment(FileData *file)
{
    const files::Reduction reduction = files::reduceSegments(*file, paddingByte);
    if (reduction.outOfMemory) {
        report::message(Level::Error, L"Unable to allocate memory");
    }
    return reduction.overlapped || reduction.outOfMemory ? 1 : 0;
}

bool FileManager::MergeFiles(const std::vector<FileData *> &list, FileData **merged)
{
    try {
        auto result = files::mergedFiles(list);
        if (!result) {
            files::reportText(result.error());
            return false;
        }
        *merged = result->release();
        return true;
    } catch (const std::bad_alloc &) {
        report::message(Level::Error, L"Out of memory");
        return false;
    }
}
