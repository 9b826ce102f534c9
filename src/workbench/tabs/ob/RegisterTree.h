#pragma once
#include "workbench/tabs/ob/BitTable.h"

#include <QTreeWidget>

#include <cstddef>
#include <optional>
#include <vector>

namespace workbench
{

/// The registers of a device by category, each with name, address and value; an opened one shows
/// its bits. A bit table is built when its register is opened first.
class RegisterTree : public QTreeWidget
{
    Q_OBJECT

public:
    explicit RegisterTree(QWidget *parent);

    /// Shows another device, or none; the registers of the first category are open.
    /// @param editor  outlives what is shown; null empties the tree
    void show(const device::ObEditor *editor);
    /// Shows the editor's state of a field and its register.
    void refresh(device::FieldId id);
    /// Opens the field's register and gives its widget the focus.
    void goTo(device::FieldId id);
    /// The field whose widget has the keyboard focus.
    [[nodiscard]] std::optional<device::FieldId> focusedField() const;
    /// What a field's widget shows; empty while its register wasn't opened.
    [[nodiscard]] QString shownText(device::FieldId id) const;
    /// Puts the widgets of all open registers behind the tree in the tab order.
    /// @param next  comes behind the last of them
    void linkTabOrder(QWidget *next);

    /// The bit table of a register, or null while it wasn't opened.
    [[nodiscard]] BitTable *table(std::size_t reg) const { return m_tables[reg]; }

signals:
    void edited(device::FieldId id, const QString &text);
    void focused(device::FieldId id);
    void tablesChanged();  ///< a bit table was built

private:
    void refreshRow(std::size_t reg);
    void bringIntoView(device::FieldId id);
    void buildTable(QTreeWidgetItem *item);

    const device::ObEditor *m_editor = nullptr;
    std::vector<QTreeWidgetItem *> m_items;
    std::vector<BitTable *> m_tables;
};

}  // namespace workbench
