#include "workbench/tabs/ob/RegisterTree.h"

#include "workbench/widgets/FieldNames.h"
#include "workbench/widgets/ItemDelegate.h"
#include "workbench/widgets/TableCopy.h"

#include <QComboBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QScrollBar>

namespace workbench
{

namespace
{

enum Column { kName, kAddress, kValue, kChanged, kColumns };

constexpr int kIndentation = 16;
constexpr int kRowHeight = 30;    // from here on the delegate leaves a row as it is
constexpr int kTableHint = 29;    // and gives a lower one the room of a bit table
constexpr int kNameHeight = 120;  // rows of bit numbers and field names
constexpr int kRegisterRole = Qt::UserRole;

void setRowHeight(QTreeWidgetItem *item)
{
    for (int column = 0; column < kColumns; ++column) {
        item->setSizeHint(column, QSize(1, kRowHeight));
    }
}

}  // namespace

RegisterTree::RegisterTree(QWidget *parent) : QTreeWidget(parent)
{
    nameWidget(this, QStringLiteral("ob_registers_tree"), tr("Registers"));
    setColumnCount(kColumns);
    setHeaderLabels({tr("Register"), tr("Address"), tr("Value"), tr("Changed")});
    setIndentation(kIndentation);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollMode(ScrollPerPixel);
    setItemDelegate(new ItemDelegate(this));
    setSelectionMode(ExtendedSelection);
    makeCopyable(this);
    header()->setSectionResizeMode(kName, QHeaderView::Interactive);
    header()->setStretchLastSection(true);
    header()->resizeSection(kName, 220);
    header()->resizeSection(kAddress, 130);
    header()->resizeSection(kValue, 130);
    connect(this, &QTreeWidget::itemExpanded, this, &RegisterTree::buildTable);
}

void RegisterTree::show(const device::ObEditor *editor)
{
    // The view would only delete them later, and until then they would look at another device.
    qDeleteAll(m_tables);
    m_tables.clear();
    m_items.clear();
    clear();
    m_editor = editor;
    if (editor == nullptr) {
        return;
    }
    QTreeWidgetItem *group = nullptr;
    m_tables.resize(editor->registers().size(), nullptr);
    for (std::size_t reg = 0; reg < m_tables.size(); ++reg) {
        const QString category = QString::fromStdString(editor->category(reg));
        if (group == nullptr || group->text(kName) != category) {
            group = new QTreeWidgetItem(this, {category});
            setRowHeight(group);
            group->setFirstColumnSpanned(true);
            QFont font = group->font(kName);
            font.setBold(true);
            group->setFont(kName, font);
            group->setExpanded(true);
        }
        auto *item = new QTreeWidgetItem(group);
        item->setData(kName, kRegisterRole, static_cast<qulonglong>(reg));
        item->setText(kName, QString::fromStdString(editor->reg(reg).name));
        item->setText(kAddress, device::wordText(editor->reg(reg).address));
        setRowHeight(item);
        item->setChildIndicatorPolicy(QTreeWidgetItem::ShowIndicator);
        m_items.push_back(item);
        refreshRow(reg);
    }
    for (QTreeWidgetItem *item : m_items) {
        if (item->parent() == topLevelItem(0)) {
            item->setExpanded(true);
        }
    }
}

void RegisterTree::buildTable(QTreeWidgetItem *item)
{
    const QVariant place = item->data(kName, kRegisterRole);
    if (!place.isValid() || item->childCount() != 0) {
        return;
    }
    const auto reg = static_cast<std::size_t>(place.toULongLong());
    auto *row = new QTreeWidgetItem(item);
    row->setFlags(Qt::ItemIsEnabled);
    row->setFirstColumnSpanned(true);
    row->setSizeHint(kName, QSize(1, kTableHint));
    auto *bits = new BitTable(*m_editor, reg, this);
    connect(bits, &BitTable::edited, this, &RegisterTree::edited);
    connect(bits, &BitTable::focused, this, &RegisterTree::bringIntoView);
    connect(bits, &BitTable::focused, this, &RegisterTree::focused);
    setItemWidget(row, kName, bits);
    m_tables[reg] = bits;
    emit tablesChanged();
}

void RegisterTree::refresh(device::FieldId id)
{
    if (m_tables[id.reg] != nullptr) {
        m_tables[id.reg]->refresh(id.field);
    }
    refreshRow(id.reg);
}

void RegisterTree::refreshRow(std::size_t reg)
{
    QTreeWidgetItem *item = m_items[reg];
    item->setText(kValue, device::wordText(m_editor->shown(reg)));
    const bool isChanged = m_editor->isChanged(reg);
    QFont font = item->font(kValue);
    font.setBold(isChanged);
    item->setFont(kValue, font);
    item->setText(kChanged, !m_editor->isValid(reg)
                                ? QString(QChar(0x26A0)) + tr(" text doesn't fit")
                            : isChanged ? QString(QChar(0x25CF)) + tr(" changed")
                                        : QString());
}

/// Scrolls a field that got the focus by a key into view, with its name above it.
void RegisterTree::bringIntoView(device::FieldId id)
{
    const QWidget *widget = m_tables[id.reg]->fieldWidget(id.field);
    const int bottom = widget->mapTo(viewport(), QPoint(0, widget->height())).y();
    const int top = bottom - widget->height() - kNameHeight;
    if (top < 0) {
        verticalScrollBar()->setValue(verticalScrollBar()->value() + top);
    } else if (bottom > viewport()->height()) {
        verticalScrollBar()->setValue(verticalScrollBar()->value() + bottom - viewport()->height());
    }
}

void RegisterTree::goTo(device::FieldId id)
{
    m_items[id.reg]->setExpanded(true);
    scrollToItem(m_items[id.reg], PositionAtTop);
    if (QWidget *widget = m_tables[id.reg]->fieldWidget(id.field); widget != nullptr) {
        widget->setFocus(Qt::OtherFocusReason);
    }
}

std::optional<device::FieldId> RegisterTree::focusedField() const
{
    for (std::size_t reg = 0; reg < m_tables.size(); ++reg) {
        for (std::size_t field = 0;
             m_tables[reg] != nullptr && field < m_editor->reg(reg).fields.size(); ++field) {
            const QWidget *widget = m_tables[reg]->fieldWidget(field);
            if (widget != nullptr && widget->hasFocus()) {
                return device::FieldId{reg, field};
            }
        }
    }
    return std::nullopt;
}

QString RegisterTree::shownText(device::FieldId id) const
{
    QWidget *widget =
        m_tables[id.reg] == nullptr ? nullptr : m_tables[id.reg]->fieldWidget(id.field);
    if (const auto *box = qobject_cast<QComboBox *>(widget); box != nullptr) {
        return box->currentText();
    }
    const auto *edit = qobject_cast<QLineEdit *>(widget);
    return edit == nullptr ? QString() : edit->text();
}

void RegisterTree::linkTabOrder(QWidget *next)
{
    QWidget *last = this;
    for (const BitTable *bits : m_tables) {
        if (bits == nullptr) {
            continue;
        }
        for (QWidget *widget : bits->inOrder()) {
            setTabOrder(last, widget);
            last = widget;
        }
    }
    setTabOrder(last, next);
}

}  // namespace workbench
