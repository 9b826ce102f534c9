#include "workbench/widgets/PermissionTable.h"

#include "workbench/widgets/FieldNames.h"

#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QSignalBlocker>
#include <QStyle>
#include <QToolButton>

#include <algorithm>

namespace workbench
{

namespace
{

constexpr int kPerRow = 16;
constexpr int kGroup = 4;
constexpr int kWord = 32;
constexpr int kColumns = kPerRow + kPerRow / kGroup;
constexpr int kMostNamed = 8;  // of the bits that are set, by name

// Framed, unlike the buttons of a tool bar: a bit that isn't set must look like a button, too.
const char *const kStyle =
    "QToolButton { border: 1px solid #7F8C99; border-radius: 4px; padding: 1px; }"
    "QToolButton:focus { border: 2px solid #2C8ABF; padding: 0px; }"
    "QToolButton:checked { background: rgba(60, 167, 219, 70); }"
    "QToolButton:disabled { border-color: rgba(127, 140, 153, 110); }"
    "QToolButton[notable=\"true\"] { font-weight: bold; border-color: #2C8ABF; }"
    // Rows without room for the mark are told by dark and light.
    "QToolButton[flat=\"true\"]:checked { background: palette(text); color: palette(base); }";

/// One line that says by dots that there is more than fits.
class CutLabel : public QLabel
{
public:
    using QLabel::QLabel;

protected:
    void paintEvent(QPaintEvent * /*event*/) override
    {
        QPainter painter(this);
        style()->drawItemText(
            &painter, contentsRect(), static_cast<int>(alignment()), palette(), isEnabled(),
            fontMetrics().elidedText(text(), Qt::ElideRight, contentsRect().width()),
            foregroundRole());
    }
};

}  // namespace

PermissionTable::PermissionTable(const QString &name, const std::vector<PermissionBit> &bits,
                                 QWidget *parent, Layout layout)
    : QWidget(parent), m_layout(layout), m_name(name), m_buttons(bits.size()), m_bits(bits)
{
    setStyleSheet(QLatin1String(kStyle));
    auto *const grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(2);
    const int heads = layout == Layout::Words ? 1 : 0;
    // Created in the order in which they are read, which is the order of the Tab key.
    for (int bit = count() - 1; bit >= 0; --bit) {
        const int fromTop = count() - 1 - bit;
        const int line = fromTop / kPerRow + heads * (fromTop / kWord);  // a gap behind each word
        const int place = fromTop % kPerRow;
        if (heads > 0 && bit % kWord == kWord - kPerRow - 1) {
            addGroupHead(grid, bit + kPerRow, line - 1);  // its buttons are level with this row
        }
        grid->addWidget(makeButton(bit, bits[static_cast<std::size_t>(bit)]), line,
                        heads + place + place / kGroup);
    }
    for (int gap = kGroup; gap < kColumns; gap += kGroup + 1) {
        grid->setColumnMinimumWidth(heads + gap, 8);
    }
    grid->setColumnStretch(heads + kColumns, 1);
    if (layout == Layout::Words) {
        grid->setVerticalSpacing(2);
        for (int gap = kWord / kPerRow; gap < grid->rowCount(); gap += kWord / kPerRow + 1) {
            grid->setRowMinimumHeight(gap, 4);
        }
        m_note = new CutLabel(this);
        m_note->setObjectName(m_name + QStringLiteral("_note"));
        m_note->setTextFormat(Qt::PlainText);
        m_note->setSizePolicy(QSizePolicy::Ignored,
                              QSizePolicy::Fixed);  // it is cut, not the table
        grid->addWidget(m_note, grid->rowCount(), 0, 1, -1);
        connect(this, &PermissionTable::changed, this, [this] { describe(-1); });
        describe(-1);
    }
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    setFocusPolicy(Qt::ClickFocus);  // so that the key of its label leads here
    for (int bit = count() - 1; bit >= 0 && m_current < 0; --bit) {
        if (bits[static_cast<std::size_t>(bit)].isUsable) {
            makeCurrent(bit);
        }
    }
}

QToolButton *PermissionTable::makeButton(int bit, const PermissionBit &named)
{
    auto *const button = new QToolButton(this);
    m_buttons[static_cast<std::size_t>(bit)] = button;
    button->setObjectName(QStringLiteral("%1_bit%2_check").arg(m_name).arg(bit));
    button->setCheckable(true);
    button->setEnabled(named.isUsable);
    button->setFocusPolicy(Qt::ClickFocus);
    button->setProperty("flat", m_layout == Layout::Words);
    const int line = button->fontMetrics().lineSpacing();
    button->setFixedSize(30,
                         m_layout == Layout::Words ? qMax(26, line + 6) : qMax(38, 2 * line + 4));
    button->installEventFilter(this);
    name(bit, named);
    mark(bit, false);
    connect(button, &QToolButton::toggled, this, [this, bit](bool isSet) {
        mark(bit, isSet);
        emit changed();
    });
    return button;
}

void PermissionTable::addGroupHead(QGridLayout *grid, int highest, int line)
{
    const int lowest = highest - kWord + 1;
    const QString range = tr("%1 to %2").arg(highest).arg(lowest);
    auto *const head = new QWidget(this);
    auto *const layout = new QVBoxLayout(head);
    layout->setContentsMargins(0, 0, 10, 0);
    layout->setSpacing(1);
    layout->addWidget(new QLabel(range, head));
    auto *const row = new QHBoxLayout;
    layout->addLayout(row);
    layout->addStretch(1);
    for (const bool isSet : {true, false}) {
        auto *const button = new QToolButton(head);
        button->setText(isSet ? tr("All") : tr("None"));
        button->setFocusPolicy(Qt::StrongFocus);
        nameWidget(button,
                   QStringLiteral("%1_%2_%3")
                       .arg(m_name, QStringLiteral("group%1").arg(lowest / kWord),
                            isSet ? QStringLiteral("all") : QStringLiteral("none")),
                   isSet ? tr("All bits from %1").arg(range)
                         : tr("None of the bits %1").arg(range));
        button->setToolTip(button->accessibleName());
        connect(button, &QToolButton::clicked, this,
                [this, lowest, highest, isSet] { setGroup(lowest, highest, isSet); });
        row->addWidget(button);
    }
    grid->addWidget(head, line, 0, kWord / kPerRow, 1);
}

void PermissionTable::setGroup(int lowest, int highest, bool isSet)
{
    std::vector<bool> all = bits();
    std::fill(all.begin() + lowest, all.begin() + highest + 1, isSet);
    setBits(all);
}

void PermissionTable::mark(int bit, bool isSet)
{
    if (m_layout == Layout::Words) {
        m_buttons[static_cast<std::size_t>(bit)]->setText(QString::number(bit));
        return;
    }
    const QString sign = isSet ? QString(QChar(0x2713)) : QStringLiteral(" ");
    m_buttons[static_cast<std::size_t>(bit)]->setText(sign + QLatin1Char('\n') +
                                                      QString::number(bit));
}

void PermissionTable::name(int bit, const PermissionBit &named)
{
    QToolButton *const button = m_buttons[static_cast<std::size_t>(bit)];
    button->setAccessibleName(named.name);
    button->setToolTip(plainToolTip(named.name + QLatin1Char('\n') + named.toolTip));
    button->setProperty("notable", named.isNotable);
    button->style()->unpolish(button);
    button->style()->polish(button);
}

void PermissionTable::setNames(const std::vector<PermissionBit> &bits)
{
    m_bits = bits;
    for (int bit = 0; bit < count(); ++bit) {
        name(bit, bits[static_cast<std::size_t>(bit)]);
    }
    describe(-1);
}

std::uint64_t PermissionTable::mask() const
{
    std::uint64_t mask = 0;
    for (std::size_t bit = 0; bit < std::min<std::size_t>(m_buttons.size(), 64); ++bit) {
        mask |= std::uint64_t{m_buttons[bit]->isChecked()} << bit;
    }
    return mask;
}

void PermissionTable::setMask(std::uint64_t mask)
{
    std::vector<bool> wanted(64);
    for (std::size_t bit = 0; bit < wanted.size(); ++bit) {
        wanted[bit] = (mask >> bit & 1) != 0;
    }
    setBits(wanted);
}

std::vector<bool> PermissionTable::bits() const
{
    std::vector<bool> all;
    for (const QToolButton *button : m_buttons) {
        all.push_back(button->isChecked());
    }
    return all;
}

void PermissionTable::setBits(const std::vector<bool> &bits)
{
    const std::vector<bool> before = this->bits();
    for (std::size_t bit = 0; bit < m_buttons.size(); ++bit) {
        const QSignalBlocker quiet(m_buttons[bit]);
        const bool isSet = m_buttons[bit]->isEnabled() && bit < bits.size() && bits[bit];
        m_buttons[bit]->setChecked(isSet);
        mark(static_cast<int>(bit), isSet);
    }
    if (this->bits() != before) {
        emit changed();
    }
}

QToolButton *PermissionTable::button(int bit) const
{
    const bool isThere = bit >= 0 && static_cast<std::size_t>(bit) < m_buttons.size();
    return isThere ? m_buttons[static_cast<std::size_t>(bit)] : nullptr;
}

int PermissionTable::bitOf(const QObject *button) const
{
    const auto hit = std::find(m_buttons.begin(), m_buttons.end(), button);
    return hit == m_buttons.end() ? -1 : static_cast<int>(hit - m_buttons.begin());
}

void PermissionTable::makeCurrent(int bit)
{
    if (QToolButton *const old = button(m_current)) {
        old->setFocusPolicy(Qt::ClickFocus);
    }
    m_current = bit;
    button(bit)->setFocusPolicy(Qt::StrongFocus);
    setFocusProxy(button(bit));
}

bool PermissionTable::walk(int bit, int key)
{
    const int step = key == Qt::Key_Left    ? 1
                     : key == Qt::Key_Right ? -1
                     : key == Qt::Key_Up    ? kPerRow
                     : key == Qt::Key_Down  ? -kPerRow
                                            : 0;
    if (step == 0) {
        return false;
    }
    do {
        bit += step;
    } while (button(bit) != nullptr && !button(bit)->isEnabled());
    if (QToolButton *const next = button(bit)) {
        next->setFocus(Qt::OtherFocusReason);
    }
    return true;
}

void PermissionTable::describe(int bit)
{
    if (m_note == nullptr) {
        return;
    }
    QString text = summary();
    if (bit >= 0) {
        const PermissionBit &told = m_bits[static_cast<std::size_t>(bit)];
        text = told.toolTip.isEmpty() ? told.name : told.name + ": " + told.toolTip;
    }
    m_note->setText(text);
    m_note->setToolTip(plainToolTip(text));
}

QString PermissionTable::summary() const
{
    QStringList names;
    int set = 0;
    for (int each = 0; each < count(); ++each) {
        if (!m_buttons[static_cast<std::size_t>(each)]->isChecked()) {
            continue;
        }
        if (++set <= kMostNamed) {
            names << m_bits[static_cast<std::size_t>(each)].name;
        }
    }
    const QString list = names.join(QStringLiteral("; "));
    return set == 0            ? tr("No right is granted.")
           : set <= kMostNamed ? list
                               : tr("%1; and %2 more").arg(list).arg(set - kMostNamed);
}

bool PermissionTable::eventFilter(QObject *watched, QEvent *event)
{
    const int bit = bitOf(watched);
    switch (event->type()) {
    case QEvent::KeyPress:
        return bit >= 0 && walk(bit, static_cast<QKeyEvent *>(event)->key());
    case QEvent::FocusIn:
        makeCurrent(bit);
        describe(bit);
        break;
    case QEvent::Enter:
        describe(bit);
        break;
    case QEvent::Leave:
    case QEvent::FocusOut:
        describe(-1);
        break;
    default:
        break;
    }
    return QWidget::eventFilter(watched, event);
}

}  // namespace workbench
