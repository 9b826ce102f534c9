#pragma once
#include "workbench/widgets/FileRows.h"

#include <QItemSelection>
#include <QLabel>
#include <QListView>
#include <QPushButton>
#include <QWidget>

namespace workbench
{

/// A list of files with "Add" and "Remove" beside it. "Remove" is enabled by a selection; the
/// Delete key does the same, and files dropped on the list are offered like chosen ones. It shows
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

    /// The selected row, or -1.
    [[nodiscard]] int selectedRow() const;
    [[nodiscard]] QItemSelection selection() const;

    /// Removes a row with its record. Was it selected, the selection goes to the next one.
    void removeRow(int row);
    void removeAllRows();
    void clearSelection();

signals:
    void addRequested();
    void filesDropped(const QStringList &paths);
    void removeRequested();
    /// Sent once per change, also after rows were removed, when the lists are in step again.
    void selectionChanged(const QItemSelection &selection);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void buildLayout();
    void reportSelection();
    void acceptDrop(const QMimeData &dropped);

    FileRows m_rows;
    QLabel *m_label;
    QListView *m_view;
    QPushButton *m_add;
    QPushButton *m_remove;
    bool m_changingRows = false;
};

}  // namespace workbench
