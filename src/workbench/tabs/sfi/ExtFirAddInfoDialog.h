#pragma once
#include <QDialog>

#include <cstdint>

class QDialogButtonBox;
class QGridLayout;
class QLineEdit;
class QSpinBox;

namespace workbench
{
class SeriesChoice;
}

/// Asks for what an external firmware file doesn't tell: where it goes, its region and its key.
class ExtFirAddInfoDialog : public QDialog
{
    Q_OBJECT
public:
    /// @param fileName      shown as written, without folder
    /// @param startAddress  "-1" asks the user for it; any other text is shown and can't be changed
    ExtFirAddInfoDialog(const QString &fileName, const QString &startAddress,
                        QWidget *parent = nullptr);

    // The values given; only meaningful once the dialog was accepted.
    std::uint32_t startAddress() const { return m_startAddress; }
    std::uint32_t regionNumber() const { return m_regionNumber; }
    std::uint32_t regionMode() const { return m_regionMode; }
    std::uint32_t keyAddress() const { return m_keyAddress; }

    void setRegionNumberRange(int smallest, int largest);  ///< 0 to 7 at first
    void setRegionModeRange(int smallest, int largest);    ///< 0 to 3 at first

    /// Fills the fields, within their ranges; a start address that can't be changed stays.
    void propose(std::uint32_t start, std::uint32_t region, std::uint32_t mode, std::uint32_t key);

    /// Says that more files follow. @return what the user chose for those; lives with the dialog
    const workbench::SeriesChoice *addSeries();

private slots:
    void OkEnabled();        ///< Ok needs the three texts
    void CheckInputValue();  ///< accepts three numbers; each other text is reported and emptied

private:
    void buildFields(const QString &startAddress);
    void layRows(const QString &fileName);

    QLineEdit *m_startEdit = nullptr;
    QSpinBox *m_regionSpin = nullptr;
    QSpinBox *m_modeSpin = nullptr;
    QLineEdit *m_keyEdit = nullptr;
    QDialogButtonBox *m_buttons = nullptr;
    QGridLayout *m_rows = nullptr;
    std::uint32_t m_startAddress = 0;
    std::uint32_t m_regionNumber = 0;
    std::uint32_t m_regionMode = 0;
    std::uint32_t m_keyAddress = 0;
};
