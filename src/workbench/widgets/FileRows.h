#pragma once
#include "files/base/Records.h"

#include <QFileIconProvider>
#include <QList>
#include <QStandardItemModel>
#include <QStringList>

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace workbench
{

/// The files of one list: paths, records and view rows. The three are always in step, since
/// nothing but the operations here changes them. Records belong to the list.
class FileRows
{
public:
    [[nodiscard]] int count() const { return static_cast<int>(m_records.size()); }
    [[nodiscard]] bool isEmpty() const { return m_records.empty(); }
    [[nodiscard]] const QStringList &paths() const { return m_paths; }
    [[nodiscard]] QString path(int row) const { return m_paths.at(row); }
    [[nodiscard]] FileData &record(int row) const { return *m_records.at(toIndex(row)); }
    [[nodiscard]] bool contains(int row) const { return row >= 0 && row < count(); }

    /// The records in list order, still owned by the list.
    [[nodiscard]] QList<FileData *> records() const;

    /// Role of the text that stands muted behind a file's name.
    static constexpr int kMutedRole = Qt::UserRole + 2;

    /// One row per file: icon, name without folder, full path as tool tip; muted the folder,
    /// where two names are equal, and the range of addresses with the size.
    [[nodiscard]] QStandardItemModel *model() { return &m_model; }

    /// What the tab keeps about a file beside its record; goes with the file. Invalid for none.
    [[nodiscard]] QVariant note(int row) const { return m_model.item(row)->data(kNoteRole); }
    void setNote(int row, const QVariant &note) { m_model.item(row)->setData(note, kNoteRole); }

    /// Brings the muted texts up to date after a record was changed in its place.
    void updateMutedTexts();

    void append(const QString &path, files::RecordOwner<FileData> record);

    /// Puts a newly read record in the place of the old one, which is released.
    void replace(int row, files::RecordOwner<FileData> record);

    /// Moves a raw binary to another address.
    void setAddress(int row, std::uint32_t address);

    void removeAt(int row);
    void clear();

    /// Files on their way from a list and back: records, and rows with all that they hold.
    struct Taken {
        QStringList paths;
        std::vector<files::RecordOwner<FileData>> records;
        std::vector<std::unique_ptr<QStandardItem>> rows;
    };
    Taken takeAll();  ///< leaves the list empty
    void giveBack(Taken taken);

private:
    static constexpr int kNoteRole = Qt::UserRole + 1;
    static std::size_t toIndex(int row) { return static_cast<std::size_t>(row); }

    QStringList m_paths;
    std::vector<files::RecordOwner<FileData>> m_records;
    QStandardItemModel m_model;
    QFileIconProvider m_icons;
};

/// The lowest address from `from` on where `bytes` more touch no segment of the files.
/// @return nothing when there is no such room below 2^32
std::optional<std::uint32_t> nextFreeAddress(const FileRows &files, std::uint32_t from,
                                             std::uint32_t bytes);

}  // namespace workbench
