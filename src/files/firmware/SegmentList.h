#pragma once
#include "files/base/Records.h"
#include "files/base/Result.h"
#include "files/firmware/StagedSegment.h"

#include <span>
#include <vector>

/// Sorts a `FileData` by ascending address, equal addresses in their old order.
void FileSegmentsTri(void *file);

namespace files
{

/// What joining neighbours came to; the list is whole in every case.
struct Reduction {
    bool overlapped = false;
    bool outOfMemory = false;  ///< what wasn't reached stays in the list
};

/// The segments that count: `segmentCount` rules, the list bounds it.
std::span<const SegmentData> countedSegments(const FileData &file);

/// Hands the payloads over to an empty record.
void storeSegments(FileData &record, std::vector<OwnedSegment> segments);

/// Joins neighbours less than 32 bytes apart and resolves overlaps in favour of the later segment.
/// The list must be sorted.
/// @param padding  fills holes
Reduction reduceSegments(FileData &file, std::uint8_t padding);

/// One sorted image of several; segments share their `data` with the sources.
/// @return Overlap when segments of two files overlap; the text is the message
Result<RecordView<FileData>> mergedFiles(const std::vector<FileData *> &files);

}  // namespace files
