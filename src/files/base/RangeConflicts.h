#pragma once
#include <cstdint>
#include <vector>

namespace files
{

/// Start and end (first address behind it) of a block of memory. The end may lie below the start
/// when the sum has wrapped; the three conditions then mean what they say.
struct Range {
    std::uint64_t start = 0;
    std::uint64_t end = 0;
};

/// The overlap rule of segments and areas, `a` standing before `b` in the file or file list.
/// One case escapes it: `b` begins inside `a` and both end at the same address.
constexpr bool conflicts(const Range &a, const Range &b)
{
    return (b.start <= a.start && a.start < b.end) || (b.start < a.end && a.end < b.end) ||
           (a.start <= b.start && a.end > b.end);
}

/// A growing set of ranges that answers `conflicts(a, any of the set)` in logarithmic time.
class RangeConflicts
{
public:
    /// @param candidates  every range that will be added, in any order
    explicit RangeConflicts(const std::vector<Range> &candidates);

    void add(const Range &range);

    /// @return whether some added range `b` fulfils `conflicts(a, b)`
    [[nodiscard]] bool anyConflictsWith(const Range &a) const;

private:
    [[nodiscard]] std::size_t startsBelow(std::uint64_t limit) const;
    [[nodiscard]] std::size_t startsUpTo(std::uint64_t limit) const;
    [[nodiscard]] std::uint64_t greatestEnd(std::size_t count) const;
    [[nodiscard]] std::uint64_t smallestEnd(std::size_t from) const;

    std::vector<std::uint64_t> m_starts;  ///< ascending, each once
    // Fenwick trees over the starts: greatest end among the first n, smallest among the last n.
    std::vector<std::uint64_t> m_greatest;
    std::vector<std::uint64_t> m_smallest;
};

}  // namespace files
