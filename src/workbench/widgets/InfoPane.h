#pragma once
#include "workbench/widgets/InfoContents.h"
#include "workbench/widgets/MemoryMap.h"

#include <QLabel>
#include <QTableWidget>
#include <QWidget>

namespace workbench
{

class ShowInFolder;

/// An overview table, a title, a details table, and a map of the memory that is used; all cells
/// are read-only. The selected row and the chosen block of the map are the same.
class InfoPane : public QWidget
{
    Q_OBJECT

public:
    /// @param name      object names begin with it, such as "sfi_firmwareInfo"
    /// @param title     accessible names begin with it, such as "Firmware information"
    /// @param contents  shown at first, and again (without values and rows) by `reset`
    InfoPane(const QString &name, const QString &title, const PaneContents &contents,
             QWidget *parent);

    void show(const PaneContents &contents);

    /// Shows a file that was just made, and "Show in folder" until something else is shown.
    void showMade(const QString &path, const PaneContents &contents);

    /// Empties the cells of the overview and drops all rows of the details; headings stay.
    void clearContents();

    /// Back to the headings given to the constructor, without values.
    void reset();

    /// Selects a line of the details, and its block in the map.
    void selectRow(int row) { m_details->selectRow(row); }

    /// @return -1 when no line of the details is selected
    [[nodiscard]] int selectedRow() const;

    [[nodiscard]] MemoryMap *map() const { return m_map; }

    using QWidget::show;

signals:
    void selectionChanged();

protected:
    bool event(QEvent *event) override;

private:
    void showOverview(const Overview &overview);
    void showDetails(const Details &details);
    void fitOverview();
    void fitColumns();
    void showMap(const MapContents &contents);
    void connectMap();
    void withdrawMade();

    PaneContents m_start;
    QString m_name;
    QString m_spokenTitle;
    QTableWidget *m_overview;
    QLabel *m_title;
    ShowInFolder *m_made = nullptr;  ///< once something was made
    QTableWidget *m_details;
    MemoryMap *m_map;
};

}  // namespace workbench
