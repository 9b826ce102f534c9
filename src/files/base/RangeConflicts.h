#pragma once
#include "files/base/Range.h"

#include <cstdint>
#include <vector>

namespace files
{

/// The overlap rule of segments and areas, which isn't plain overlap: `a` standing before `b` in
/// the file or file list. One case escapes it: `b` begins inside `a` and both end at the same
/// address. An end may lie below its begin when a sum has wrapped; the three conditions then mean
/// what they say.
constexpr bool conflicts(const Range &a, const Range &b)
{
    return (b.begin <= a.begin && a.begin < b.end) || (b.begin < a.end && a.end < b.end) ||
           (a.begin <= b.begin && a.end > b.end);
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
