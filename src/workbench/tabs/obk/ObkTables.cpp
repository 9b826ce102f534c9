#include "workbench/tabs/obk/ObkTables.h"

#include "workbench/widgets/FieldNames.h"
#include "workbench/widgets/SelectedRow.h"
#include "workbench/widgets/TableCopy.h"

#include <QHeaderView>

#include <memory>

namespace workbench
{

namespace
{

std::unique_ptr<QTableWidgetItem> readOnlyItem(const QString &text)
{
    auto item = std::make_unique<QTableWidgetItem>(text);
    item->setFlags(Qt::ItemIsSelectable | Qt::ItemIsEnabled);
    return item;
}

void makeReadOnly(QTableWidget *table)
{
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setTabKeyNavigation(false);
    table->setWordWrap(false);
    table->setItemDelegate(new SelectedRowDelegate(table));
    makeCopyable(table);
    table->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
}

}  // namespace

ObkInfoTable::ObkInfoTable(QWidget *parent) : QTableWidget(4, 1, parent)
{
    nameWidget(this, QStringLiteral("obk_info_table"), tr("Information"));
    makeReadOnly(this);
    setVerticalHeaderLabels({tr("Encryption Option"), tr("OBkey Size"), tr("Header Size"),
                             tr("OBkey Destination Address")});
    horizontalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFixedHeight(verticalHeader()->length() + 2 * frameWidth());
    clearCells();
}

void ObkInfoTable::setCell(Row row, const QString &text)
{
    item(row, 0)->setText(text);
}

void ObkInfoTable::clearCells()
{
    for (int row = 0; row < rowCount(); ++row) {
        setItem(row, 0, readOnlyItem(QString()).release());
    }
}

ObkSlotTable::ObkSlotTable(QWidget *parent) : QTableWidget(0, 4, parent)
{
    nameWidget(this, QStringLiteral("obk_slot_table"), tr("Slot Information"));
    makeReadOnly(this);
    setHorizontalHeaderLabels({tr("Index"), tr("Name"), tr("Address"), tr("Size")});
    horizontalHeader()->setStyleSheet(
        QStringLiteral("QHeaderView::section { background-color: #f6f6f6; color: #1c1c1c }"));
    // Names are the longest; addresses and sizes have at most ten characters.
    horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    horizontalHeader()->setSectionResizeMode(1, QHeaderView::Stretch);
    verticalHeader()->hide();
}

void ObkSlotTable::show(const std::vector<Slot> &flash, const std::vector<Slot> &obk)
{
    setRowCount(static_cast<int>(flash.size() + obk.size()));
    int row = 0;
    for (const auto *const list : {&flash, &obk}) {
        for (const Slot &slot : *list) {
            const QString cells[] = {QString::number(row), slot.name,
                                     slot.start.value_or(QString()), slot.size.value_or(QString())};
            for (int column = 0; column < 4; ++column) {
                auto cell = readOnlyItem(cells[column]);
                cell->setBackground(QColor(0x3C, 0xA7, 0xDB));
                cell->setForeground(Qt::white);
                setItem(row, column, cell.release());
            }
            ++row;
        }
    }
}

}  // namespace workbench
