#include "files/FileManager.h"
#include "files/FileNames.h"
#include "files/WholeFile.h"
#include "files/base/LittleEndian.h"
#include "files/base/Ownership.h"
#include "files/tables/TextLines.h"
#include "report/DisplayMng.h"

#include <algorithm>
#include <climits>
#include <optional>
#include <string_view>

namespace
{

/// The two dialects of an option-bytes file.
struct Dialect {
    bool hasAddresses = false;  ///< every first field of a pair is an address, not looked at
    int base = 0;               ///< of the values; 0 goes by the C prefixes
};
constexpr Dialect kPairs = {true, 0};
constexpr Dialect kBareValues = {false, 16};

using Bytes = std::vector<std::uint8_t>;

std::optional<std::uint32_t> valueOf(std::string_view field, int base)
{
    if (field.size() > static_cast<std::size_t>(INT_MAX)) {
        return std::nullopt;  // more than a QString holds
    }
    bool ok = false;
    const QString text = QString::fromUtf8(field.data(), static_cast<int>(field.size()));
    const std::uint32_t value = text.simplified().toUInt(&ok, base);
    return ok ? std::optional(value) : std::nullopt;
}

/// Appends the values of one line. @return false when the line is invalid
bool appendLine(std::string_view line, const Dialect &dialect, Bytes &out)
{
    if (line.find(',') == std::string_view::npos) {
        return false;
    }
    bool isAddress = dialect.hasAddresses;
    for (std::size_t start = 0; start <= line.size();) {
        const std::size_t end = std::min(line.find(',', start), line.size());
        if (!isAddress) {
            const auto value = valueOf(line.substr(start, end - start), dialect.base);
            if (!value) {
                return false;
            }
            files::appendU32le(out, *value);
        }
        isAddress = dialect.hasAddresses && !isAddress;
        start = end + 1;
    }
    // After a whole pair the next field would be an address again.
    return isAddress == dialect.hasAddresses;
}

/// @return the values of all lines, or nullopt at the first invalid one
std::optional<Bytes> valuesOf(std::string_view text, const Dialect &dialect)
{
    Bytes values;
    while (!text.empty()) {
        if (!appendLine(files::takeLine(text), dialect, values)) {
            return std::nullopt;
        }
    }
    return values;
}

}  // namespace

bool FileManager::extract_csv_config(QFile *file, FileData *data)
{
    DisplayMng &display = DisplayMng::getInstance();
    data->type = file_type::kCsv;
    data->segmentCount = 0;
    const auto content = files::readWholeFile(*file);
    if (!content) {
        return false;
    }
    const bool isBare = file->fileName().endsWith(QLatin1String(".kcsv"), Qt::CaseInsensitive);
    const std::string_view text(reinterpret_cast<const char *>(content->span().data()),
                                content->size());
    const auto values = valuesOf(text, isBare ? kBareValues : kPairs);
    if (!values) {
        display.logMessage(5, L"%ls is an invalid option bytes file",
                           files::pathAsGiven(*file).c_str());
        return false;
    }
    data->segments.reserve(1);
    files::MallocArray<std::uint8_t> block;
    if (values->size() <= UINT32_MAX) {
        block = files::copyBytes(*values, 1);
    }
    if (!block) {
        display.logMessage(5, L"Unable to allocate memory");
        return false;
    }
    data->segments.push_back({0, static_cast<std::uint32_t>(values->size()), block.release()});
    data->segmentCount = 1;
    return true;
}
