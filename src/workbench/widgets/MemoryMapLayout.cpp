#include "workbench/widgets/MemoryMapLayout.h"

#include "files/base/RangeConflicts.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <numeric>

namespace workbench
{

namespace
{

constexpr std::uint64_t kSpaceEnd = std::uint64_t{1} << 32;
constexpr std::uint64_t kCloseGap = 31;  // such gaps are filled when segments of one file join
constexpr double kLeastBlock = 4;        // pixels
constexpr double kLeastGap = 2;
constexpr double kWidestGap = 24;
constexpr double kSeenBreak = 10;  // narrower gaps have no room for a sign
constexpr double kOutlined = 4;    // narrower blocks are filled only
constexpr int kReach = 2;          // pixels beside a block that still mean it
constexpr int kMostLanes = 4;

std::uint64_t endOf(const MapBlock &block)
{
    return std::min(std::uint64_t{block.address} + block.size, kSpaceEnd);
}

/// By address; the larger one first, so that a block without bytes comes behind what holds it.
std::vector<int> sortedOrder(const std::vector<MapBlock> &blocks)
{
    std::vector<int> order(blocks.size());
    std::iota(order.begin(), order.end(), 0);
    const auto before = [&blocks](int a, int b) {
        const MapBlock &left = blocks[static_cast<std::size_t>(a)];
        const MapBlock &right = blocks[static_cast<std::size_t>(b)];
        return left.address != right.address ? left.address < right.address
                                             : left.size > right.size;
    };
    if (!std::is_sorted(order.begin(), order.end(), before)) {
        std::stable_sort(order.begin(), order.end(), before);
    }
    return order;
}

/// The address space cut at every start and end: from one cut to the next it is used or a gap.
class Scale
{
public:
    Scale(const std::vector<MapBlock> &blocks, const std::vector<int> &order, double width)
    {
        cut(blocks, order);
        stretch(width);
    }

    /// Fast for addresses that are asked for in about ascending order.
    double positionOf(std::uint64_t address)
    {
        constexpr std::size_t kSteps = 4;
        const std::size_t limit = std::min(m_cuts.size(), m_hint + kSteps);
        while (m_hint < limit && m_cuts[m_hint] < address) {
            ++m_hint;
        }
        if (m_hint >= m_cuts.size() || m_cuts[m_hint] != address) {
            const auto hit = std::lower_bound(m_cuts.begin(), m_cuts.end(), address);
            m_hint = static_cast<std::size_t>(hit - m_cuts.begin());
        }
        return m_positions[m_hint];
    }
    [[nodiscard]] const std::vector<double> &breaks() const { return m_breaks; }

private:
    void cut(const std::vector<MapBlock> &blocks, const std::vector<int> &order)
    {
        std::vector<std::uint64_t> starts;
        std::vector<std::uint64_t> ends;
        starts.reserve(order.size());
        ends.reserve(order.size());
        for (const int index : order) {
            const MapBlock &block = blocks[static_cast<std::size_t>(index)];
            starts.push_back(block.address);
            ends.push_back(endOf(block));
        }
        if (!std::is_sorted(ends.begin(), ends.end())) {
            std::sort(ends.begin(), ends.end());
        }
        m_cuts.reserve(2 * order.size());
        m_used.reserve(2 * order.size());
        std::size_t start = 0;
        std::size_t end = 0;
        while (end < ends.size()) {
            const std::uint64_t at =
                start < starts.size() ? std::min(starts[start], ends[end]) : ends[end];
            while (start < starts.size() && starts[start] == at) {
                ++start;
            }
            while (end < ends.size() && ends[end] == at) {
                ++end;
            }
            m_cuts.push_back(at);
            m_used.push_back(static_cast<char>(start > end));
        }
    }

    [[nodiscard]] double lengthOf(std::size_t step) const
    {
        return static_cast<double>(m_cuts[step + 1] - m_cuts[step]);
    }

    [[nodiscard]] double widthOf(bool used, double length, double scale) const
    {
        const double wanted = length * scale;
        return used ? std::max(wanted, m_leastBlock) : std::clamp(wanted, m_leastGap, m_widestGap);
    }

    /// Steps of about one length, for finding the scale without going over all of them each time.
    struct Lot {
        bool used = false;
        double count = 0;
        double length = 0;  ///< of all together
    };

    [[nodiscard]] std::vector<Lot> lots() const
    {
        constexpr std::size_t kPerDouble = 8;
        constexpr std::size_t kLengths = 34 * kPerDouble;
        std::vector<Lot> lots(2 * kLengths);
        for (std::size_t step = 0; step + 1 < m_cuts.size(); ++step) {
            const std::uint64_t length = m_cuts[step + 1] - m_cuts[step];
            // The highest bit, and the three below it.
            const auto exponent = static_cast<std::size_t>(std::bit_width(length));
            const std::uint64_t top = exponent > 3 ? length >> (exponent - 4) : length;
            const std::size_t bin = exponent * kPerDouble + static_cast<std::size_t>(top & 7);
            Lot &lot = lots[bin + (m_used[step] != 0 ? kLengths : 0)];
            lot.used = m_used[step] != 0;
            lot.count += 1;
            lot.length += static_cast<double>(length);
        }
        lots.erase(
            std::remove_if(lots.begin(), lots.end(), [](const Lot &lot) { return lot.count == 0; }),
            lots.end());
        return lots;
    }

    /// Finds pixels per byte so that all steps together about fill the width.
    [[nodiscard]] double fit(double width) const
    {
        const std::vector<Lot> all = lots();
        const auto totalAt = [&](double scale) {
            double total = 0;
            for (const Lot &lot : all) {
                total += lot.count * widthOf(lot.used, lot.length / lot.count, scale);
            }
            return total;
        };
        double low = 1e-10;
        double high = 1e6;
        constexpr int kRounds = 64;
        for (int round = 0; round < kRounds; ++round) {
            const double middle = std::sqrt(low * high);
            (totalAt(middle) < width ? low : high) = middle;
        }
        return low;
    }

    void stretch(double width)
    {
        const std::size_t steps = m_cuts.empty() ? 0 : m_cuts.size() - 1;
        const auto used = static_cast<double>(std::count(m_used.begin(), m_used.end(), 1));
        const double gaps = static_cast<double>(steps) - used;
        // Where a least width for all would take the room for telling sizes, there is less of it.
        const double shrink =
            std::min(1.0, width / 2 / std::max(1.0, used * kLeastBlock + gaps * kLeastGap));
        m_leastBlock = kLeastBlock * shrink;
        m_leastGap = kLeastGap * shrink;
        m_widestGap = std::max(m_leastGap, std::min(kWidestGap, width / 4 / std::max(1.0, gaps)));
        const double scale = fit(width);
        m_positions.assign(steps + 1, 0);
        double total = 0;
        for (std::size_t step = 0; step < steps; ++step) {
            m_positions[step] = widthOf(m_used[step] != 0, lengthOf(step), scale);
            total += m_positions[step];
        }
        // What is left by rounding, or because all blocks are empty, goes to all.
        const double rest = total > 0 ? width / total : 1;
        double at = 0;
        for (std::size_t step = 0; step < steps; ++step) {
            const double wide = m_positions[step] * rest;
            m_positions[step] = at;
            if (m_used[step] == 0 && wide > kSeenBreak &&
                lengthOf(step) * scale > m_widestGap * 1.01) {
                m_breaks.push_back(at + wide / 2);
            }
            at += wide;
        }
        m_positions[steps] = at;
    }

    std::vector<std::uint64_t> m_cuts;
    std::vector<char> m_used;  ///< of the step from a cut to the next
    std::vector<double> m_positions;
    std::vector<double> m_breaks;
    std::size_t m_hint = 0;
    double m_leastBlock = kLeastBlock;
    double m_leastGap = kLeastGap;
    double m_widestGap = kWidestGap;
};

/// Gives blocks that share addresses a lane each, as far as there are lanes.
class Lanes
{
public:
    explicit Lanes(std::vector<MapPlace> &places) : m_places(places) {}

    void add(std::uint64_t start, std::uint64_t end)
    {
        if (start >= m_reach) {
            closeKnot();
        }
        std::size_t lane = 0;
        while (lane < m_ends.size() && m_ends[lane] > start) {
            ++lane;
        }
        if (lane == m_ends.size()) {
            m_ends.push_back(end);
        }
        lane = std::min<std::size_t>(lane, kMostLanes - 1);
        m_ends[lane] = std::max(m_ends[lane], end);
        m_reach = std::max(m_reach, end);
        m_places[m_next++].lane = static_cast<int>(lane);
    }

    /// Ends a knot of blocks that are tied together by shared addresses.
    void closeKnot()
    {
        const int lanes = std::clamp(static_cast<int>(m_ends.size()), 1, kMostLanes);
        for (; m_knot < m_next; ++m_knot) {
            m_places[m_knot].lanes = lanes;
        }
        m_ends.clear();
    }

private:
    std::vector<MapPlace> &m_places;
    std::vector<std::uint64_t> m_ends;  ///< of each lane
    std::uint64_t m_reach = 0;
    std::size_t m_next = 0;
    std::size_t m_knot = 0;
};

/// A block as the search for marks sees it.
struct Neighbour {
    int place = -1;
    int group = -1;
    std::uint64_t end = 0;
};

class Marker
{
public:
    Marker(const MapContents &contents, MapPicture &picture)
        : m_contents(contents), m_picture(picture)
    {
    }

    /// Blocks come by address. The two that reach farthest, of two groups, are all that the next
    /// one can newly meet.
    void add(int place)
    {
        const MapBlock &block = blockAt(place);
        const Neighbour &other = m_far.group == block.group ? m_second : m_far;
        if (other.place >= 0) {
            compare(other, place, block);
        }
        const Neighbour own{place, block.group, endOf(block)};
        if (m_far.group == own.group) {
            m_far = own.end >= m_far.end ? own : m_far;
        } else if (own.end >= m_far.end) {
            m_second = m_far;
            m_far = own;
        } else if (own.end >= m_second.end) {
            m_second = own;
        }
    }

private:
    [[nodiscard]] const MapBlock &blockAt(int place) const
    {
        const int index = m_picture.order[static_cast<std::size_t>(place)];
        return m_contents.blocks[static_cast<std::size_t>(index)];
    }

    /// The merge's own rule, wrap of 32-bit sums included; files count in the order of the list.
    static bool refuses(const MapBlock &a, const MapBlock &b)
    {
        const auto rangeOf = [](const MapBlock &block) {
            const std::uint32_t end = block.address + block.size;
            return files::Range{block.address, end};
        };
        return a.group < b.group ? files::conflicts(rangeOf(a), rangeOf(b))
                                 : files::conflicts(rangeOf(b), rangeOf(a));
    }

    void compare(const Neighbour &other, int place, const MapBlock &block)
    {
        const std::uint64_t start = block.address;
        MapMark mark;
        mark.first = other.place;
        mark.second = place;
        const bool refused = refuses(blockAt(other.place), block);
        if (refused || other.end > start) {
            mark.kind = refused ? MapMark::Kind::Overlap : MapMark::Kind::Touch;
            mark.start = start;
            mark.end = std::max(start, std::min(other.end, endOf(block)));
        } else if (start - other.end <= kCloseGap && m_far.end <= other.end) {
            mark.kind = MapMark::Kind::Close;
            mark.start = other.end;
            mark.end = start;
        } else {
            return;
        }
        m_picture.marks.push_back(mark);
    }

    const MapContents &m_contents;
    MapPicture &m_picture;
    Neighbour m_far;
    Neighbour m_second;  ///< the one that reaches farthest among the other groups
};

/// Joins what falls into the same pixels.
void buildPieces(const MapContents &contents, MapPicture &picture, double pixel)
{
    const double pixels = 1 / pixel;
    const auto snap = [=](double x) { return std::round(x * pixels) * pixel; };
    std::vector<MapPiece> &pieces = picture.pieces;
    int last[kMostLanes] = {-1, -1, -1, -1};  // piece of each lane
    for (std::size_t at = 0; at < picture.places.size(); ++at) {
        const MapPlace &place = picture.places[at];
        const int group = contents.blocks[static_cast<std::size_t>(picture.order[at])].group;
        double left = snap(place.left);
        const double right = std::max(snap(place.right), left + pixel);
        const bool isWhole = right - left >= kOutlined;
        int &tail = last[place.lane];
        if (tail >= 0) {
            MapPiece &before = pieces[static_cast<std::size_t>(tail)];
            if (right <= before.right) {
                continue;  // all its pixels are taken
            }
            if (!isWhole && !before.isWhole && before.group == group &&
                before.lanes == place.lanes && left <= before.right) {
                before.right = right;
                continue;
            }
            left = std::max(left, before.right);
        }
        tail = static_cast<int>(pieces.size());
        pieces.push_back(
            {left, right, group, place.lane, place.lanes, isWhole, static_cast<int>(at)});
    }
}

void addEdge(std::vector<MapEdge> &edges, const MapEdge &edge)
{
    // The one before has the same kind, or stands one further back.
    const std::size_t look = std::min<std::size_t>(edges.size(), 2);
    for (auto at = edges.end() - static_cast<std::ptrdiff_t>(look); at != edges.end(); ++at) {
        if (at->isEnd == edge.isEnd && edge.x - at->x < 1) {
            return;
        }
    }
    edges.push_back(edge);
}

void buildEdges(const MapContents &contents, MapPicture &picture)
{
    std::uint64_t runStart = 0;
    std::uint64_t reach = 0;
    double reachX = 0;
    const auto endRun = [&] {
        if (reach > runStart) {
            addEdge(picture.edges, {reachX, reach - 1, true, false});
        }
    };
    for (std::size_t at = 0; at < picture.places.size(); ++at) {
        const MapBlock &block = contents.blocks[static_cast<std::size_t>(picture.order[at])];
        const bool opensRun = at == 0 || block.address > reach;
        if (opensRun) {
            endRun();
            runStart = block.address;
        }
        addEdge(picture.edges, {picture.places[at].left, block.address, false, opensRun});
        if (at == 0 || endOf(block) > reach) {
            reach = endOf(block);
            reachX = picture.places[at].right;
        }
    }
    endRun();
}

}  // namespace

MapPicture layoutMap(const MapContents &contents, double width, double pixel)
{
    MapPicture picture;
    if (contents.blocks.empty() || width <= 0) {
        return picture;
    }
    picture.order = sortedOrder(contents.blocks);
    Scale scale(contents.blocks, picture.order, width);
    picture.breaks = scale.breaks();
    picture.places.resize(picture.order.size());
    Lanes lanes(picture.places);
    Marker marker(contents, picture);
    for (std::size_t at = 0; at < picture.order.size(); ++at) {
        const MapBlock &block = contents.blocks[static_cast<std::size_t>(picture.order[at])];
        picture.places[at].left = scale.positionOf(block.address);
        picture.places[at].right = scale.positionOf(endOf(block));
        lanes.add(block.address, endOf(block));
        if (contents.mergesGroups) {
            marker.add(static_cast<int>(at));
        }
    }
    lanes.closeKnot();
    for (MapMark &mark : picture.marks) {
        mark.left = scale.positionOf(mark.start);
        mark.right = scale.positionOf(mark.end);
    }
    buildPieces(contents, picture, pixel);
    buildEdges(contents, picture);
    return picture;
}

int MapPicture::placeAt(double x, double height) const
{
    // Lefts ascend, so what holds a position stands before the first one behind it. Only blocks
    // that are tied together can hide each other.
    const auto behind =
        std::upper_bound(places.begin(), places.end(), x + kReach,
                         [](double at, const MapPlace &place) { return at < place.left; });
    constexpr std::ptrdiff_t kLookBack = 256;
    int best = -1;
    double bestDistance = kReach;
    const auto first =
        std::max(places.begin(), behind - std::min(kLookBack, behind - places.begin()));
    for (auto at = behind; at != first;) {
        --at;
        const int lane = std::min(static_cast<int>(height * at->lanes), at->lanes - 1);
        const double distance = std::max({0.0, at->left - x, x - at->right});
        if (lane == at->lane && (best < 0 ? distance <= bestDistance : distance < bestDistance)) {
            best = static_cast<int>(at - places.begin());
            bestDistance = distance;
        }
    }
    return best;
}

}  // namespace workbench
