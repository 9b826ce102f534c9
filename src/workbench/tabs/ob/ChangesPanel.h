#pragma once
#include "device/ObEditor.h"

#include <QTableWidget>

#include <vector>

namespace workbench
{

/// Lists the fields that differ from their defaults, with old and new value. Values that can't be
/// taken back stand on top, with a sign and in a colour of warning.
class ChangesPanel : public QTableWidget
{
    Q_OBJECT

public:
    explicit ChangesPanel(QWidget *parent);

    /// @param editor  null empties the list
    void show(const device::ObEditor *editor);
    /// How many of the changes can't be taken back.
    [[nodiscard]] int irreversibleCount() const { return m_irreversible; }

    /// A red that can be read on the palette's ground.
    static QColor warningColour(const QPalette &palette);

signals:
    void chosen(device::FieldId id);  ///< the user wants to see a field

protected:
    void changeEvent(QEvent *event) override;

private:
    void addRow(const device::ObEditor &editor, const device::FieldChange &change);
    void paintWarnings();

    std::vector<device::FieldChange> m_changes;
    int m_irreversible = 0;
};

}  // namespace workbench
