#include "workbench/widgets/PermissionTable.h"

#include "workbench/widgets/FieldNames.h"

#include <QGridLayout>
#include <QSignalBlocker>
#include <QToolButton>

namespace workbench
{

namespace
{

constexpr int kPerRow = 16;
constexpr int kGroup = 4;

}  // namespace

PermissionTable::PermissionTable(const QString &name, const std::vector<PermissionBit> &bits,
                                 QWidget *parent)
    : QWidget(parent)
{
    // Framed, unlike the buttons of a tool bar: a bit that isn't set must look like a button, too.
    setStyleSheet(QStringLiteral(
        "QToolButton { border: 1px solid #7F8C99; border-radius: 4px; padding: 1px; }"
        "QToolButton:focus { border: 2px solid #2C8ABF; padding: 0px; }"
        "QToolButton:checked { background: rgba(60, 167, 219, 70); }"
        "QToolButton:disabled { border-color: rgba(127, 140, 153, 110); }"));
    auto *const grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(2);
    const int count = static_cast<int>(bits.size());
    m_buttons.resize(bits.size());
    // Created in the order in which they are read, which is the order of the Tab key.
    for (int bit = count - 1; bit >= 0; --bit) {
        const PermissionBit &named = bits[static_cast<std::size_t>(bit)];
        auto *const button = new QToolButton(this);
        nameWidget(button, QStringLiteral("%1_bit%2_check").arg(name).arg(bit), named.name);
        button->setToolTip(plainToolTip(named.name + QLatin1Char('\n') + named.toolTip));
        button->setCheckable(true);
        button->setEnabled(named.isUsable);
        button->setFocusPolicy(Qt::StrongFocus);
        button->setFixedSize(30, 38);
        m_buttons[static_cast<std::size_t>(bit)] = button;
        show(bit, false);
        connect(button, &QToolButton::toggled, this, [this, bit](bool isSet) {
            show(bit, isSet);
            emit changed();
        });
        const int place = (count - 1 - bit) % kPerRow;
        grid->addWidget(button, (count - 1 - bit) / kPerRow, place + place / kGroup);
    }
    for (int gap = kGroup; gap < kPerRow + kPerRow / kGroup; gap += kGroup + 1) {
        grid->setColumnMinimumWidth(gap, 8);
    }
    grid->setColumnStretch(kPerRow + kPerRow / kGroup, 1);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void PermissionTable::show(int bit, bool isSet)
{
    const QString mark = isSet ? QString(QChar(0x2713)) : QStringLiteral(" ");
    m_buttons[static_cast<std::size_t>(bit)]->setText(mark + QLatin1Char('\n') +
                                                      QString::number(bit));
}

std::uint64_t PermissionTable::mask() const
{
    std::uint64_t mask = 0;
    for (std::size_t bit = 0; bit < m_buttons.size(); ++bit) {
        mask |= std::uint64_t{m_buttons[bit]->isChecked()} << bit;
    }
    return mask;
}

void PermissionTable::setMask(std::uint64_t mask)
{
    const std::uint64_t before = this->mask();
    for (std::size_t bit = 0; bit < m_buttons.size(); ++bit) {
        const QSignalBlocker quiet(m_buttons[bit]);
        const bool isSet = m_buttons[bit]->isEnabled() && (mask >> bit & 1) != 0;
        m_buttons[bit]->setChecked(isSet);
        show(static_cast<int>(bit), isSet);
    }
    if (this->mask() != before) {
        emit changed();
    }
}

QToolButton *PermissionTable::button(int bit) const
{
    const bool isThere = bit >= 0 && static_cast<std::size_t>(bit) < m_buttons.size();
    return isThere ? m_buttons[static_cast<std::size_t>(bit)] : nullptr;
}

}  // namespace workbench
