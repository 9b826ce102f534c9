#include "files/tables/LayoutReader.h"

#include "files/base/Ownership.h"

#include <QRegExp>
#include <QStringList>

#include <algorithm>
#include <cstdlib>

namespace files
{

namespace
{

constexpr int kColumns = 7;
constexpr std::size_t kLongestLine = 1023;

/// The next line with its line feed, or as much of it as is read at once.
std::string_view takePiece(std::string_view &text)
{
    const std::size_t end = text.find('\n');
    const std::size_t line = end == std::string_view::npos ? text.size() : end + 1;
    const std::string_view piece = text.substr(0, std::min(line, kLongestLine));
    text.remove_prefix(piece.size());
    return piece;
}

QStringList columnsOf(std::string_view line)
{
    // A NUL ends the text, as it would end the copies.
    line = line.substr(0, line.find('\0'));
    const QString decoded = QString::fromUtf8(line.data(), static_cast<int>(line.size()));
    static const QRegExp tabs(QStringLiteral("\\t+"));
    return decoded.split(tabs);
}

MallocArray<char> copyText(const QByteArray &text)
{
    MallocArray<char> copy(
        static_cast<char *>(std::malloc(static_cast<std::size_t>(text.size()) + 1)));
    if (copy) {
        std::copy(text.begin(), text.end(), copy.get());
        copy[static_cast<std::size_t>(text.size())] = '\0';
    }
    return copy;
}

MallocArray<wchar_t> copyWide(const QString &text)
{
    const std::wstring wide = text.toStdWString();
    MallocArray<wchar_t> copy(
        static_cast<wchar_t *>(std::malloc((wide.size() + 1) * sizeof(wchar_t))));
    if (copy) {
        std::copy(wide.begin(), wide.end(), copy.get());
        copy[wide.size()] = L'\0';
    }
    return copy;
}

/// The file name of the last column: without line end, carriage returns and what follows a blank.
QString binaryOf(const QString &column)
{
    QString name = column.section(QLatin1Char('\n'), 0, 0);
    name.remove(QLatin1Char('\r'));
    return name.section(QLatin1Char(' '), 0, 0);
}

bool isOffset(const QString &text)
{
    bool isNumber = true;
    if (text.startsWith(QLatin1String("0x"), Qt::CaseSensitive)) {
        text.toULongLong(&isNumber, 16);
    }
    return isNumber;
}

/// Appends the row. @return false without memory, and then the list is as it was
bool storeRow(const QStringList &columns, std::vector<partition> &rows)
{
    std::array<MallocArray<char>, kColumns - 1> texts;
    for (int i = 0; i < kColumns - 1; ++i) {
        texts[static_cast<std::size_t>(i)] = copyText(columns[i].toUtf8());
    }
    MallocArray<wchar_t> binary = copyWide(binaryOf(columns[kColumns - 1]));
    if (!binary ||
        std::any_of(texts.begin(), texts.end(), [](const auto &text) { return !text; })) {
        return false;
    }
    partition &row = rows.emplace_back();  // a throw here must still find the texts owned
    row.id = std::strtoul(texts[1].get(), nullptr, 16);
    row.opt = texts[0].release();
    row.name = texts[2].release();
    row.partitionType = texts[3].release();
    row.ip = texts[4].release();
    row.offset = texts[5].release();
    row.binary = binary.release();
    return true;
}

}  // namespace

Result<Layout> readLayout(std::string_view text)
{
    Layout layout{RecordOwner<FileTSV>(new FileTSV), {}};
    layout.record->type = file_type::kTsv;
    while (!text.empty()) {
        const std::string_view line = takePiece(text);
        if (line.front() == '#') {
            continue;
        }
        const QStringList columns = columnsOf(line);
        if (columns.size() != kColumns) {
            return fail(ErrorCode::BadCount,
                        "a row has " + std::to_string(columns.size()) + " columns instead of 7");
        }
        if (!isOffset(columns[5])) {
            return fail(ErrorCode::BadValue, columns[5].toStdString());
        }
        if (!storeRow(columns, layout.record->partitions)) {
            return fail(ErrorCode::NoMemory, "Unable to allocate memory");
        }
        layout.filtered += columns.mid(0, kColumns - 1).join(QLatin1Char('\t')).toUtf8() + '\n';
    }
    if (layout.filtered.isEmpty()) {
        return fail(ErrorCode::BadCount, "there is no row");
    }
    return layout;
}

}  // namespace files
