#pragma once
#include "obk/ObDataItem.h"

#include <QTableWidget>

#include <vector>

namespace workbench
{

/// The table "Information": what the written file's header says.
class ObkInfoTable : public QTableWidget
{
public:
    enum Row { Encryption, Size, HeaderSize, Destination };

    explicit ObkInfoTable(QWidget *parent);
    void setCell(Row row, const QString &text);
    void clearCells();
};

/// The table "Slot Information": the memory that the template lays out.
class ObkSlotTable : public QTableWidget
{
public:
    explicit ObkSlotTable(QWidget *parent);
    void show(const std::vector<Slot> &flash, const std::vector<Slot> &obk);
};

}  // namespace workbench
