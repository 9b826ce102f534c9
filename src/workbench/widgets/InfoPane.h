#pragma once
#include "workbench/widgets/InfoContents.h"

#include <QLabel>
#include <QTableWidget>
#include <QWidget>

namespace workbench
{

/// An overview table, a title and a details table; all cells are read-only.
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

    /// Empties the cells of the overview and drops all rows of the details; headings stay.
    void clearContents();

    /// Back to the headings given to the constructor, without values.
    void reset();

    using QWidget::show;

private:
    void showOverview(const Overview &overview);
    void showDetails(const Details &details);
    void fitOverview();

    PaneContents m_start;
    QString m_spokenTitle;
    QTableWidget *m_overview;
    QLabel *m_title;
    QTableWidget *m_details;
};

}  // namespace workbench
