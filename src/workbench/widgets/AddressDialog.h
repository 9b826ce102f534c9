#pragma once
#include <QDialog>

#include <cstdint>

class QDialogButtonBox;
class QGridLayout;
class QLineEdit;

namespace workbench
{
class SeriesChoice;
}

/// Asks for the start address of a raw binary file, which has none of its own.
class AddressDialog : public QDialog
{
    Q_OBJECT
public:
    /// @param fileName  shown as written, without folder
    explicit AddressDialog(const QString &fileName, QWidget *parent = nullptr);

    /// Begins with an address that the file has already.
    void proposeAddress(std::uint32_t address);

    /// Says that more files follow. @return what the user chose for those; lives with the dialog
    const workbench::SeriesChoice *addSeries();

    /// The address given; only meaningful once the dialog was accepted.
    std::uint32_t address() const { return m_address; }

private slots:
    void OkEnabled();     ///< Ok needs a text
    void CheckAddress();  ///< accepts a number; a box reports anything else and empties the field

private:
    QLineEdit *m_startEdit = nullptr;
    QDialogButtonBox *m_buttons = nullptr;
    QGridLayout *m_rows = nullptr;
    std::uint32_t m_address = 0;
};
