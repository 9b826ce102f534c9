#include "files/tables/CsvReader.h"

#include "files/base/LittleEndian.h"
#include "files/base/Ownership.h"
#include "files/tables/TextLines.h"

#include <QString>

#include <algorithm>
#include <climits>
#include <optional>

namespace files
{

namespace
{

using Bytes = std::vector<std::uint8_t>;

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

std::optional<std::uint32_t> valueOf(std::string_view field, ValueTable table)
{
    // The conversion would drop a mark; a file has one at its start or none.
    if (field.starts_with(kByteOrderMark) || field.size() > static_cast<std::size_t>(INT_MAX)) {
        return std::nullopt;  // the latter is more than a QString holds
    }
    bool ok = false;
    const QString text = QString::fromUtf8(field.data(), static_cast<int>(field.size()));
    const int base = table == ValueTable::BareValues ? 16 : 0;
    const std::uint32_t value = text.simplified().toUInt(&ok, base);
    return ok ? std::optional(value) : std::nullopt;
}

/// Appends the values of one line. @return false when the line is invalid
bool appendLine(std::string_view line, ValueTable table, Bytes &out)
{
    if (line.find(',') == std::string_view::npos) {
        return false;
    }
    const bool hasAddresses = table == ValueTable::Pairs;
    bool isAddress = hasAddresses;  // every first field of a pair; not looked at
    for (std::size_t start = 0; start <= line.size();) {
        const std::size_t end = std::min(line.find(',', start), line.size());
        if (!isAddress) {
            const auto value = valueOf(line.substr(start, end - start), table);
            if (!value) {
                return false;
            }
            appendU32le(out, *value);
        }
        isAddress = hasAddresses && !isAddress;
        start = end + 1;
    }
    // After a whole pair the next field would be an address again.
    return isAddress == hasAddresses;
}

}  // namespace

Result<RecordOwner<FileData>> readValues(std::string_view text, ValueTable table)
{
    // A mark alone is a line without values.
    if (text.starts_with(kByteOrderMark) && text.size() > kByteOrderMark.size()) {
        text.remove_prefix(kByteOrderMark.size());
    }
    Bytes values;
    for (std::size_t line = 1; !text.empty(); ++line) {
        if (!appendLine(takeLine(text), table, values)) {
            return fail(ErrorCode::BadValue, "line " + std::to_string(line) + " is invalid");
        }
    }
    RecordOwner<FileData> record(new FileData);
    record->type = file_type::kCsv;
    auto block = values.size() <= UINT32_MAX ? copyBytes(values, 1) : nullptr;
    if (!block) {
        return fail(ErrorCode::NoMemory, "Unable to allocate memory");
    }
    storeOnlySegment(*record, std::move(block), static_cast<std::uint32_t>(values.size()));
    return record;
}

}  // namespace files
