#pragma once
#include "files/base/Records.h"
#include "support/Piece.h"

#include <algorithm>
#include <cstdlib>

inline files::RecordOwner<FileData> recordOf(const std::vector<Piece> &pieces)
{
    files::RecordOwner<FileData> record(new FileData);
    for (const Piece &piece : pieces) {
        auto *block = static_cast<std::uint8_t *>(std::malloc(piece.bytes.size() + 1));
        std::copy(piece.bytes.begin(), piece.bytes.end(), block);
        record->segments.push_back(
            {piece.address, static_cast<std::uint32_t>(piece.bytes.size()), block});
    }
    record->segmentCount = static_cast<std::uint32_t>(pieces.size());
    return record;
}

inline std::vector<Piece> piecesOf(const FileData &record)
{
    std::vector<Piece> pieces;
    for (const SegmentData &segment : record.segments) {
        pieces.push_back({segment.address, {segment.data, segment.data + segment.size}});
    }
    return pieces;
}
