#include "workbench/tabs/ob/BitTable.h"

#include "workbench/widgets/FieldNames.h"
#include "workbench/widgets/VerticalTextDelegate.h"

#include <QComboBox>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QSignalBlocker>
#include <QStyle>

#include <algorithm>
#include <climits>

namespace workbench
{

namespace
{

constexpr int kColumns = 16;
constexpr int kRowsOfHalf = 3;
constexpr int kRowHeights[] = {30, 90, 30};
constexpr int kNarrowest = 42;
constexpr int kWidest = 60;  // of a bit's button
constexpr int kCellPoints = 7;
const QColor kReservedColour(0xF4, 0xF4, 0xF4);
const QColor kReservedText(0x5F, 0x6B, 0x77);
const QColor kPrint(0x1C, 0x27, 0x33);
const QColor kGrid(0xC3, 0xCB, 0xD3);

// A light sheet in every theme: the red and black of a text box and the grey of reserved bits are
// fixed, and only on light ground can all of them be read.
const char *const kSheet = R"(
QTableWidget { background: white; color: #1C2733; gridline-color: #C3CBD3; border-radius: 0px; }
QTableWidget::item { padding: 0px; }
QPushButton, QLineEdit, QComboBox {
    min-height: 0px; margin: 2px; border: 1px solid #7F8C99; border-radius: 3px;
    background: white; color: #1C2733; }
QPushButton { padding: 0px; font-weight: bold; }
QPushButton[bit="1"] { background: #1A659E; color: white; border-color: #1A659E; }
QLineEdit { padding: 0px 4px; }
QLineEdit:read-only { background: #F4F4F4; }
QComboBox { padding: 0px 20px 0px 4px; }
QComboBox::drop-down { width: 18px; }
QPushButton:focus, QLineEdit:focus, QComboBox:focus { border: 2px solid #3CA7DB; margin: 1px; }
QPushButton:hover, QLineEdit:hover, QComboBox:hover { border-color: #2C8ABF; }
QPushButton:disabled, QComboBox:disabled {
    background: #F4F4F4; color: #5F6B77; border-color: #C3CBD3; font-weight: normal; }
QComboBox QAbstractItemView { background: white; color: #1C2733;
    selection-background-color: #1A659E; selection-color: white; }
)";

QTableWidgetItem *makeItem(const QString &text, const QString &toolTip = {})
{
    auto *item = new QTableWidgetItem(text);
    QFont font = item->font();
    font.setPointSize(kCellPoints);
    item->setFont(font);
    item->setTextAlignment(Qt::AlignCenter);
    item->setForeground(kPrint);
    item->setFlags(Qt::ItemIsEnabled);
    item->setToolTip(plainToolTip(toolTip));
    return item;
}

int topRowOf(const device::BitCell &cell)
{
    return cell.isUpperHalf ? 0 : kRowsOfHalf;
}

obRegField flatField(const obReg &reg, const obField &field)
{
    return {reg.name,          reg.address,  field.name,       field.offset, field.width,
            field.description, field.values, field.defaultVal, field.access};
}

}  // namespace

BitTable::BitTable(const device::ObEditor &editor, std::size_t reg, QWidget *parent)
    : QTableWidget(2 * kRowsOfHalf, kColumns, parent), m_editor(editor), m_reg(reg),
      m_layout(device::bitTableLayout(editor.reg(reg))),
      m_byField(editor.reg(reg).fields.size(), nullptr)
{
    m_handle.name = editor.reg(reg).name;
    m_handle.address = editor.reg(reg).address;
    setStyleSheet(QLatin1String(kSheet));
    setAccessibleName(tr("Bits of %1").arg(QString::fromStdString(m_handle.name)));
    horizontalHeader()->hide();
    verticalHeader()->hide();
    horizontalHeader()->setMinimumSectionSize(1);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setEditTriggers(NoEditTriggers);
    setSelectionMode(NoSelection);
    setFocusPolicy(Qt::NoFocus);  // the widgets take it
    setTabKeyNavigation(false);
    int height = 2 * frameWidth();
    for (int row = 0; row < 2 * kRowsOfHalf; ++row) {
        setRowHeight(row, kRowHeights[row % kRowsOfHalf]);
        height += rowHeight(row);
    }
    setFixedHeight(height);
    setMinimumWidth(kColumns * kNarrowest + 2 * frameWidth());
    setMaximumWidth(kColumns * kWidest + 2 * frameWidth());
    auto *vertical = new VerticalTextDelegate(this);
    setItemDelegateForRow(1, vertical);
    setItemDelegateForRow(kRowsOfHalf + 1, vertical);
    placeNumbers();
    for (const device::BitCell &cell : m_layout) {
        if (cell.field < 0) {
            placeReserved(cell);
        } else {
            placeField(cell);
        }
    }
}

void BitTable::placeNumbers()
{
    for (int column = 0; column < kColumns; ++column) {
        const int low = kColumns - 1 - column;
        setItem(0, column, makeItem(QString::number(low + kColumns)));
        setItem(kRowsOfHalf, column, makeItem(QString::number(low)));
    }
}

void BitTable::placeReserved(const device::BitCell &cell)
{
    const int top = topRowOf(cell);
    QTableWidgetItem *name = makeItem(tr("Res."), tr("Reserved."));
    name->setBackground(kReservedColour);
    name->setForeground(kReservedText);
    setItem(top + 1, cell.column, name);
    auto *button = new QPushButton(QStringLiteral("1"), this);
    button->setMaximumWidth(kWidest);
    button->setEnabled(false);
    button->setObjectName(QStringLiteral("Reserved."));
    button->setAccessibleName(tr("Reserved bit"));
    setCellWidget(top + 2, cell.column, button);
    sfiObBitBtn_t entry;
    entry.regName = m_handle.name;
    entry.regAddress = m_handle.address;
    entry.name = "Reserved.";
    entry.offset = static_cast<std::uint8_t>((cell.isUpperHalf ? 31 : 15) - cell.column);
    entry.width = 1;
    entry.button = button;
    m_handle.buttons.push_back(entry);
}

void BitTable::placeField(const device::BitCell &cell)
{
    const auto field = static_cast<std::size_t>(cell.field);
    const device::FieldId id = {m_reg, field};
    const int top = topRowOf(cell);
    setItem(top + 1, cell.column, makeItem(QString::fromStdString(m_editor.field(id).name)));
    setItem(top + 2, cell.column, makeItem({}));
    if (cell.span > 1) {
        setSpan(top + 1, cell.column, 1, cell.span);
        setSpan(top + 2, cell.column, 1, cell.span);
    }
    if (cell.hasWidget) {
        QWidget *widget = makeWidget(id);
        widget->installEventFilter(this);
        m_byField[field] = widget;
        m_inOrder.push_back(widget);
        setCellWidget(top + 2, cell.column, widget);
    }
    refresh(field);
}

QWidget *BitTable::makeWidget(device::FieldId id)
{
    const obRegField flat = flatField(m_editor.reg(m_reg), m_editor.field(id));
    QWidget *widget = nullptr;
    switch (m_editor.state(id).kind) {
    case device::FieldKind::Button:
        widget = makeButton(id, flat);
        break;
    case device::FieldKind::ComboBox:
        widget = makeComboBox(id, flat);
        break;
    default:
        widget = makeTextBox(id, flat);
        break;
    }
    widget->setObjectName(QString::fromStdString(flat.name));
    return widget;
}

QWidget *BitTable::makeButton(device::FieldId id, const obRegField &flat)
{
    auto *button = new QPushButton(this);
    button->setMaximumWidth(kWidest);
    button->setEnabled(m_editor.state(id).isEditable);
    connect(button, &QPushButton::clicked, this, [this, id, button] {
        emit edited(id, button->text() == QLatin1String("1") ? QStringLiteral("0")
                                                             : QStringLiteral("1"));
    });
    sfiObBitBtn_t entry;
    static_cast<obRegField &>(entry) = flat;
    entry.button = button;
    entry.id = id;
    m_handle.buttons.push_back(entry);
    return button;
}

QWidget *BitTable::makeComboBox(device::FieldId id, const obRegField &flat)
{
    const device::FieldState &state = m_editor.state(id);
    auto *box = new QComboBox(this);
    box->addItems(state.choices);
    const std::vector<std::uint32_t> &final = m_editor.notes(id).irreversible;
    for (int i = 0; i < box->count(); ++i) {
        const std::uint32_t value = box->itemText(i).toUInt(nullptr, 16);
        QString tip = device::valueText(m_editor.field(id), value);
        if (std::find(final.begin(), final.end(), value) != final.end()) {
            tip += QLatin1Char('\n') + tr("can't be taken back");
        }
        box->setItemData(i, plainToolTip(tip), Qt::ToolTipRole);
    }
    box->setCurrentIndex(state.choices.indexOf(state.text));
    box->setEnabled(state.isEditable);
    box->setMinimumContentsLength(1);
    box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    connect(box, &QComboBox::currentTextChanged, this,
            [this, id](const QString &text) { emit edited(id, text); });
    sfiObFieldComboBox_t entry;
    static_cast<obRegField &>(entry) = flat;
    entry.box = box;
    entry.enabled = state.isEditable;
    entry.id = id;
    m_handle.comboBoxes.push_back(entry);
    return box;
}

QWidget *BitTable::makeTextBox(device::FieldId id, const obRegField &flat)
{
    auto *edit = new QLineEdit(this);
    edit->setReadOnly(!m_editor.state(id).isEditable);
    connect(edit, &QLineEdit::textChanged, this,
            [this, id](const QString &text) { emit edited(id, text); });
    sfiObFieldTextBox_t entry;
    static_cast<obRegField &>(entry) = flat;
    entry.edit = edit;
    entry.id = id;
    m_handle.textBoxes.push_back(entry);
    return edit;
}

void BitTable::refresh(std::size_t field)
{
    QWidget *widget = m_byField[field];
    const device::FieldState &state = m_editor.state({m_reg, field});
    const QSignalBlocker blocker(widget);
    if (auto *button = qobject_cast<QPushButton *>(widget); button != nullptr) {
        button->setText(state.text);
        button->setProperty("bit", state.text);
        button->style()->unpolish(button);
        button->style()->polish(button);
    } else if (auto *box = qobject_cast<QComboBox *>(widget); box != nullptr) {
        if (box->currentText() != state.text) {
            box->setCurrentIndex(state.choices.indexOf(state.text));
        }
    } else if (auto *edit = qobject_cast<QLineEdit *>(widget); edit != nullptr) {
        if (edit->text() != state.text) {
            edit->setText(state.text);
        }
        edit->setStyleSheet(state.isValid ? QStringLiteral("color: black;")
                                          : QStringLiteral("color: red;"));
    }
    refreshTips(field);
}

void BitTable::refreshTips(std::size_t field)
{
    const device::FieldId id = {m_reg, field};
    const QString tip = plainToolTip(
        device::fieldToolTip(m_editor.field(id), m_editor.notes(id), m_editor.bits(id)));
    const QString equation = device::equationText(m_editor.notes(id), m_editor.bits(id));
    if (m_byField[field] != nullptr) {
        m_byField[field]->setToolTip(tip);
        m_byField[field]->setAccessibleName(device::accessibleText(m_editor, id));
    }
    for (const device::BitCell &cell : m_layout) {
        for (int row = topRowOf(cell) + 1; row <= topRowOf(cell) + 2; ++row) {
            QTableWidgetItem *cellItem = item(row, cell.column);
            if (cell.field == static_cast<int>(field) && cellItem != nullptr) {
                cellItem->setToolTip(tip);
                if (!cell.hasWidget && row == topRowOf(cell) + 2) {
                    cellItem->setText(equation.isEmpty() ? tr("see bits above") : equation);
                }
            }
        }
    }
}

bool BitTable::eventFilter(QObject *watched, QEvent *event)
{
    const auto at = std::find(m_byField.begin(), m_byField.end(), watched);
    if (at == m_byField.end()) {
        return QTableWidget::eventFilter(watched, event);
    }
    switch (event->type()) {
    case QEvent::FocusIn:
        emit focused({m_reg, static_cast<std::size_t>(at - m_byField.begin())});
        break;
    case QEvent::KeyPress: {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (static_cast<QKeyEvent *>(event)->modifiers().testFlag(Qt::ControlModifier) ||
            static_cast<QKeyEvent *>(event)->modifiers().testFlag(Qt::ShiftModifier)) {
            break;
        }
        auto *box = qobject_cast<QComboBox *>(*at);
        if (box != nullptr && (key == Qt::Key_Return || key == Qt::Key_Enter)) {
            box->showPopup();
            return true;
        }
        return walk(*at, key);
    }
    default:
        break;
    }
    return QTableWidget::eventFilter(watched, event);
}

/// Moves the focus by an arrow key: left and right through the bits, up and down between the
/// halves.
bool BitTable::walk(QWidget *from, int key)
{
    const auto *edit = qobject_cast<QLineEdit *>(from);
    if (edit != nullptr &&
        ((key == Qt::Key_Left && edit->cursorPosition() > 0) ||
         (key == Qt::Key_Right && edit->cursorPosition() < edit->text().size()))) {
        return false;  // the cursor walks first
    }
    QWidget *best = nullptr;
    int bestDistance = INT_MAX;
    const QPoint here = from->geometry().center();
    for (QWidget *candidate : m_inOrder) {
        if (candidate == from || !candidate->isEnabled()) {
            continue;
        }
        const QPoint there = candidate->geometry().center();
        const bool isSameHalf = there.y() == here.y();
        int distance = qAbs(there.x() - here.x());
        bool fits = false;
        if (key == Qt::Key_Left || key == Qt::Key_Right) {
            // Beyond the end of a half the other half goes on.
            const int step = key == Qt::Key_Left ? -1 : 1;
            const int along = (there.x() - here.x()) * step +
                              (isSameHalf ? 0 : (there.y() - here.y()) * step * width());
            fits = along > 0;
            distance = along;
        } else if (key == Qt::Key_Up || key == Qt::Key_Down) {
            fits = (there.y() - here.y()) * (key == Qt::Key_Down ? 1 : -1) > 0;
        } else {
            return false;
        }
        if (fits && distance < bestDistance) {
            best = candidate;
            bestDistance = distance;
        }
    }
    if (best != nullptr) {
        best->setFocus(Qt::TabFocusReason);
    }
    return true;  // a box at the edge must not change by the key
}

/// Qt leaves out some grid lines beside joined cells; every row has its line here.
void BitTable::paintEvent(QPaintEvent *event)
{
    QTableWidget::paintEvent(event);
    QPainter painter(viewport());
    painter.setPen(kGrid);
    for (int row = 0; row < rowCount(); ++row) {
        const int y = rowViewportPosition(row) + rowHeight(row) - 1;
        painter.drawLine(0, y, viewport()->width(), y);
    }
}

void BitTable::resizeEvent(QResizeEvent *event)
{
    QTableWidget::resizeEvent(event);
    const int width = viewport()->width();
    for (int column = 0; column < kColumns; ++column) {
        setColumnWidth(column, width * (column + 1) / kColumns - width * column / kColumns);
    }
}

}  // namespace workbench
