#pragma once
#include "workbench/widgets/FileRows.h"

#include <QItemSelection>
#include <QLabel>
#include <QListView>
#include <QPushButton>
#include <QWidget>

#include <functional>

namespace workbench
{

/// A list of files with "Add" and "Remove" beside it. "Remove" is enabled by a selection of one row
/// or several; the Delete key does the same, and files dropped on the list are offered like chosen
/// ones. A row's menu copies paths and, where its tab allows it, edits the address. It shows
/// its `FileRows` and reports what the user asks for; reading and checking files is the tab's job.
class FileList : public QWidget
{
    Q_OBJECT

public:
    /// @param name   object names begin with it, such as "sfi_firmware"
    /// @param label  text of the row's label, '&' marks its mnemonic
    FileList(const QString &name, const QString &label, QWidget *parent);

    [[nodiscard]] FileRows &rows() { return m_rows; }
    [[nodiscard]] const FileRows &rows() const { return m_rows; }
    [[nodiscard]] QLabel *label() const { return m_label; }
    [[nodiscard]] QPushButton *addButton() const { return m_add; }
    [[nodiscard]] QPushButton *removeButton() const { return m_remove; }
    [[nodiscard]] QListView *view() const { return m_view; }

    /// The selected row, of several the one that was turned to last; or -1.
    [[nodiscard]] int selectedRow() const;
    /// All selected rows, the last one first, so that they can be removed in this order.
    [[nodiscard]] QList<int> selectedRows() const;

    /// What stands in the list while it is empty.
    void setHint(const QString &hint);

    /// Which rows have an address that can be corrected; without it none has.
    void setEditable(std::function<bool(int row)> isEditable)
    {
        m_isEditable = std::move(isEditable);
    }
    [[nodiscard]] QItemSelection selection() const;

    /// Removes a row with its record. Was it selected, the selection goes to the next one.
    void removeRow(int row);
    void removeAllRows();

    /// Takes all files out, to be given back later. Nothing is released.
    FileRows::Taken takeRows();
    void giveBack(FileRows::Taken taken);
    void clearSelection();

signals:
    void addRequested();
    void filesDropped(const QStringList &paths);
    void removeRequested();
    /// The user wants to correct the address of a row that `setEditable` allows.
    void editRequested(int row);
    /// Sent once per change, also after rows were removed, when the lists are in step again.
    void selectionChanged(const QItemSelection &selection);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void buildLayout();
    void reportSelection();
    void fitHint();
    void requestEdit(int row);
    void showMenu(const QPoint &place);
    void copyPaths() const;
    void acceptDrop(const QMimeData &dropped);

    FileRows m_rows;
    QLabel *m_label;
    QListView *m_view;
    QPushButton *m_add;
    QPushButton *m_remove;
    QLabel *m_hint;
    std::function<bool(int row)> m_isEditable;
    bool m_changingRows = false;
};

}  // namespace workbench
