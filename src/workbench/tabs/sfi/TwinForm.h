#pragma once
#include "workbench/tabs/sfi/SfiCheck.h"
#include "workbench/tabs/sfi/SfiTwins.h"
#include "workbench/widgets/FileField.h"
#include "workbench/widgets/FileList.h"
#include "workbench/widgets/InfoTabs.h"
#include "workbench/widgets/ParsePane.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFrame>
#include <QGridLayout>
#include <QSpinBox>
#include <QWidget>

#include <map>

namespace workbench
{

/// The widgets of the SFI or SFIx tab: the form on the left, the info panes on the right. It knows
/// how rows look and which of them a device shows; what they do is `TwinTab`'s part.
class TwinForm : public QWidget
{
    Q_OBJECT

public:
    TwinForm(const TwinTraits &twin, QWidget *parent);

    /// The list of a row; null when this twin doesn't have the row.
    [[nodiscard]] FileList *list(Row row) const;
    [[nodiscard]] FileField *field(Row row) const;
    [[nodiscard]] QComboBox *mcuBox() const { return m_mcu; }
    [[nodiscard]] QPushButton *generateButton() const { return m_generate; }
    [[nodiscard]] InfoPane *firmwareInfo() const { return m_firmwareInfo; }
    [[nodiscard]] ParsePane *parsePane() const { return m_parse; }

    [[nodiscard]] TwinValues values() const;

    /// Sets number fields, hash box and visible rows as a device wants them. Hidden fields keep
    /// their text, but for the one that the device's entry says to empty.
    void applyMcu(const McuRow &mcu);

    /// Empties all texts, lists and panes; the MCU box keeps its index and its rows.
    void clear();

    void showFirmwarePane() { m_tabs->setCurrentIndex(InfoTabs::kFirst); }
    void showImagePane() { m_tabs->setCurrentIndex(InfoTabs::kSecond); }

    void setRamText(const QString &text) { m_ram->setText(text); }
    void setTokenText(const QString &text) { m_token->setText(text); }
    void setImageVersion(int version) { m_version->setValue(version); }

private:
    void buildRow(const FormRow &row);
    void buildMcu(const FormRow &row);
    void buildList(const FormRow &row);
    void buildField(const FormRow &row);
    void placePlain(const FormRow &row, QWidget *widget, const char *role);
    void placeLine(const FormRow &row);
    void placeRow(Row row, QLabel *label, QWidget *field, Qt::Alignment labelAlignment);
    void buildPanes(const TwinTraits &twin);
    QWidget *wrapForm();
    void alignColumns();
    void setRowVisible(Row row, bool visible);
    void setLineVisible(Row row, bool visible);
    [[nodiscard]] QString objectName(const FormRow &row) const;
    [[nodiscard]] QString pathOf(Row row) const;

    QString m_kind;
    QGridLayout *m_grid;
    QWidget *m_rowsPage;
    QComboBox *m_mcu = nullptr;
    QSpinBox *m_version = nullptr;
    QCheckBox *m_hash = nullptr;
    QLineEdit *m_ram = nullptr;
    QLineEdit *m_token = nullptr;
    QPushButton *m_generate = nullptr;
    InfoPane *m_firmwareInfo = nullptr;
    ParsePane *m_parse = nullptr;
    InfoTabs *m_tabs = nullptr;
    std::map<Row, FileList *> m_lists;
    std::map<Row, FileField *> m_fields;
    std::map<Row, QList<QWidget *>> m_rowWidgets;  ///< label and field of each row
    std::map<Row, QFrame *> m_lines;               ///< separator above a row
    std::map<Row, int> m_listLines;                ///< grid line of each list
};

}  // namespace workbench
