#include "workbench/widgets/MemoryMapPainter.h"

#include "workbench/widgets/Contrast.h"

#include <QCoreApplication>
#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace workbench
{

namespace
{

// Hues that most colour-blind eyes tell apart, of about one lightness. Red is for faults.
const QColor kColours[] = {{0x3C, 0xA7, 0xDB}, {0xE0, 0x9A, 0x1F}, {0x3F, 0xA6, 0x74},
                           {0xB0, 0x7C, 0xC6}, {0xC9, 0xB8, 0x2B}, {0x4F, 0x86, 0xC6},
                           {0xB9, 0x7A, 0x4B}, {0x8A, 0x93, 0x9C}};
constexpr Qt::BrushStyle kPatterns[] = {Qt::NoBrush,      Qt::BDiagPattern,    Qt::Dense6Pattern,
                                        Qt::HorPattern,   Qt::FDiagPattern,    Qt::VerPattern,
                                        Qt::CrossPattern, Qt::DiagCrossPattern};
constexpr int kColourCount = static_cast<int>(std::size(kColours));
constexpr int kPatternCount = static_cast<int>(std::size(kPatterns));
constexpr double kPaleness = 0.6;
constexpr double kNameRoom = 44;  // pixels; in a narrower block a name says nothing
constexpr double kNameMargin = 5;
constexpr int kSwatch = 16;
constexpr int kLegendGap = 14;
constexpr int kLegendLines = 2;
constexpr int kWidestName = 170;
constexpr int kWordsGap = 5;
const QColor kFocus(0x2C, 0x8A, 0xBF);  // the ring of all fields

bool isDark(const QPalette &palette)
{
    return palette.color(QPalette::Base).lightness() < 128;
}

QColor faultColour(const QPalette &palette)
{
    return isDark(palette) ? QColor(0xFF, 0x6B, 0x6B) : QColor(0xC0, 0x10, 0x28);
}

bool isPale(const MapContents &contents, int group)
{
    return contents.emphasised >= 0 && group != contents.emphasised;
}

class MapPainter
{
public:
    MapPainter(QPainter &painter, const MapView &view, const MapRooms &rooms)
        : m_painter(painter), m_view(view), m_rooms(rooms)
    {
    }

    void paint()
    {
        m_painter.setRenderHint(QPainter::Antialiasing, false);
        m_painter.fillRect(m_rooms.strip, m_view.palette.color(QPalette::Base));
        paintBreaks();
        for (const MapPiece &piece : m_view.picture.pieces) {
            paintPiece(piece);
        }
        m_painter.setPen(QPen(frameColour(), 1));
        m_painter.drawRect(m_rooms.strip.adjusted(0, 0, -1, -1));
        m_painter.setRenderHint(QPainter::Antialiasing, true);
        for (const MapMark &mark : m_view.picture.marks) {
            paintMark(mark);
        }
        paintFrame(m_view.hovered, false);
        paintFrame(m_view.selected, true);
        paintFocus();
        paintLabels();
        paintLegend();
        QRect words = m_rooms.legend;
        words.setTop(m_legendAt.y() + m_painter.fontMetrics().height() + kWordsGap);
        m_painter.setPen(textColour());
        m_painter.drawText(words, Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap, m_view.words);
    }

private:
    [[nodiscard]] QColor textColour() const { return m_view.palette.color(QPalette::WindowText); }
    [[nodiscard]] QColor frameColour() const { return {0x7F, 0x8C, 0x99}; }

    [[nodiscard]] QRectF rectOf(double left, double right, int lane, int lanes) const
    {
        const double top = m_rooms.strip.top() + 1;
        const double height = m_rooms.strip.height() - 2;
        const double upper = std::floor(top + height * lane / lanes);
        const double lower = std::floor(top + height * (lane + 1) / lanes);
        return {m_rooms.strip.left() + left, upper, right - left, lower - upper};
    }

    void fill(const QRectF &rect, int group)
    {
        const bool pale = isPale(m_view.contents, group);
        const QColor colour = mapColour(m_view.contents, group, m_view.palette, pale);
        m_painter.fillRect(rect, colour);
        const Qt::BrushStyle pattern = mapPattern(group);
        if (pattern != Qt::NoBrush) {
            QColor lines = inkOn(colour);
            lines.setAlphaF(pale ? 0.28 : 0.42);
            m_painter.fillRect(rect, QBrush(lines, pattern));
        }
    }

    void paintPiece(const MapPiece &piece)
    {
        const QRectF rect = rectOf(piece.left, piece.right, piece.lane, piece.lanes);
        fill(rect, piece.group);
        if (!piece.isWhole) {
            return;
        }
        m_painter.setPen(QPen(mixed(textColour(), m_view.palette.color(QPalette::Base), 0.3), 1));
        m_painter.setBrush(Qt::NoBrush);
        m_painter.drawRect(rect.adjusted(0, 0, -1, -1));
        paintName(rect, piece.group);
    }

    /// On a plate of plain colour, since letters don't read on a pattern.
    void paintName(const QRectF &rect, int group)
    {
        const QFontMetricsF metrics(m_painter.font());
        if (rect.width() < kNameRoom || rect.height() < metrics.height() + 4) {
            return;
        }
        const bool pale = isPale(m_view.contents, group);
        const QColor colour = mapColour(m_view.contents, group, m_view.palette, pale);
        const QString name =
            metrics.elidedText(m_view.contents.groups[static_cast<std::size_t>(group)].name,
                               Qt::ElideMiddle, rect.width() - 3 * kNameMargin);
        QRectF plate(0, 0, metrics.horizontalAdvance(name) + 2 * kNameMargin, metrics.height() + 2);
        plate.moveCenter(rect.center());
        m_painter.fillRect(plate, colour);
        m_painter.setPen(inkOn(colour));
        m_painter.drawText(plate, Qt::AlignCenter, name);
    }

    /// Two slanted strokes through a gap that isn't to scale.
    void paintBreaks()
    {
        m_painter.setRenderHint(QPainter::Antialiasing, true);
        m_painter.setPen(QPen(frameColour(), 1.2));
        const double middle = m_rooms.strip.top() + m_rooms.strip.height() / 2.0;
        double last = -100;
        constexpr double kReach = 6;
        for (const double at : m_view.picture.breaks) {
            if (at - last < 2 * kReach) {
                continue;
            }
            last = at;
            for (const double shift : {-2.0, 2.0}) {
                const double x = m_rooms.strip.left() + at + shift;
                m_painter.drawLine(QPointF(x - 2, middle + kReach),
                                   QPointF(x + 2, middle - kReach));
            }
        }
        m_painter.setRenderHint(QPainter::Antialiasing, false);
    }

    void paintSign(MapMark::Kind kind, const QPointF &centre)
    {
        constexpr double kHalf = 4.5;
        QPainterPath path;
        if (kind == MapMark::Kind::Close) {
            path.moveTo(centre + QPointF(0, -kHalf));
            path.lineTo(centre + QPointF(kHalf, 0));
            path.lineTo(centre + QPointF(0, kHalf));
            path.lineTo(centre + QPointF(-kHalf, 0));
        } else {
            path.moveTo(centre + QPointF(-kHalf, -kHalf));
            path.lineTo(centre + QPointF(kHalf, -kHalf));
            path.lineTo(centre + QPointF(0, kHalf));
        }
        path.closeSubpath();
        const bool isFault = kind != MapMark::Kind::Close;
        m_painter.setPen(QPen(isFault ? faultColour(m_view.palette) : textColour(), 1.2));
        m_painter.setBrush(isFault ? QBrush(faultColour(m_view.palette)) : Qt::NoBrush);
        m_painter.drawPath(path);
    }

    void paintMark(const MapMark &mark)
    {
        const double middle = m_rooms.strip.left() + (mark.left + mark.right) / 2;
        if (middle - m_lastSign < 3) {
            return;  // the sign there stands for this one, too
        }
        m_lastSign = middle;
        if (mark.kind != MapMark::Kind::Close) {
            QRectF rect = rectOf(mark.left, std::max(mark.right, mark.left + 3), 0, 1);
            const QColor colour = faultColour(m_view.palette);
            m_painter.fillRect(rect, QBrush(colour, Qt::DiagCrossPattern));
            m_painter.setPen(QPen(colour, 2));
            m_painter.setBrush(Qt::NoBrush);
            m_painter.drawRect(rect.adjusted(1, 1, -1, -1));
        }
        paintSign(mark.kind, {middle, m_rooms.signs.center().y() + 0.5});
    }

    void paintFrame(int at, bool isSelected)
    {
        if (at < 0 || (!isSelected && at == m_view.selected)) {
            return;
        }
        const MapPlace &place = m_view.picture.places[static_cast<std::size_t>(at)];
        constexpr double kLeast = 4;
        const double right = std::max(place.right, place.left + kLeast);
        const QRectF rect = rectOf(place.left, right, place.lane, place.lanes);
        m_painter.setBrush(Qt::NoBrush);
        if (isSelected) {
            m_painter.fillRect(rect, QColor(0, 0, 0, 50));
            m_painter.setPen(QPen(m_view.palette.color(QPalette::Base), 5));
            m_painter.drawRect(rect);
        }
        m_painter.setPen(QPen(textColour(), isSelected ? 3 : 2));
        m_painter.drawRect(rect);
    }

    void paintFocus()
    {
        if (m_view.hasFocus) {
            m_painter.setBrush(Qt::NoBrush);
            m_painter.setPen(QPen(kFocus, 2));
            m_painter.drawRoundedRect(QRectF(m_rooms.strip).adjusted(-2, -2, 2, 2), 3, 3);
        }
    }

    void paintLabels()
    {
        m_painter.save();
        m_painter.setFont(m_view.addressFont);
        const QFontMetricsF metrics(m_view.addressFont);
        const auto labels =
            labelMap(m_view.contents, m_view.picture, m_rooms.strip.width(), m_view.selected,
                     [&metrics](const QString &text) { return metrics.horizontalAdvance(text); });
        for (const MapLabel &label : labels) {
            QFont font = m_view.addressFont;
            font.setUnderline(label.isFirst);
            m_painter.setFont(font);
            m_painter.setPen(textColour());
            const QRect &row = label.isEnd ? m_rooms.ends : m_rooms.starts;
            m_painter.drawText(QPointF(row.left() + label.left, row.top() + metrics.ascent()),
                               label.text);
        }
        m_painter.restore();
    }

    void paintLegend()
    {
        m_legendAt = m_rooms.legend.topLeft();
        paintSignEntry(MapMark::Kind::Overlap,
                       QCoreApplication::translate("MemoryMap", "Overlap between segments"));
        paintSignEntry(MapMark::Kind::Close,
                       QCoreApplication::translate("MemoryMap", "Close segments"));
        const int count = static_cast<int>(m_view.contents.groups.size());
        for (int group = 0; group < count; ++group) {
            const QString &name = m_view.contents.groups[static_cast<std::size_t>(group)].name;
            const int left = count - group - 1;
            const auto swatch = [&](const QRect &box) {
                fill(box, group);
                m_painter.setPen(QPen(textColour(), 1));
                m_painter.setBrush(Qt::NoBrush);
                m_painter.drawRect(box);
            };
            if (!paintEntry(name, kWidestName, left, swatch)) {
                m_painter.drawText(m_legendAt + QPoint(0, m_painter.fontMetrics().ascent()),
                                   QStringLiteral("and %1 more").arg(left + 1));
                return;
            }
        }
    }

    void paintSignEntry(MapMark::Kind kind, const QString &text)
    {
        const auto &marks = m_view.picture.marks;
        const bool wanted = std::any_of(marks.begin(), marks.end(), [kind](const MapMark &mark) {
            return (mark.kind == MapMark::Kind::Close) == (kind == MapMark::Kind::Close);
        });
        if (wanted) {
            paintEntry(text, m_rooms.legend.width(), 0,
                       [&](const QRect &box) { paintSign(kind, QRectF(box).center()); });
        }
    }

    /// @return false when neither this line nor the next has room for it
    template <typename Swatch>
    bool paintEntry(const QString &text, int widest, int others, const Swatch &swatch)
    {
        const QFontMetrics metrics = m_painter.fontMetrics();
        const QString name = metrics.elidedText(text, Qt::ElideMiddle, widest);
        const int wide = kSwatch + 6 + metrics.horizontalAdvance(name);
        const int line = metrics.height() + 2;
        const bool isLast = m_legendAt.y() + line >= m_rooms.legend.top() + kLegendLines * line;
        const int reserve =
            isLast && others > 0 ? metrics.horizontalAdvance(QStringLiteral("and 000 more")) : 0;
        if (m_legendAt.x() + wide + reserve > m_rooms.legend.right()) {
            if (isLast) {
                return false;
            }
            m_legendAt = QPoint(m_rooms.legend.left(), m_legendAt.y() + line);
        }
        swatch(QRect(m_legendAt.x(), m_legendAt.y() + (metrics.height() - 10) / 2, kSwatch, 10));
        m_painter.setPen(textColour());
        m_painter.drawText(m_legendAt + QPoint(kSwatch + 6, metrics.ascent()), name);
        m_legendAt.rx() += wide + kLegendGap;
        return true;
    }

    QPainter &m_painter;
    const MapView &m_view;
    const MapRooms &m_rooms;
    QPoint m_legendAt;
    double m_lastSign = -100;
};

}  // namespace

QColor mapColour(const MapContents &contents, int group, const QPalette &palette, bool isPale)
{
    const MapGroup &wanted = contents.groups[static_cast<std::size_t>(group)];
    const QColor colour = wanted.colour.value_or(kColours[group % kColourCount]);
    return isPale ? mixed(colour, palette.color(QPalette::Base), kPaleness) : colour;
}

Qt::BrushStyle mapPattern(int group)
{
    // From the second round on, a colour comes with another pattern than before.
    return kPatterns[(group + group / kColourCount) % kPatternCount];
}

void paintMap(QPainter &painter, const MapView &view, const MapRooms &rooms)
{
    MapPainter(painter, view, rooms).paint();
}

}  // namespace workbench
