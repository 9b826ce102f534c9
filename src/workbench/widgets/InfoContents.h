#pragma once
#include "workbench/widgets/MemoryMapContents.h"

#include <QColor>
#include <QStringList>

#include <cstdint>
#include <optional>
#include <vector>

namespace workbench
{

/// Text and background of a table row.
struct RowColours {
    QColor text;
    QColor background;
};

/// The short table on top of an info pane: one value under or beside each heading.
struct Overview {
    Qt::Orientation headings = Qt::Vertical;  ///< Vertical: a row each; Horizontal: a column each
    QStringList names;
    QStringList values;  ///< missing ones show as empty cells
};

struct DetailRow {
    QStringList cells;
    std::optional<RowColours> colours;                  ///< without: those of the desktop
    std::optional<std::uint64_t> bytes = std::nullopt;  ///< said exactly in the tip of "Size"
    QString why = {};                                   ///< tool tip of the row
};

/// The long table below it; without columns it isn't there.
struct Details {
    QString title;
    QStringList columns;
    std::vector<DetailRow> rows;
};

/// All that an info pane shows. It is always shown whole, so nothing of an earlier file remains.
struct PaneContents {
    Overview overview;
    Details details;
    MapContents map = {};  ///< without blocks: no picture
};

}  // namespace workbench
