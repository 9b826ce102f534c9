#include "workbench/widgets/FileRows.h"

#include "files/base/SizeText.h"
#include "workbench/widgets/FieldNames.h"

#include <QFileInfo>
#include <QMap>

#include <algorithm>
#include <iterator>
#include <memory>
#include <utility>

namespace workbench
{

namespace
{

QString hexText(std::uint64_t number)
{
    return QStringLiteral("0x") + QString::number(number, 16);
}

/// "0x8000000 to 0x8000fff, 4 KB": from the lowest address to the highest.
QString rangeNote(const FileData &record)
{
    std::uint64_t first = UINT64_MAX;
    std::uint64_t end = 0;
    std::uint64_t bytes = 0;
    for (const SegmentData &segment : record.segments) {
        if (segment.size != 0) {
            first = std::min<std::uint64_t>(first, segment.address);
            end = std::max(end, std::uint64_t{segment.address} + segment.size);
            bytes += segment.size;
        }
    }
    const bool hasAddresses = record.type == file_type::kBinary ||
                              record.type == file_type::kIntelHex ||
                              record.type == file_type::kSRecord || record.type == file_type::kElf;
    if (!hasAddresses || bytes == 0) {
        return {};
    }
    return QStringLiteral("%1 to %2, %3")
        .arg(hexText(first), hexText(end - 1), files::sizeText(bytes));
}

}  // namespace

QList<FileData *> FileRows::records() const
{
    QList<FileData *> list;
    list.reserve(count());
    for (const auto &record : m_records) {
        list.append(record.get());
    }
    return list;
}

void FileRows::append(const QString &path, files::RecordOwner<FileData> record)
{
    const QFileInfo file(path);
    auto item = std::make_unique<QStandardItem>(m_icons.icon(file), file.fileName());
    item->setEditable(false);
    item->setDropEnabled(false);
    item->setToolTip(plainToolTip(file.absoluteFilePath()));
    m_paths.append(path);
    m_records.push_back(std::move(record));
    m_model.appendRow(item.release());
    updateMutedTexts();
}

void FileRows::replace(int row, files::RecordOwner<FileData> record)
{
    m_records.at(toIndex(row)) = std::move(record);
    updateMutedTexts();
}

void FileRows::setAddress(int row, std::uint32_t address)
{
    record(row).segments.front().address = address;
    updateMutedTexts();
}

void FileRows::updateMutedTexts()
{
    QMap<QString, int> sameName;
    for (const QString &path : qAsConst(m_paths)) {
        ++sameName[QFileInfo(path).fileName()];
    }
    for (int row = 0; row < count(); ++row) {
        const QFileInfo file(m_paths.at(row));
        QStringList parts;
        if (sameName.value(file.fileName()) > 1) {
            parts << file.absolutePath();
        }
        if (const QString range = rangeNote(record(row)); !range.isEmpty()) {
            parts << range;
        }
        QStandardItem *item = m_model.item(row);
        item->setData(parts.join(QStringLiteral("  ")), kMutedRole);
        item->setData(QString(file.fileName() + ' ' + parts.join(' ')), Qt::AccessibleTextRole);
    }
}

void FileRows::removeAt(int row)
{
    // Rows last: the model tells the view, and the view may ask for the record of another row.
    m_paths.removeAt(row);
    m_records.erase(m_records.begin() + row);
    m_model.removeRow(row);
    updateMutedTexts();
}

void FileRows::clear()
{
    m_paths.clear();
    m_records.clear();
    m_model.clear();
}

FileRows::Taken FileRows::takeAll()
{
    Taken taken{std::exchange(m_paths, {}), std::exchange(m_records, {}), {}};
    while (m_model.rowCount() > 0) {
        taken.rows.emplace_back(m_model.takeRow(0).front());
    }
    return taken;
}

void FileRows::giveBack(Taken taken)
{
    m_paths.append(taken.paths);
    std::ranges::move(taken.records, std::back_inserter(m_records));
    for (auto &row : taken.rows) {
        m_model.appendRow(row.release());
    }
}

std::optional<std::uint32_t> nextFreeAddress(const FileRows &files, std::uint32_t from,
                                             std::uint32_t bytes)
{
    std::vector<std::pair<std::uint64_t, std::uint64_t>> taken;  // begin and end
    for (const FileData *record : files.records()) {
        for (const SegmentData &segment : record->segments) {
            if (segment.size != 0) {
                taken.emplace_back(segment.address, std::uint64_t{segment.address} + segment.size);
            }
        }
    }
    std::sort(taken.begin(), taken.end());
    std::uint64_t place = from;
    for (const auto &[begin, end] : taken) {
        if (place + bytes <= begin) {
            break;
        }
        place = std::max(place, end);
    }
    const bool fits = place + bytes <= std::uint64_t{UINT32_MAX} + 1 && place <= UINT32_MAX;
    return fits ? std::optional(static_cast<std::uint32_t>(place)) : std::nullopt;
}

}  // namespace workbench
