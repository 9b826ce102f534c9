// What a memory map says: addresses at its edges, blocks and marks in words.
#include "files/base/SizeText.h"
#include "workbench/widgets/MemoryMapLayout.h"

#include <QCoreApplication>

#include <algorithm>
#include <map>

namespace workbench
{

namespace
{

constexpr double kLabelGap = 8;    // pixels between two labels
constexpr double kMostNudge = 12;  // pixels, for the ends of runs, which tell the most

QString tr(const char *text)
{
    return QCoreApplication::translate("MemoryMap", text);
}

QString addressText(std::uint64_t address)
{
    return QStringLiteral("0x") + QString::number(address, 16);
}

QString rangeText(std::uint64_t start, std::uint64_t bytes)
{
    QString text = addressText(start);
    if (bytes > 0) {
        text = tr("%1 to %2").arg(text, addressText(start + bytes - 1));
    }
    return text + QStringLiteral(", ") + files::sizeText(bytes);
}

QString nameOf(const MapContents &contents, const MapBlock &block)
{
    return QStringLiteral("%1, %2 %3")
        .arg(contents.groups[static_cast<std::size_t>(block.group)].name, contents.blockWord)
        .arg(block.number);
}

const MapBlock &blockAt(const MapContents &contents, const MapPicture &picture, int place)
{
    return contents
        .blocks[static_cast<std::size_t>(picture.order[static_cast<std::size_t>(place)])];
}

/// A row of labels that takes those that touch no other.
class LabelRow
{
public:
    LabelRow(bool isEnd, double width) : m_isEnd(isEnd), m_width(width) {}

    /// @param text  made only when there is room at the position
    /// @param nudge  pixels by which it may stand beside its position
    template <typename Text>
    void offer(double x, double least, double nudge, bool isFirst, const Text &text,
               const std::function<double(const QString &)> &textWidth)
    {
        if (!isFree(nudged(leftFor(x, least), least, nudge), least)) {
            return;
        }
        const QString label = text();
        const double wide = textWidth(label);
        const double left = nudged(leftFor(x, wide), wide, nudge);
        if (isFree(left, wide)) {
            m_rights[left] = left + wide;
            m_labels.push_back({left, label, m_isEnd, isFirst});
        }
    }

    [[nodiscard]] const std::vector<MapLabel> &labels() const { return m_labels; }

private:
    [[nodiscard]] double leftFor(double x, double wide) const
    {
        return std::clamp(m_isEnd ? x - wide : x, 0.0, std::max(0.0, m_width - wide));
    }

    /// Away from the neighbour that stands in the way, where that is near enough.
    [[nodiscard]] double nudged(double left, double wide, double nudge) const
    {
        const auto next = m_rights.lower_bound(left);
        if (m_isEnd) {
            const double before = next == m_rights.end() ? left : next->first - kLabelGap - wide;
            return before < left && before >= std::max(0.0, left - nudge) ? before : left;
        }
        const double behind = next == m_rights.begin() ? left : std::prev(next)->second + kLabelGap;
        return behind > left && behind <= left + nudge && behind + wide <= m_width ? behind : left;
    }

    [[nodiscard]] bool isFree(double left, double wide) const
    {
        const auto next = m_rights.lower_bound(left);
        return (next == m_rights.end() || left + wide + kLabelGap <= next->first) &&
               (next == m_rights.begin() || std::prev(next)->second + kLabelGap <= left);
    }

    bool m_isEnd;
    double m_width;
    std::map<double, double> m_rights;  ///< right edge of each label by its left one
    std::vector<MapLabel> m_labels;
};

}  // namespace

std::vector<MapLabel> labelMap(const MapContents &contents, const MapPicture &picture, double width,
                               int place, const std::function<double(const QString &)> &textWidth)
{
    LabelRow starts(false, width);
    LabelRow ends(true, width);
    const double least = textWidth(QStringLiteral("0x0"));
    double nudge = 0;
    const auto offer = [&](double x, std::uint64_t address, bool isEnd, bool isFirst) {
        (isEnd ? ends : starts)
            .offer(
                x, least, nudge, isFirst, [address] { return addressText(address); }, textWidth);
    };
    if (place >= 0) {
        const MapBlock &block = blockAt(contents, picture, place);
        const MapPlace &at = picture.places[static_cast<std::size_t>(place)];
        offer(at.left, block.address, false, true);
        if (block.size > 0) {
            offer(at.right, std::uint64_t{block.address} + block.size - 1, true, true);
        }
    }
    if (!picture.edges.empty()) {
        offer(picture.edges.front().x, picture.edges.front().address, false, false);
        offer(picture.edges.back().x, picture.edges.back().address, true, false);
    }
    for (const bool ofRuns : {true, false}) {
        nudge = ofRuns ? kMostNudge : 0;
        for (const MapEdge &edge : picture.edges) {
            if ((edge.isEnd || edge.opensRun) == ofRuns) {
                offer(edge.x, edge.address, edge.isEnd, false);
            }
        }
    }
    std::vector<MapLabel> labels = starts.labels();
    labels.insert(labels.end(), ends.labels().begin(), ends.labels().end());
    return labels;
}

QString describeBlock(const MapContents &contents, const MapBlock &block)
{
    return nameOf(contents, block) + QStringLiteral(": ") + rangeText(block.address, block.size);
}

QString describeMark(const MapContents &contents, const MapPicture &picture, const MapMark &mark)
{
    const QString pair = tr("%1 and %2")
                             .arg(nameOf(contents, blockAt(contents, picture, mark.first)),
                                  nameOf(contents, blockAt(contents, picture, mark.second)));
    const std::uint64_t bytes = mark.end - mark.start;
    switch (mark.kind) {
    case MapMark::Kind::Overlap:
        return tr("Overlap between segments, Unable to merge files: %1, %2")
            .arg(pair, rangeText(mark.start, bytes));
    case MapMark::Kind::Touch:
        return tr("Overlap between segments: %1, %2").arg(pair, rangeText(mark.start, bytes));
    case MapMark::Kind::Close:
        break;
    }
    return tr("Close segments: %1 between %2").arg(files::sizeText(bytes), pair);
}

QString describeMap(const MapContents &contents, const MapPicture &picture)
{
    QStringList parts;
    for (const MapGroup &group : contents.groups) {
        parts << group.name;
    }
    QString text = parts.join(QStringLiteral(", "));
    if (!picture.edges.empty()) {
        text += QStringLiteral(": ") + tr("%1 to %2")
                                           .arg(addressText(picture.edges.front().address),
                                                addressText(picture.edges.back().address));
    }
    constexpr std::size_t kMostMarks = 5;
    for (std::size_t at = 0; at < std::min(picture.marks.size(), kMostMarks); ++at) {
        text += QStringLiteral(". ") + describeMark(contents, picture, picture.marks[at]);
    }
    if (picture.marks.size() > kMostMarks) {
        text += QStringLiteral(". ") + tr("And %1 more").arg(picture.marks.size() - kMostMarks);
    }
    return text;
}

}  // namespace workbench
