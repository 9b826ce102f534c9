#pragma once
#include <QString>

class QAbstractItemView;

namespace workbench
{

/// Rows of a table, tree or list as text: a tab between cells, a line feed behind each row. Row
/// headings that are shown come first; a tab or line break inside a cell becomes a blank, so that
/// columns stay. Rows of a tree that have no text, such as those that hold a widget, are left out.
QString selectedText(const QAbstractItemView &view);
/// The whole of it, with its column headings where they are shown.
QString wholeText(const QAbstractItemView &view);

/// Gives a table, tree or list Ctrl+C, and a context menu with "Copy" and "Copy all".
void makeCopyable(QAbstractItemView *view);

}  // namespace workbench
