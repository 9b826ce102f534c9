#include "files/firmware/SegmentList.h"

#include "files/base/RangeConflicts.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

namespace files
{

namespace
{

/// The segment that absorbs its neighbours. Its block grows in large steps, so that a hundred
/// thousand short neighbours don't copy it a hundred thousand times.
class GrowingSegment
{
public:
    GrowingSegment(SegmentData *segment, std::uint8_t padding)
        : m_segment(segment), m_capacity(segment->size), m_padding(padding)
    {
    }

    [[nodiscard]] std::uint32_t end() const { return m_segment->address + m_segment->size; }

    /// Appends `gap` padding bytes and `next`. @return false when memory ran out
    bool join(std::uint32_t gap, const SegmentData &next)
    {
        const std::uint32_t at = m_segment->size + gap;
        return resize(at + next.size, gap) && place(at, next);
    }

    /// Copies `next`, which begins below `end()`, over what is there. @return as `join`
    bool overwrite(const SegmentData &next)
    {
        const std::uint32_t at = next.address - m_segment->address;
        const bool endsBehind = next.address + next.size > end();
        return (!endsBehind || resize(at + next.size, 0)) && place(at, next);
    }

    /// Whether bytes that would have landed behind the end of the block were cut.
    [[nodiscard]] bool hasCut() const { return m_hasCut; }

    /// Gives back what the last growth took too much.
    void trim()
    {
        if (m_capacity == m_segment->size) {
            return;
        }
        // A block of no bytes stays a block: realloc to 0 would free it.
        void *exact = std::realloc(m_segment->data, std::max<std::size_t>(m_segment->size, 1));
        if (exact != nullptr) {
            m_segment->data = static_cast<std::uint8_t *>(exact);
        }
        m_capacity = m_segment->size;
    }

private:
    /// Sets the size. The first `gap` new bytes hold the padding byte, the others nothing yet.
    bool resize(std::uint32_t size, std::uint32_t gap)
    {
        if (size > m_capacity) {
            const std::uint64_t roomy =
                std::min<std::uint64_t>(size + std::uint64_t{size} / 2, UINT32_MAX);
            if (!reserve(roomy) && !reserve(size)) {
                return false;
            }
        }
        if (size > m_segment->size) {
            const std::uint32_t filled = std::min(gap, size - m_segment->size);
            std::memset(m_segment->data + m_segment->size, m_padding, filled);
        }
        m_segment->size = size;
        return true;
    }

    bool reserve(std::uint64_t capacity)
    {
        void *block = std::realloc(m_segment->data, static_cast<std::size_t>(capacity));
        if (block == nullptr) {
            return false;
        }
        m_segment->data = static_cast<std::uint8_t *>(block);
        m_capacity = capacity;
        return true;
    }

    bool place(std::uint32_t at, const SegmentData &next)
    {
        const std::uint32_t room = at < m_segment->size ? m_segment->size - at : 0;
        const std::uint32_t count = std::min(next.size, room);
        if (count != 0) {
            std::memcpy(m_segment->data + at, next.data, count);
        }
        m_hasCut = m_hasCut || count != next.size;
        return true;
    }

    SegmentData *m_segment;
    std::uint64_t m_capacity;
    std::uint8_t m_padding;
    bool m_hasCut = false;
};

std::vector<Range> rangesOf(const FileData &file)
{
    std::vector<Range> ranges;
    for (const SegmentData &segment : countedSegments(file)) {
        ranges.push_back(Range::wrapping(segment.address, segment.size));
    }
    return ranges;
}

/// Whether a segment of one file overlaps a segment of a later file.
bool filesOverlap(const std::vector<FileData *> &list)
{
    if (list.size() < 2) {
        return false;
    }
    std::vector<std::vector<Range>> ranges;
    std::vector<Range> all;
    for (const FileData *file : list) {
        ranges.push_back(rangesOf(*file));
        all.insert(all.end(), ranges.back().begin(), ranges.back().end());
    }
    // From the last file back, so that each segment is asked about later files only.
    RangeConflicts later(all);
    for (std::size_t i = ranges.size(); i-- > 0;) {
        for (const Range &range : ranges[i]) {
            if (later.anyConflictsWith(range)) {
                return true;
            }
        }
        for (const Range &range : ranges[i]) {
            later.add(range);
        }
    }
    return false;
}

}  // namespace

std::span<const SegmentData> countedSegments(const FileData &file)
{
    return std::span(file.segments)
        .first(std::min<std::size_t>(file.segmentCount, file.segments.size()));
}

void storeSegments(FileData &record, std::vector<OwnedSegment> segments)
{
    record.segments.reserve(segments.size());
    for (OwnedSegment &segment : segments) {
        record.segments.push_back({segment.address, segment.size, segment.data.release()});
    }
    record.segmentCount = static_cast<std::uint32_t>(record.segments.size());
}

Reduction reduceSegments(FileData &file, std::uint8_t padding)
{
    constexpr std::uint32_t kWidestGap = 31;
    std::vector<SegmentData> &list = file.segments;
    const std::size_t count = countedSegments(file).size();
    if (count < 2) {
        return {};
    }
    Reduction reduction;
    std::size_t last = 0;  // the survivor that is growing; all before it are done
    std::size_t next = 1;
    GrowingSegment survivor(&list[0], padding);
    for (; next < count; ++next) {
        const SegmentData &segment = list[next];
        const std::uint32_t gap = segment.address - survivor.end();
        if (gap > kWidestGap && segment.address >= survivor.end()) {
            survivor.trim();
            reduction.overlapped = reduction.overlapped || survivor.hasCut();
            list[++last] = segment;
            survivor = GrowingSegment(&list[last], padding);
            continue;
        }
        const bool joins = gap <= kWidestGap;
        if (!(joins ? survivor.join(gap, segment) : survivor.overwrite(segment))) {
            reduction.outOfMemory = true;
            break;
        }
        reduction.overlapped = reduction.overlapped || !joins;
        std::free(segment.data);
    }
    survivor.trim();
    reduction.overlapped = reduction.overlapped || survivor.hasCut();
    // Absorbed records leave the list in one move; what wasn't reached stays in it.
    list.erase(list.begin() + static_cast<std::ptrdiff_t>(last) + 1,
               list.begin() + static_cast<std::ptrdiff_t>(next));
    file.segmentCount = static_cast<std::uint32_t>(count - (next - last - 1));
    return reduction;
}

Result<RecordView<FileData>> mergedFiles(const std::vector<FileData *> &files)
{
    if (filesOverlap(files)) {
        return fail(ErrorCode::Overlap, "Overlap between segments, Unable to merge files");
    }
    RecordView<FileData> merged(new FileData);
    for (const FileData *file : files) {
        const auto segments = countedSegments(*file);
        merged->segments.insert(merged->segments.end(), segments.begin(), segments.end());
    }
    merged->segmentCount = static_cast<std::uint32_t>(merged->segments.size());
    FileSegmentsTri(merged.get());
    return merged;
}

}  // namespace files

void FileSegmentsTri(void *file)
{
    auto &data = *static_cast<FileData *>(file);
    const auto count = static_cast<std::ptrdiff_t>(files::countedSegments(data).size());
    std::stable_sort(
        data.segments.begin(), data.segments.begin() + count,
        [](const SegmentData &a, const SegmentData &b) { return a.address < b.address; });
}
