// The reader members of FileManager: each runs a reader of the rooms below and turns its error into
// the message, once.
#include "files/DummyHeader.h"
#include "files/FileManager.h"
#include "files/Reporting.h"
#include "files/base/FileReader.h"
#include "files/containers/SfiReader.h"
#include "files/containers/SmuReader.h"
#include "files/firmware/ElfReader.h"
#include "files/firmware/HexSrecReader.h"
#include "files/firmware/SegmentList.h"
#include "files/tables/CsvReader.h"
#include "files/tables/LayoutReader.h"
#include "files/tables/ModulesReader.h"

#include <optional>

namespace
{

using files::ErrorCode;
using report::Level;

/// Moves a reader's record into the caller's fresh one.
template <typename Record>
bool handOver(files::RecordOwner<Record> &record, Record *out)
{
    std::swap(*record, *out);
    return true;
}

/// Sorts and joins what a firmware reader gave.
void tidy(FileManager &manager, FileData *data)
{
    FileSegmentsTri(data);
    if (manager.ReduceFileSegment(data) != 0) {
        report::message(Level::Warning,
                        L"File corrupted. Two or more segments defines the same memory zone");
    }
}

/// No table that a person or a tool writes comes near.
constexpr std::uint64_t kLargestTable = std::uint64_t{64} << 20;

/// Reads an open file whole. @return nothing after a report
std::optional<files::ByteBuffer> readWhole(QFile &file, std::uint64_t limit = UINT32_MAX)
{
    auto bytes = files::readAll(file, limit);
    if (bytes) {
        return std::move(*bytes);
    }
    if (bytes.error().code == ErrorCode::TooLarge) {
        files::reportText(bytes.error());
        return std::nullopt;
    }
    const bool isShort = bytes.error().code == ErrorCode::ReadFailed;
    report::message(Level::Error,
                    isShort ? L"Error while reading the file" : L"Unable to allocate memory");
    return std::nullopt;
}

std::string_view textOf(const files::ByteBuffer &bytes)
{
    return {reinterpret_cast<const char *>(bytes.span().data()), bytes.size()};
}

void reportText(const files::TextFault &fault)
{
    report::message(Level::Error, L"\nParsing fail");
    if (fault.line != 0) {
        report::message(Level::Error, L"In line %d :", static_cast<int>(fault.line));
    }
    files::reportText(fault.error);
}

void reportElf(const files::Error &error, const QFile &file)
{
    switch (error.code) {
    case ErrorCode::BadVersion:
    case ErrorCode::NoMemory:
        files::reportText(error);
        break;
    default:
        report::message(Level::Error, L"%ls is an invalid ELF file",
                        files::pathAsGiven(file).c_str());
        break;
    }
}

void reportImage(const files::Error &error, const QFile &file)
{
    switch (error.code) {
    case ErrorCode::BadMagic:
        report::message(Level::Error, L"The file %ls is not an SFI image",
                        files::pathAsGiven(file).c_str());
        break;
    case ErrorCode::Truncated:
        report::message(Level::Error, L"The file %ls is cut short: %s",
                        files::nameWithoutFolder(file).c_str(), error.text.c_str());
        break;
    case ErrorCode::Missing:
        files::reportText(error, Level::Warning);
        break;
    default:
        files::reportText(error);
        break;
    }
}

void reportLayout(const files::Error &error, const QFile &file)
{
    const std::wstring name = files::pathAsGiven(file);
    switch (error.code) {
    case ErrorCode::BadCount:
        report::message(Level::Error,
                        L"TSV file %ls not conform: it may miss some columns or fields",
                        name.c_str());
        break;
    case ErrorCode::BadValue:
        report::message(Level::Error, L"TSV file %ls is not conform. Wrong Offset value : %s",
                        name.c_str(), error.text.c_str());
        break;
    default:
        files::reportText(error);
        break;
    }
}

using ImageReader = files::Result<files::RecordOwner<FileSFI>> (*)(std::span<const std::uint8_t>);

bool parseImage(QFile &file, FileSFI *out, ImageReader readImage)
{
    const auto content = readWhole(file);
    if (!content) {
        return false;
    }
    auto image = readImage(content->span());
    if (!image) {
        reportImage(image.error(), file);
        return false;
    }
    return handOver(*image, out);
}

}  // namespace

bool FileManager::HexSrec_Parsing(QFile *file, FileData *data)
{
    const bool isHexName = file->fileName().endsWith(QLatin1String(".hex"), Qt::CaseInsensitive);
    data->type = isHexName ? file_type::kIntelHex : file_type::kSRecord;
    data->segmentCount = 0;
    auto segments = files::readHexText(*file);
    if (!segments) {
        reportText(segments.error());
        return false;
    }
    if (segments->empty()) {
        report::message(Level::Error, L"The file %ls is invalid",
                        files::pathAsGiven(*file).c_str());
        return false;
    }
    files::storeSegments(*data, std::move(*segments));
    tidy(*this, data);
    return true;
}

bool FileManager::ELF_Parsing(QFile *file, FileELF *elf)
{
    elf->type = file_type::kElf;
    auto record = files::readElf(file->fileName(), paddingByte);
    if (!record) {
        reportElf(record.error(), *file);
        return false;
    }
    tidy(*this, record->get());
    return handOver(*record, elf);
}

int FileManager::GetDataFromSection(const std::string &elfPath, const std::string &sectionName,
                                    unsigned char **data)
{
    auto section = files::readElfSection(QString::fromStdString(elfPath), sectionName);
    if (section) {
        *data = section->data.release();
        return static_cast<int>(section->size);
    }
    switch (section.error().code) {
    case ErrorCode::NoMemory:
        files::reportText(section.error());
        return 0;
    case ErrorCode::Missing:
        report::message(Level::Error, L"%s does not name a section in this file",
                        sectionName.c_str());
        return -1;
    default:
        report::message(Level::Error, L"%s is not a valid ELF file", elfPath.c_str());
        return -1;
    }
}

bool FileManager::SFI_Parsing(QFile *file, FileSFI *image)
{
    image->type = file_type::kSfi;
    return parseImage(*file, image, files::readSfi);
}

bool FileManager::SSFI_Parsing(QFile *file, FileSFI *image)
{
    image->type = file_type::kSsfi;
    return parseImage(*file, image, files::readSsfi);
}

bool FileManager::SMU_Parsing(QFile *file, long long size, FileSMU *image)
{
    image->type = file_type::kSmu;
    const auto content = readWhole(*file);
    if (!content) {
        return false;
    }
    const auto counted = static_cast<std::size_t>(std::max(size, 0LL));
    bool protectedMissing = false;
    auto record = files::readSmu(content->span().first(std::min(counted, content->size())),
                                 &protectedMissing);
    if (!record) {
        files::reportText(record.error());
        return false;
    }
    if (protectedMissing) {
        report::message(Level::Error, L"WARNING TLV protected not present even though ptlvs !=0 .");
    }
    return handOver(*record, image);
}

bool FileManager::filter_tsv_file(QFile *file, FileTSV *layout)
{
    layout->type = file_type::kTsv;
    const auto content = readWhole(*file, kLargestTable);
    if (!content) {
        return false;
    }
    auto read = files::readLayout(textOf(*content));
    if (!read) {
        reportLayout(read.error(), *file);
        return false;
    }
    createSignedImage(read->filtered);
    const auto *const bytes = reinterpret_cast<const std::uint8_t *>(read->filtered.constData());
    const auto size = static_cast<std::size_t>(read->filtered.size());
    auto text = files::copyBytes({bytes, size}, 1);
    if (!text) {
        report::message(Level::Error, L"Unable to allocate memory");
        return false;
    }
    read->record->text = reinterpret_cast<char *>(text.release());
    read->record->textSize = static_cast<std::uint32_t>(size);
    return handOver(read->record, layout);
}

bool FileManager::extract_csv_config(QFile *file, FileData *data)
{
    data->type = file_type::kCsv;
    const auto content = readWhole(*file, kLargestTable);
    if (!content) {
        return false;
    }
    const bool isBare = file->fileName().endsWith(QLatin1String(".kcsv"), Qt::CaseInsensitive);
    auto record = files::readValues(textOf(*content), isBare ? files::ValueTable::BareValues
                                                             : files::ValueTable::Pairs);
    if (record) {
        return handOver(*record, data);
    }
    if (record.error().code == ErrorCode::BadValue) {
        report::message(Level::Error, L"%ls is an invalid option bytes file",
                        files::pathAsGiven(*file).c_str());
    } else {
        files::reportText(record.error());
    }
    return false;
}

bool FileManager::extract_mcsv_config(QFile *file, FileMCSV *modules)
{
    modules->type = file_type::kMcsv;
    const auto content = readWhole(*file, kLargestTable);
    if (!content) {
        return false;
    }
    files::ModuleServices services;
    services.openHex = [this](const QString &path) {
        FileType *opened = nullptr;
        Open(path.toStdWString(), &opened, 0xFF, 0, 0);
        return files::RecordOwner<FileData>(static_cast<FileData *>(opened));
    };
    services.warn = [](const std::string &text) {
        report::message(Level::Warning, L"%s", text.c_str());
    };
    auto list = files::readModules(textOf(*content), file->fileName(), services);
    if (!list) {
        files::reportText(list.error());
        return false;
    }
    return handOver(*list, modules);
}
