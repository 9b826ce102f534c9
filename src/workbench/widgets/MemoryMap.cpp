#include "workbench/widgets/MemoryMap.h"

#include "workbench/widgets/FieldNames.h"

#include <QAccessible>
#include <QFontDatabase>
#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>

#include <algorithm>

namespace workbench
{

namespace
{

constexpr int kMargin = 3;
constexpr int kSigns = 11;
constexpr int kLeastStrip = 34;
constexpr int kFairStrip = 76;
constexpr int kMostStrip = 240;
constexpr int kGaps = 8;
constexpr int kLegendLines = 2;
constexpr int kWordLines = 3;

}  // namespace

MemoryMap::MemoryMap(const QString &name, const QString &title, QWidget *parent)
    : QWidget(parent), m_title(title)
{
    nameWidget(this, name, tr("%1 Memory map").arg(title));
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    hide();
}

void MemoryMap::setContents(MapContents contents)
{
    m_contents = std::move(contents);
    m_picture = {};
    m_pictureWidth = -1;
    m_selected = -1;
    m_hovered = -1;
    setVisible(!m_contents.blocks.empty());
    tellReaders();
    updateGeometry();
    update();
}

const MapPicture &MemoryMap::picture() const
{
    if (m_contents.blocks.empty()) {
        return m_picture;  // without looking for the font of its rooms
    }
    const double width = std::max(1, rooms().strip.width());
    const double pixel = 1 / devicePixelRatioF();
    if (width != m_pictureWidth || pixel != m_picturePixel) {
        m_picture = layoutMap(m_contents, width, pixel);
        m_pictureWidth = width;
        m_picturePixel = pixel;
    }
    return m_picture;
}

const MapBlock &MemoryMap::blockAt(int place) const
{
    const int index = picture().order[static_cast<std::size_t>(place)];
    return m_contents.blocks[static_cast<std::size_t>(index)];
}

int MemoryMap::selectedBlock() const
{
    return m_selected < 0 ? -1 : picture().order[static_cast<std::size_t>(m_selected)];
}

void MemoryMap::selectRow(int row)
{
    const auto &order = picture().order;
    const auto hit = std::find_if(order.begin(), order.end(), [this, row](int index) {
        return m_contents.blocks[static_cast<std::size_t>(index)].row == row;
    });
    m_selected = row < 0 || hit == order.end() ? -1 : static_cast<int>(hit - order.begin());
    tellReaders();
    update();
}

void MemoryMap::choose(int place)
{
    m_selected = place;
    tellReaders();
    update();
    if (place >= 0) {
        emit rowChosen(blockAt(place).row);
    }
}

void MemoryMap::ask(int place)
{
    const MapBlock block = blockAt(place);
    if (block.row < 0) {
        emit groupChosen(block.group, block.number);
    }
}

void MemoryMap::tellReaders()
{
    QString words = describeMap(m_contents, picture());
    if (m_selected >= 0) {
        words.prepend(wordsOf(m_selected) + QStringLiteral(". "));
    }
    setAccessibleDescription(words);  // tells readers of the change
}

QString MemoryMap::wordsOf(int place) const
{
    QString words = describeBlock(m_contents, blockAt(place));
    for (const MapMark &mark : picture().marks) {
        if (mark.first == place || mark.second == place) {
            words += QStringLiteral(". ") + describeMark(m_contents, picture(), mark);
        }
    }
    return words;
}

QString MemoryMap::words() const
{
    if (m_hovered >= 0 || m_selected >= 0) {
        return wordsOf(m_hovered >= 0 ? m_hovered : m_selected);
    }
    const auto &marks = picture().marks;
    if (marks.empty()) {
        return {};
    }
    const auto gravest =
        std::min_element(marks.begin(), marks.end(),
                         [](const MapMark &a, const MapMark &b) { return a.kind < b.kind; });
    const QString more =
        marks.size() > 1 ? tr(" (and %1 more)").arg(static_cast<int>(marks.size()) - 1) : QString();
    return describeMark(m_contents, picture(), *gravest) + more;
}

std::map<int, QString> MemoryMap::marksOfRows() const
{
    std::map<int, QString> all;
    for (const MapMark &mark : picture().marks) {
        for (const int place : {mark.first, mark.second}) {
            const int row = blockAt(place).row;
            if (row >= 0) {
                QString &words = all[row];
                words += (words.isEmpty() ? QString() : QStringLiteral("\n")) +
                         describeMark(m_contents, picture(), mark);
            }
        }
    }
    return all;
}

QFont MemoryMap::addressFont() const
{
    QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    fixed.setPointSizeF(std::max(6.0, font().pointSizeF() - 1));
    return fixed;
}

int MemoryMap::heightBesideStrip() const
{
    const int line = fontMetrics().height() + 2;
    return 2 * kMargin + 2 * QFontMetrics(addressFont()).height() + kSigns + kGaps +
           (kLegendLines + kWordLines) * line;
}

MapRooms MemoryMap::rooms() const
{
    const int address = QFontMetrics(addressFont()).height();
    const int wide = std::max(1, width() - 2 * kMargin);
    int top = kMargin;
    const auto take = [&top, wide](int high, int gap) {
        const QRect rect(kMargin, top, wide, high);
        top += high + gap;
        return rect;
    };
    MapRooms rooms;
    rooms.ends = take(address, 0);
    rooms.signs = take(kSigns, 0);
    rooms.strip = take(std::clamp(height() - heightBesideStrip(), kLeastStrip, kMostStrip), 2);
    rooms.starts = take(address, kGaps - 2);
    rooms.legend = take(std::max(0, height() - top), 0);
    return rooms;
}

QSize MemoryMap::minimumSizeHint() const
{
    return {200, heightBesideStrip() + kLeastStrip};
}

QSize MemoryMap::sizeHint() const
{
    return {400, heightBesideStrip() + kFairStrip};
}

void MemoryMap::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    paintMap(painter,
             {m_contents, picture(), palette(), addressFont(), m_selected, m_hovered, hasFocus(),
              words()},
             rooms());
}

int MemoryMap::placeUnder(const QPoint &point) const
{
    const QRect strip = rooms().strip;
    if (!strip.contains(point)) {
        return -1;
    }
    return picture().placeAt(point.x() - strip.left() + 0.5,
                             (point.y() - strip.top()) / static_cast<double>(strip.height()));
}

void MemoryMap::mouseMoveEvent(QMouseEvent *event)
{
    const int place = placeUnder(event->pos());
    if (place != m_hovered) {
        m_hovered = place;
        update();
    }
}

void MemoryMap::leaveEvent(QEvent * /*event*/)
{
    m_hovered = -1;
    update();
}

void MemoryMap::mousePressEvent(QMouseEvent *event)
{
    const int place = placeUnder(event->pos());
    if (event->button() != Qt::LeftButton || place < 0) {
        QWidget::mousePressEvent(event);
        return;
    }
    choose(place);
    ask(place);  // last: the answer may bring other contents
}

void MemoryMap::keyPressEvent(QKeyEvent *event)
{
    const int last = static_cast<int>(m_contents.blocks.size()) - 1;
    switch (event->key()) {
    case Qt::Key_Right:
    case Qt::Key_Down:
        choose(std::min(m_selected + 1, last));
        return;
    case Qt::Key_Left:
    case Qt::Key_Up:
        choose(m_selected < 0 ? last : std::max(m_selected - 1, 0));
        return;
    case Qt::Key_Home:
        choose(std::min(0, last));
        return;
    case Qt::Key_End:
        choose(last);
        return;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (m_selected >= 0) {
            ask(m_selected);
        }
        return;
    default:
        QWidget::keyPressEvent(event);
    }
}

void MemoryMap::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::FontChange) {
        updateGeometry();
    }
    QWidget::changeEvent(event);
}

bool MemoryMap::event(QEvent *event)
{
    if (event->type() == QEvent::ToolTip) {
        auto *help = static_cast<QHelpEvent *>(event);
        const int place = placeUnder(help->pos());
        if (place < 0) {
            QToolTip::hideText();
        } else {
            QToolTip::showText(help->globalPos(), plainToolTip(wordsOf(place)), this);
        }
        return true;
    }
    return QWidget::event(event);
}

}  // namespace workbench
