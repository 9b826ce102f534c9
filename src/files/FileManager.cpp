#include "files/FileManager.h"

#include "files/FileNames.h"
#include "files/base/ByteCursor.h"
#include "files/base/FileReader.h"
#include "files/base/PageBlock.h"
#include "report/DisplayMng.h"

#include <QFileInfo>
#include <QRegExp>

#include <array>
#include <cstdlib>
#include <cstring>
#include <new>

namespace
{

using files::MallocArray;
using files::RecordOwner;
using OwnedRecord = RecordOwner<FileType>;

constexpr auto kNoMemory = L"Unable to allocate enough memory to read the file";
constexpr auto kShortRead = L"Error while reading the file";

void reportError(const wchar_t *text)
{
    DisplayMng::getInstance().logMessage(5, L"%ls", text);
}

OwnedRecord refuse(const wchar_t *text)
{
    reportError(text);
    return nullptr;
}

/// Reads `size` bytes from `offset` on into a block with one byte to spare.
/// @return null after a report
MallocArray<std::uint8_t> readBlock(QFile &file, qint64 offset, qint64 size,
                                    const wchar_t *shortRead)
{
    // Segments hold 32-bit sizes. The pages of a forged size stay untouched.
    MallocArray<std::uint8_t> block;
    if (size >= 0 && size <= UINT32_MAX) {
        block = files::allocateBlock(static_cast<std::size_t>(size) + 1);
    }
    if (!block) {
        reportError(kNoMemory);
        return nullptr;
    }
    if (!file.seek(offset)) {
        reportError(L"Unable to find fPosition");
        return nullptr;
    }
    if (!files::readExactly(file, {block.get(), static_cast<std::size_t>(size)})) {
        reportError(shortRead);
        return nullptr;
    }
    return block;
}

/// Gives the record its one segment, at address 0.
void storeOnly(FileData &record, MallocArray<std::uint8_t> block, qint64 size)
{
    record.segments.reserve(1);  // a throw here must still find the block owned
    record.segments.push_back({0, static_cast<std::uint32_t>(size), block.release()});
    record.segmentCount = 1;
}

OwnedRecord readBinary(QFile &file, unsigned int position, unsigned int size)
{
    RecordOwner<FileData> record(new FileData);
    record->type = file_type::kBinary;
    const qint64 wanted = size != 0 ? size : file.size();
    auto block = readBlock(file, position, wanted, kShortRead);
    if (!block) {
        return nullptr;
    }
    storeOnly(*record, std::move(block), wanted);
    return record;
}

OwnedRecord readSmi(FileManager &, QFile &file)
{
    constexpr char kMagic[] = "SMIMAGIC";
    std::array<std::uint8_t, sizeof kMagic - 1> magic = {};
    if (!files::readExactly(file, magic)) {
        return refuse(L"Error while reading SMI magic header");
    }
    if (std::memcmp(magic.data(), kMagic, magic.size()) != 0) {
        DisplayMng::getInstance().logMessage(5, L"The file %ls is not an SMI image",
                                             files::nameWithoutFolder(file).c_str());
        return nullptr;
    }
    RecordOwner<FileData> record(new FileData);
    record->type = file_type::kSmi;
    const qint64 size = file.size();
    auto block = readBlock(file, 0, size, L"Error while reading SMI data segment");
    if (!block) {
        return nullptr;
    }
    storeOnly(*record, std::move(block), size);
    return record;
}

OwnedRecord readObk(FileManager &, QFile &file)
{
    constexpr qint64 kHead = 12;
    RecordOwner<FileOBK> record(new (std::nothrow) FileOBK);
    if (!record) {
        return refuse(L"OBK Out of memory");
    }
    record->type = file_type::kObk;
    // A file shorter than its head is reported like a rest of absurd size.
    const qint64 size = file.size() - kHead;
    if (size < 0) {
        return refuse(kNoMemory);
    }
    std::array<std::uint8_t, kHead> head = {};
    if (!files::readExactly(file, head)) {
        return refuse(kShortRead);
    }
    files::ByteCursor in(head);
    record->obkAddress = in.u32le();
    record->obkSize = in.u32le();
    record->obkWord3 = in.u32le();
    auto block = readBlock(file, kHead, size, kShortRead);
    if (!block) {
        return nullptr;
    }
    storeOnly(*record, std::move(block), size);
    return record;
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

/// A format that this version knows by its ending only.
OwnedRecord readLater(FileManager &, QFile &file)
{
    DisplayMng::getInstance().logMessage(
        5, L"The file %ls can't be read: this version has no reader for its format yet",
        files::nameWithoutFolder(file).c_str());
    return nullptr;
}

struct Format {
    const char *ending;
    OwnedRecord (*read)(FileManager &manager, QFile &file);
};

constexpr Format kFormats[] = {
    {".smi", readSmi},     {".smu", readLater},    {".hex", readHexSrec}, {".srec", readHexSrec},
    {".s19", readHexSrec}, {".elf", readElf},      {".axf", readElf},     {".o", readElf},
    {".so", readElf},      {".out", readElf},      {".tsv", readLater},   {".csv", readCsv},
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
    DisplayMng &display = DisplayMng::getInstance();
    display.logMessage(7,
                       L"The file %ls has a non recognized extension !\nSupported extensions are : "
                       L"bin, hex, srec, s19, elf, axf, vdr32, ext2, ext3, ext4, vfat, ubi, jffs2, "
                       L"img, o, so, out, tsv, csv, kcsv, sfi, sfix, ssp, ssfi, smu, obk, mcsv, "
                       L"wic.",
                       files::nameWithoutFolder(file).c_str());
    display.logMessage(7, L"File will be considered and parsed as a binary format.");
}

}  // namespace

void FileManager::setDisplayCallback(void (*callback)(int level, const wchar_t *text))
{
    DisplayMng::getInstance().displayCallback = callback;
}

bool FileManager::Open(const std::wstring &path, FileType **file, unsigned char padding,
                       unsigned int position, unsigned int size)
{
    DisplayMng &display = DisplayMng::getInstance();
    const QString name = QString::fromStdWString(path);
    const QFileInfo info(name);
    QFile input(name);
    paddingByte = padding;
    if (!info.exists()) {
        display.logMessage(5, L"The file %ls does not exist, please check the file's path",
                           files::nameWithoutFolder(input).c_str());
        return false;
    }
    if (!files::openForReading(input, name)) {
        display.logMessage(5, L"Unable to open the file %ls",
                           files::nameWithoutFolder(input).c_str());
        return false;
    }
    if (input.size() == 0) {
        display.logMessage(5, L"The file %ls is empty", files::nameWithoutFolder(input).c_str());
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
            record = readBinary(input, position, size);
        }
    } catch (const std::bad_alloc &) {
        reportError(L"Out of memory");
        return false;
    }
    if (!record) {
        return false;
    }
    *file = record.release();
    return true;
}
