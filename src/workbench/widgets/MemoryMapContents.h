#pragma once
#include <QColor>
#include <QString>

#include <cstdint>
#include <optional>
#include <vector>

namespace workbench
{

/// A file or a kind of area: its blocks share one colour and one pattern.
struct MapGroup {
    QString name;
    std::optional<QColor> colour;  ///< without: the next one of the map's own
};

/// A piece of the address space that is in use.
struct MapBlock {
    std::uint32_t address = 0;  ///< of the first byte
    std::uint32_t size = 0;     ///< bytes; what lies behind the 32-bit address space isn't drawn
    int group = 0;              ///< index into the groups
    int number = 1;             ///< position in its file, from 1
    int row = -1;               ///< line of the details table that tells of it; -1 for none
};

/// What a memory map shows. Without blocks there is no map.
struct MapContents {
    std::vector<MapGroup> groups;
    std::vector<MapBlock> blocks;  ///< in any order
    QString blockWord;             ///< what a block is: "segment", "area"
    int emphasised = -1;           ///< the group in full colour, others are paler; -1: all alike
    /// Groups are files that will be merged: overlaps and small gaps between two of them are
    /// marked. Inside a group, readers have judged already.
    bool mergesGroups = false;
};

}  // namespace workbench
