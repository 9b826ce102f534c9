#pragma once
#include "workbench/widgets/MemoryMapContents.h"

#include <functional>

/// @file
/// Where the blocks of a memory map lie. Pure: no widget, no font, no colour. Positions are in
/// pixels of the drawing, from 0 at its left edge.

namespace workbench
{

/// Where a block lies. Blocks that share addresses lie in lanes above each other.
struct MapPlace {
    double left = 0;
    double right = 0;  ///< equal to `left` for a block without bytes
    int lane = 0;      ///< from 0 at the top
    int lanes = 1;     ///< into how many lanes the height is divided here
};

/// A piece to fill: one block, or neighbours of one group that are too small to tell apart.
struct MapPiece {
    double left = 0;
    double right = 0;
    int group = 0;
    int lane = 0;
    int lanes = 1;
    bool isWhole = false;  ///< one block, wide enough for an outline
    int place = 0;         ///< of the first block, index into `MapPicture::places`
};

/// Two blocks of different groups that get in each other's way.
struct MapMark {
    enum class Kind {
        Overlap,  ///< they share addresses, and the merge would refuse them
        Touch,    ///< they share addresses, but the merge's rule lets them pass
        Close     ///< less than 32 bytes lie between them
    };
    Kind kind = Kind::Overlap;
    int first = 0;            ///< place of the lower block
    int second = 0;           ///< place of the higher one
    std::uint64_t start = 0;  ///< first address that is shared, or that lies between
    std::uint64_t end = 0;    ///< address behind the last one
    double left = 0;
    double right = 0;
};

/// An address worth a label.
struct MapEdge {
    double x = 0;
    std::uint64_t address = 0;
    bool isEnd = false;     ///< the last byte of a run of blocks, else the first of a block
    bool opensRun = false;  ///< nothing lies right before it
};

struct MapPicture {
    std::vector<int> order;        ///< blocks by ascending address, indices into the contents
    std::vector<MapPlace> places;  ///< of the blocks, in that order
    std::vector<MapPiece> pieces;
    std::vector<MapMark> marks;  ///< by address
    std::vector<MapEdge> edges;  ///< by address; at most one of each kind at a pixel
    std::vector<double> breaks;  ///< middles of gaps that are drawn shorter than to scale

    /// @return the place at a position, the nearest within two pixels; or -1
    /// @param height  0 to 1, from the top of the drawing to its bottom
    [[nodiscard]] int placeAt(double x, double height) const;
};

/// Lays blocks out to one scale over the whole width. Small ones get a least width, so that they
/// are seen; long gaps are cut short. Takes linear time for blocks that are sorted and apart.
/// @param width  pixels to use
/// @param pixel  width of a device pixel, such as 0.5 on a screen of double density
MapPicture layoutMap(const MapContents &contents, double width, double pixel);

/// A label that found room.
struct MapLabel {
    double left = 0;
    QString text;
    bool isEnd = false;    ///< stands in the row of ends
    bool isFirst = false;  ///< belongs to the block that was asked for
};

/// Chooses the addresses that can be shown without touching one another: those of one block first,
/// then edges of the whole, of runs, and of blocks.
/// @param place      the block whose labels always find room; -1 for none
/// @param textWidth  width of a text in pixels
std::vector<MapLabel> labelMap(const MapContents &contents, const MapPicture &picture, double width,
                               int place, const std::function<double(const QString &)> &textWidth);

/// Name, range and size of a block, in one line.
QString describeBlock(const MapContents &contents, const MapBlock &block);

/// What a mark says, in the words of the merge.
QString describeMark(const MapContents &contents, const MapPicture &picture, const MapMark &mark);

/// The whole map in words: files or kinds, range, overlaps.
QString describeMap(const MapContents &contents, const MapPicture &picture);

}  // namespace workbench
