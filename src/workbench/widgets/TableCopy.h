#pragma once
#include <QString>

class QTableWidget;

namespace workbench
{

/// Rows of a table as text: a tab between cells, a line feed behind each row. Row headings that are
/// shown come first; a tab or line break inside a cell becomes a blank, so that columns stay.
QString selectedText(const QTableWidget &table);
/// The whole table, with its column headings where they are shown.
QString wholeText(const QTableWidget &table);

/// Gives a table Ctrl+C, and a context menu with "Copy" and "Copy all".
void makeCopyable(QTableWidget *table);

}  // namespace workbench
