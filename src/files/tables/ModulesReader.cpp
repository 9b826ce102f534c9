#include "files/tables/ModulesReader.h"

#include "files/base/FileReader.h"
#include "files/tables/TextLines.h"

#include <QFileInfo>
#include <QRegExp>
#include <QStringList>

#include <algorithm>
#include <climits>
#include <cstdio>

namespace files
{

namespace
{

constexpr std::uint32_t kMostModules = 8;
constexpr int kLongestIdentifier = 15;
constexpr int kLongestAddress = 10;
/// The largest block that a HEX module may span; two far-apart records would ask for gigabytes.
constexpr std::uint64_t kWidestModule = 0x1FFFFFFF;

tl::unexpected<Error> outOfMemory()
{
    return fail(ErrorCode::NoMemory, "Unable to allocate memory");
}

/// For messages: up to a zero character, which would end the whole sentence.
std::string utf8(const QString &text)
{
    return text.toUtf8().constData();
}

std::string hexWord(std::uint32_t value)
{
    char text[12];
    std::snprintf(text, sizeof text, "0x%08X", value);
    return text;
}

bool isNone(const QString &text)
{
    return text.compare(QLatin1String("none"), Qt::CaseInsensitive) == 0;
}

bool isFileWithEnding(const QString &text, const char *endings)
{
    const QRegExp name(QStringLiteral("([^\"]+\\.(%1))").arg(QLatin1String(endings)),
                       Qt::CaseInsensitive);
    return name.exactMatch(text);
}

/// Moves a copy of `bytes` into a record's field and its size.
Result<void> storeCopy(std::span<const std::uint8_t> bytes, std::uint8_t *&outField,
                       std::uint32_t &outSize)
{
    auto copy = bytes.size() <= UINT32_MAX ? copyBytes(bytes) : nullptr;
    if (!copy) {
        return outOfMemory();
    }
    outField = copy.release();
    outSize = static_cast<std::uint32_t>(bytes.size());
    return {};
}

/// Opens and reads a file that a row names.
Result<void> storeFile(const QString &path, std::uint8_t *&outField, std::uint32_t &outSize)
{
    QFile file;
    if (!openForReading(file, path)) {
        return fail(ErrorCode::CannotOpen, "Unable to open the file: " + utf8(path));
    }
    const auto content = readAll(file);
    if (!content && content.error().code == ErrorCode::ReadFailed) {
        return fail(ErrorCode::ReadFailed, "Error while reading the file");
    }
    if (!content) {
        return outOfMemory();
    }
    return storeCopy(content->span(), outField, outSize);
}

/// Destination column: a number, or "none".
struct Destination {
    std::uint32_t address = 0;
    bool isNone = false;
};

/// One reading of one list.
class ListReader
{
public:
    ListReader(const QString &list, const ModuleServices &services, FileMCSV &record)
        : m_services(services), m_record(record), m_list(utf8(list)),
          m_folder(QFileInfo(list).path())
    {
    }

    Result<void> readLine(const QString &line);

    /// The refusal of a list as such. @param rest  what stands behind "invalid mcsv file"
    [[nodiscard]] tl::unexpected<Error> invalid(ErrorCode code, const std::string &rest = {}) const
    {
        return fail(code, m_list + " is an invalid mcsv file" + rest);
    }

private:
    [[nodiscard]] Result<Destination> readDestination(const QString &text) const;
    Result<void> readLicence(const QString &text, SegmentDataMCSV &module);
    Result<void> readModule(const QString &text, const Destination &destination,
                            SegmentDataMCSV &module);
    Result<void> readHexModule(const QString &path, const Destination &destination,
                               SegmentDataMCSV &module);
    [[nodiscard]] QString resolved(const QString &name) const;

    const ModuleServices &m_services;
    FileMCSV &m_record;
    std::string m_list;
    QString m_folder;
    bool m_licencesEnded = false;  ///< a row said "none"; all later rows count as such
};

/// Names that look anchored are relative to the list's folder, all others to the working
/// directory. The format has it this way round.
QString ListReader::resolved(const QString &name) const
{
    const bool isAnchored = name.startsWith('.') || name.startsWith('/') || name.startsWith('\\');
    return isAnchored ? m_folder + '/' + name : name;
}

Result<Destination> ListReader::readDestination(const QString &text) const
{
    bool isNumber = false;
    const std::uint32_t address = text.toUInt(&isNumber, 16);
    if (isNumber && text.size() <= kLongestAddress) {
        return Destination{address, false};
    }
    if (isNone(text)) {
        return Destination{0, true};
    }
    return invalid(ErrorCode::BadValue,
                   "\nCheck destination address parameter\n\nInvalid address: " + utf8(text));
}

Result<void> ListReader::readLicence(const QString &text, SegmentDataMCSV &module)
{
    m_licencesEnded = m_licencesEnded || isNone(text);
    if (m_licencesEnded) {
        return {};
    }
    if (!isFileWithEnding(text, "bin|lic")) {
        const QByteArray identifier = text.toUtf8();
        if (identifier.size() > kLongestIdentifier) {
            // The image has 15 bytes for it; other letters than English ones take two and more.
            const bool isLong = text.toUcs4().size() > kLongestIdentifier;
            return invalid(ErrorCode::BadValue, "\nHSM FW ID parameter exceeds 15 " +
                                                    std::string(isLong ? "characters" : "bytes") +
                                                    ": " + utf8(text));
        }
        const auto *bytes = reinterpret_cast<const std::uint8_t *>(identifier.constData());
        return storeCopy({bytes, static_cast<std::size_t>(identifier.size())}, module.hsmFwId,
                         module.hsmFwIdSize);
    }
    const QString path = resolved(text);
    module.licenceIsFile = 1;
    if (!QFileInfo::exists(path)) {
        return fail(ErrorCode::NotFound, "License file : " + utf8(path) + " does not exist !");
    }
    return storeFile(path, module.licence, module.licenceSize);
}

/// Lays the segments into one block; holes hold 0xFF. The list is sorted.
/// @return null when memory is short
MallocArray<std::uint8_t> flattened(const FileData &image, std::uint64_t span)
{
    MallocArray<std::uint8_t> block(
        static_cast<std::uint8_t *>(std::malloc(std::max<std::size_t>(span, 1))));
    if (!block) {
        return nullptr;
    }
    std::fill_n(block.get(), span, std::uint8_t{0xFF});
    const std::uint32_t first = image.segments.front().address;
    for (const SegmentData &segment : image.segments) {
        std::copy_n(segment.data, segment.size, block.get() + (segment.address - first));
    }
    return block;
}

Result<void> ListReader::readHexModule(const QString &path, const Destination &destination,
                                       SegmentDataMCSV &module)
{
    const RecordOwner<FileData> image = m_services.openHex(path);
    if (!image) {
        return fail(ErrorCode::Reported, {});
    }
    const std::string name = "Module hex file : " + utf8(path);
    const std::uint32_t first = image->segments.front().address;
    std::uint64_t end = first;
    for (const SegmentData &segment : image->segments) {
        end = std::max(end, std::uint64_t{segment.address} + segment.size);
    }
    const std::uint64_t span = end - first;
    if (span > kWidestModule) {
        return fail(ErrorCode::TooLarge, name + " spans " + std::to_string(span) +
                                             " bytes from address " + hexWord(first) +
                                             " on, more than the " + std::to_string(kWidestModule) +
                                             " bytes that a module may span");
    }
    if (!destination.isNone && destination.address != first) {
        m_services.warn(name + " contains address [" + hexWord(first) +
                        "] different than the Destination Address field [" +
                        hexWord(destination.address) + "] !\n\nThe value [" + hexWord(first) +
                        "] will be considered as destination address.");
    }
    auto block = flattened(*image, span);
    if (!block) {
        return outOfMemory();
    }
    module.module = block.release();
    module.moduleSize = static_cast<std::uint32_t>(span);
    module.address = first;
    return {};
}

Result<void> ListReader::readModule(const QString &text, const Destination &destination,
                                    SegmentDataMCSV &module)
{
    if (!isFileWithEnding(text, "smu|bin|hex")) {
        return invalid(ErrorCode::BadValue, "\nPlease check module : " + utf8(text));
    }
    const QString path = resolved(text);
    const std::string name = "Module file : " + utf8(path);
    if (!QFileInfo::exists(path)) {
        return fail(ErrorCode::NotFound, name + " does not exist !");
    }
    Result<void> stored;
    if (text.endsWith(QLatin1String(".hex"), Qt::CaseInsensitive)) {
        stored = readHexModule(path, destination, module);
    } else if (destination.isNone) {
        stored =
            fail(ErrorCode::BadValue, name + " should not contain [none] destination address !");
    } else {
        module.address = destination.address;
        stored = storeFile(path, module.module, module.moduleSize);
    }
    if (!stored) {
        return stored;
    }
    // The terminator keeps a reader of the name from running past it.
    const QByteArray written = text.toUtf8();
    const auto *bytes = reinterpret_cast<const std::uint8_t *>(written.constData());
    auto copy = copyBytes({bytes, static_cast<std::size_t>(written.size())}, 1);
    module.moduleName = reinterpret_cast<char *>(copy.release());
    return module.moduleName != nullptr ? Result<void>() : outOfMemory();
}

Result<void> ListReader::readLine(const QString &line)
{
    if (line.isEmpty() || line.startsWith('#')) {
        return {};
    }
    const QStringList columns = line.split(',');
    if (columns.size() < 3) {
        return invalid(ErrorCode::BadCount);
    }
    if (columns.size() > 3) {
        return fail(ErrorCode::BadCount,
                    "mcsv file " + m_list +
                        " is not conform: it may miss or exceed some columns !");
    }
    const auto destination = readDestination(columns[2].trimmed());
    if (!destination) {
        return tl::unexpected<Error>(destination.error());
    }
    // The record owns the module from here, so that a refusal frees what was read.
    SegmentDataMCSV &module = m_record.modules.emplace_back();
    auto read = readLicence(columns[1].trimmed(), module).and_then([&] {
        return readModule(columns[0].trimmed(), *destination, module);
    });
    if (read && ++m_record.moduleCount > kMostModules) {
        return invalid(ErrorCode::BadCount, "\nMaximum modules number : 8");
    }
    return read;
}

}  // namespace

Result<RecordOwner<FileMCSV>> readModules(std::string_view text, const QString &listPath,
                                          const ModuleServices &services)
{
    RecordOwner<FileMCSV> record(new FileMCSV);
    record->type = file_type::kMcsv;
    ListReader reader(listPath, services, *record);
    while (!text.empty()) {
        const std::string_view line = takeLine(text);
        if (line.size() > static_cast<std::size_t>(INT_MAX)) {
            return outOfMemory();  // more than a QString holds
        }
        const QString written = QString::fromUtf8(line.data(), static_cast<int>(line.size()));
        if (auto read = reader.readLine(written.trimmed()); !read) {
            return tl::unexpected<Error>(std::move(read).error());
        }
    }
    if (record->moduleCount == 0) {
        return reader.invalid(ErrorCode::Missing, "\nNo module is mentioned !");
    }
    return record;
}

}  // namespace files
