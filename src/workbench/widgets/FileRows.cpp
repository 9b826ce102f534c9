#include "workbench/widgets/FileRows.h"

#include "workbench/widgets/FieldNames.h"

#include <QFileInfo>

#include <memory>

namespace workbench
{

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
}

void FileRows::replace(int row, files::RecordOwner<FileData> record)
{
    m_records.at(toIndex(row)) = std::move(record);
}

void FileRows::removeAt(int row)
{
    // Rows last: the model tells the view, and the view may ask for the record of another row.
    m_paths.removeAt(row);
    m_records.erase(m_records.begin() + row);
    m_model.removeRow(row);
}

void FileRows::clear()
{
    m_paths.clear();
    m_records.clear();
    m_model.clear();
}

}  // namespace workbench
