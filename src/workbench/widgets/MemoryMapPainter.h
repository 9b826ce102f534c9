#pragma once
#include "workbench/widgets/MemoryMapLayout.h"

#include <QFont>
#include <QPalette>
#include <QRect>

class QPainter;

namespace workbench
{

/// The parts of a memory map's widget, in its own pixels.
struct MapRooms {
    QRect ends;    ///< addresses of last bytes
    QRect signs;   ///< signs of overlaps and small gaps
    QRect strip;   ///< the blocks
    QRect starts;  ///< addresses of first bytes
    QRect legend;  ///< names of the groups, and below them what is said of the block in question
};

/// All that one picture of a map depends on.
struct MapView {
    const MapContents &contents;
    const MapPicture &picture;
    QPalette palette;
    QFont addressFont;
    int selected = -1;  ///< place of the block with the frame
    int hovered = -1;   ///< place of the block under the pointer
    bool hasFocus = false;
    QString words;
};

/// Fill of a group: its own colour or one of the map's.
/// @param isPale  for groups that stand behind the emphasised one
QColor mapColour(const MapContents &contents, int group, const QPalette &palette, bool isPale);

/// The pattern of a group, so that groups can be told apart without colour; none for the first.
Qt::BrushStyle mapPattern(int group);

void paintMap(QPainter &painter, const MapView &view, const MapRooms &rooms);

}  // namespace workbench
