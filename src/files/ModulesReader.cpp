#include "files/FileManager.h"
#include "files/FileNames.h"
#include "files/WholeFile.h"
#include "files/base/FileReader.h"
#include "files/base/Ownership.h"
#include "files/tables/TextLines.h"
#include "report/DisplayMng.h"

#include <QFileInfo>
#include <QRegExp>
#include <QStringList>

#include <algorithm>

namespace
{

using files::MallocArray;

constexpr std::uint32_t kMostModules = 8;
constexpr int kLongestIdentifier = 15;
constexpr int kLongestAddress = 10;
/// The largest block that a HEX module may span; two far-apart records would ask for gigabytes.
constexpr std::uint64_t kWidestModule = 0x1FFFFFFF;

DisplayMng &display()
{
    return DisplayMng::getInstance();
}

bool refuseMemory()
{
    display().logMessage(5, L"Unable to allocate memory");
    return false;
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

/// Moves a copy of `bytes` into a record's field and its size. @return false after a report
bool storeCopy(std::span<const std::uint8_t> bytes, std::uint8_t *&outField, std::uint32_t &outSize)
{
    auto copy = bytes.size() <= UINT32_MAX ? files::copyBytes(bytes) : nullptr;
    if (!copy) {
        return refuseMemory();
    }
    outField = copy.release();
    outSize = static_cast<std::uint32_t>(bytes.size());
    return true;
}

/// Opens and reads a file that a row names. @return false after a report
bool storeFile(const QString &path, std::uint8_t *&outField, std::uint32_t &outSize)
{
    QFile file;
    if (!files::openForReading(file, path)) {
        display().logMessage(5, L"Unable to open the file: %ls", path.toStdWString().c_str());
        return false;
    }
    const auto content = files::readWholeFile(file);
    return content && storeCopy(content->span(), outField, outSize);
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
    ListReader(FileManager &manager, const QFile &list, FileMCSV &record)
        : m_manager(manager), m_record(record), m_list(files::pathAsGiven(list)),
          m_folder(QFileInfo(list.fileName()).path())
    {
    }

    bool readLine(const QString &line);
    bool finish() const;

private:
    bool readDestination(const QString &text, Destination &out) const;
    bool readLicence(const QString &text, SegmentDataMCSV &module);
    bool readModule(const QString &text, const Destination &destination, SegmentDataMCSV &module);
    bool readHexModule(const QString &path, const Destination &destination,
                       SegmentDataMCSV &module);
    [[nodiscard]] QString resolved(const QString &name) const;

    FileManager &m_manager;
    FileMCSV &m_record;
    std::wstring m_list;
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

bool ListReader::readDestination(const QString &text, Destination &out) const
{
    bool isNumber = false;
    out.address = text.toUInt(&isNumber, 16);
    if (isNumber && text.size() <= kLongestAddress) {
        return true;
    }
    out = {0, isNone(text)};
    if (!out.isNone) {
        display().logMessage(5,
                             L"%ls is an invalid mcsv file\nCheck destination address parameter\n\n"
                             L"Invalid address: %s",
                             m_list.c_str(), text.toUtf8().constData());
    }
    return out.isNone;
}

bool ListReader::readLicence(const QString &text, SegmentDataMCSV &module)
{
    m_licencesEnded = m_licencesEnded || isNone(text);
    if (m_licencesEnded) {
        return true;
    }
    if (!isFileWithEnding(text, "bin|lic")) {
        const QByteArray identifier = text.toUtf8();
        if (identifier.size() > kLongestIdentifier) {
            display().logMessage(
                5, L"%ls is an invalid mcsv file\nHSM FW ID parameter exceeds 15 characters: %s",
                m_list.c_str(), identifier.constData());
            return false;
        }
        const auto *bytes = reinterpret_cast<const std::uint8_t *>(identifier.constData());
        return storeCopy({bytes, static_cast<std::size_t>(identifier.size())}, module.hsmFwId,
                         module.hsmFwIdSize);
    }
    const QString path = resolved(text);
    module.licenceIsFile = 1;
    if (!QFileInfo::exists(path)) {
        display().logMessage(5, L"License file : %ls does not exist !",
                             path.toStdWString().c_str());
        return false;
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

bool ListReader::readHexModule(const QString &path, const Destination &destination,
                               SegmentDataMCSV &module)
{
    FileType *opened = nullptr;
    if (!m_manager.Open(path.toStdWString(), &opened, 255, 0, 0)) {
        return false;
    }
    const files::RecordOwner<FileData> image(static_cast<FileData *>(opened));
    const std::wstring name = path.toStdWString();
    const std::uint32_t first = image->segments.front().address;
    std::uint64_t end = first;
    for (const SegmentData &segment : image->segments) {
        end = std::max(end, std::uint64_t{segment.address} + segment.size);
    }
    const std::uint64_t span = end - first;
    if (span > kWidestModule) {
        display().logMessage(5,
                             L"Module hex file : %ls spans %llu bytes from address 0x%08X on, more "
                             L"than the %llu bytes that a module may span",
                             name.c_str(), static_cast<unsigned long long>(span), first,
                             static_cast<unsigned long long>(kWidestModule));
        return false;
    }
    if (!destination.isNone && destination.address != first) {
        display().logMessage(4,
                             L"Module hex file : %ls contains address [0x%08X] different than the "
                             L"Destination Address field [0x%08X] !\n\nThe value [0x%08X] will be "
                             L"considered as destination address.",
                             name.c_str(), first, destination.address, first);
    }
    auto block = flattened(*image, span);
    if (!block) {
        return refuseMemory();
    }
    module.module = block.release();
    module.moduleSize = static_cast<std::uint32_t>(span);
    module.address = first;
    return true;
}

bool ListReader::readModule(const QString &text, const Destination &destination,
                            SegmentDataMCSV &module)
{
    const QByteArray written = text.toUtf8();
    if (!isFileWithEnding(text, "smu|bin|hex")) {
        display().logMessage(5, L"%ls is an invalid mcsv file\nPlease check module : %s",
                             m_list.c_str(), written.constData());
        return false;
    }
    const QString path = resolved(text);
    if (!QFileInfo::exists(path)) {
        display().logMessage(5, L"Module file : %ls does not exist !", path.toStdWString().c_str());
        return false;
    }
    if (text.endsWith(QLatin1String(".hex"), Qt::CaseInsensitive)) {
        if (!readHexModule(path, destination, module)) {
            return false;
        }
    } else if (destination.isNone) {
        display().logMessage(5,
                             L"Module file : %ls should not contain [none] destination address !",
                             path.toStdWString().c_str());
        return false;
    } else {
        module.address = destination.address;
        if (!storeFile(path, module.module, module.moduleSize)) {
            return false;
        }
    }
    // The terminator keeps a reader of the name from running past it.
    const auto *bytes = reinterpret_cast<const std::uint8_t *>(written.constData());
    auto name = files::copyBytes({bytes, static_cast<std::size_t>(written.size())}, 1);
    module.moduleName = reinterpret_cast<char *>(name.release());
    return module.moduleName != nullptr || refuseMemory();
}

bool ListReader::readLine(const QString &line)
{
    if (line.isEmpty() || line.startsWith('#')) {
        return true;
    }
    const QStringList columns = line.split(',');
    if (columns.size() < 3) {
        display().logMessage(5, L"%ls is an invalid mcsv file", m_list.c_str());
        return false;
    }
    if (columns.size() > 3) {
        display().logMessage(5,
                             L"mcsv file %ls is not conform: it may miss or exceed some columns !",
                             m_list.c_str());
        return false;
    }
    Destination destination;
    // The record owns the module from here, so that a refusal frees what was read.
    SegmentDataMCSV &module = m_record.modules.emplace_back();
    if (!readDestination(columns[2].trimmed(), destination) ||
        !readLicence(columns[1].trimmed(), module) ||
        !readModule(columns[0].trimmed(), destination, module)) {
        return false;
    }
    if (++m_record.moduleCount > kMostModules) {
        display().logMessage(5, L"%ls is an invalid mcsv file\nMaximum modules number : 8",
                             m_list.c_str());
        return false;
    }
    return true;
}

bool ListReader::finish() const
{
    if (m_record.moduleCount == 0) {
        display().logMessage(5, L"%ls is an invalid mcsv file\nNo module is mentioned !",
                             m_list.c_str());
    }
    return m_record.moduleCount != 0;
}

}  // namespace

bool FileManager::extract_mcsv_config(QFile *file, FileMCSV *modules)
{
    modules->type = file_type::kMcsv;
    modules->moduleCount = 0;
    const auto content = files::readWholeFile(*file);
    if (!content) {
        return false;
    }
    ListReader reader(*this, *file, *modules);
    std::string_view text(reinterpret_cast<const char *>(content->span().data()), content->size());
    while (!text.empty()) {
        const std::string_view line = files::takeLine(text);
        if (line.size() > static_cast<std::size_t>(INT_MAX)) {
            return refuseMemory();  // more than a QString holds
        }
        if (!reader.readLine(
                QString::fromUtf8(line.data(), static_cast<int>(line.size())).trimmed())) {
            return false;
        }
    }
    return reader.finish();
}
