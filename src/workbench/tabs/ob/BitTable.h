#pragma once
#include "workbench/tabs/ob/ObHandles.h"

#include <QTableWidget>

#include <cstddef>
#include <vector>

namespace workbench
{

/// The 32 bits of one register, in two halves of three rows: bit numbers, field names, widgets.
/// It shows what the editor holds and tells what the user does; it changes nothing itself. Colours
/// are the same on light and dark desktops: dark print on a light sheet.
class BitTable : public QTableWidget
{
    Q_OBJECT

public:
    /// @param editor  outlives the table
    BitTable(const device::ObEditor &editor, std::size_t reg, QWidget *parent);

    [[nodiscard]] const obRegHandle &handle() const { return m_handle; }
    /// A field's widget, or null when it has none.
    [[nodiscard]] QWidget *fieldWidget(std::size_t field) const { return m_byField[field]; }
    /// The widgets of the fields, from bit 31 to bit 0.
    [[nodiscard]] const std::vector<QWidget *> &inOrder() const { return m_inOrder; }
    /// Shows the editor's state of one field.
    void refresh(std::size_t field);

    bool eventFilter(QObject *watched, QEvent *event) override;

signals:
    void edited(device::FieldId id, const QString &text);
    void focused(device::FieldId id);

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void placeNumbers();
    void placeReserved(const device::BitCell &cell);
    void placeField(const device::BitCell &cell);
    QWidget *makeWidget(device::FieldId id);
    QWidget *makeButton(device::FieldId id, const obRegField &flat);
    QWidget *makeComboBox(device::FieldId id, const obRegField &flat);
    QWidget *makeTextBox(device::FieldId id, const obRegField &flat);
    void refreshTips(std::size_t field);
    bool walk(QWidget *from, int key);

    const device::ObEditor &m_editor;
    std::size_t m_reg;
    std::vector<device::BitCell> m_layout;
    obRegHandle m_handle;
    std::vector<QWidget *> m_byField;
    std::vector<QWidget *> m_inOrder;
};

}  // namespace workbench
