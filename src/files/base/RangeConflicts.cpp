#include "files/base/RangeConflicts.h"

#include <algorithm>

namespace files
{

namespace
{

constexpr std::size_t lowestBit(std::size_t number)
{
    return number & (~number + 1);
}

}  // namespace

RangeConflicts::RangeConflicts(const std::vector<Range> &candidates)
{
    m_starts.reserve(candidates.size());
    for (const Range &range : candidates) {
        m_starts.push_back(range.begin);
    }
    std::sort(m_starts.begin(), m_starts.end());
    m_starts.erase(std::unique(m_starts.begin(), m_starts.end()), m_starts.end());
    m_greatest.assign(m_starts.size() + 1, 0);
    m_smallest.assign(m_starts.size() + 1, UINT64_MAX);
}

void RangeConflicts::add(const Range &range)
{
    const std::size_t count = m_starts.size();
    const std::size_t place = startsBelow(range.begin);
    for (std::size_t node = place + 1; node <= count; node += lowestBit(node)) {
        m_greatest[node] = std::max(m_greatest[node], range.end);
    }
    for (std::size_t node = count - place; node <= count; node += lowestBit(node)) {
        m_smallest[node] = std::min(m_smallest[node], range.end);
    }
}

bool RangeConflicts::anyConflictsWith(const Range &a) const
{
    // One line for each of the three conditions: a bound on the start picks a run of the sorted
    // starts, and the extreme end of that run decides.
    return greatestEnd(startsUpTo(a.begin)) > a.begin || greatestEnd(startsBelow(a.end)) > a.end ||
           smallestEnd(startsBelow(a.begin)) < a.end;
}

std::size_t RangeConflicts::startsBelow(std::uint64_t limit) const
{
    return static_cast<std::size_t>(std::lower_bound(m_starts.begin(), m_starts.end(), limit) -
                                    m_starts.begin());
}

std::size_t RangeConflicts::startsUpTo(std::uint64_t limit) const
{
    return static_cast<std::size_t>(std::upper_bound(m_starts.begin(), m_starts.end(), limit) -
                                    m_starts.begin());
}

std::uint64_t RangeConflicts::greatestEnd(std::size_t count) const
{
    std::uint64_t greatest = 0;
    for (std::size_t node = count; node > 0; node -= lowestBit(node)) {
        greatest = std::max(greatest, m_greatest[node]);
    }
    return greatest;
}

std::uint64_t RangeConflicts::smallestEnd(std::size_t from) const
{
    std::uint64_t smallest = UINT64_MAX;
    for (std::size_t node = m_starts.size() - from; node > 0; node -= lowestBit(node)) {
        smallest = std::min(smallest, m_smallest[node]);
    }
    return smallest;
}

}  // namespace files
