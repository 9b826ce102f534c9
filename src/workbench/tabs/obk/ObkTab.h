#pragma once
#include "obk/Obkey.h"
#include "workbench/forms/Tab.h"

class QLabel;

namespace workbench
{

class ObkInfoTable;
struct ObkRow;
class ObkRows;
class ObkSlotTable;
class ShowInFolder;
class TemplatePage;

/// Makes provisioning files from templates: the form is built from the template, and what was used
/// goes back into it.
class ObkTab : public Tab
{
    Q_OBJECT

public:
    ObkTab(const TabName &name, QWidget *page, FormContext &context);

    /// Opens the template of the command line; without one the file that the user chooses.
    void openTemplate();
    /// Opens the shown template once more; without one nothing happens.
    void refresh();
    /// Asks for the output's path.
    void chooseOutput();
    void chooseFile(const QString &item);     ///< by the item's name
    void regenerateKey(const QString &item);  ///< likewise
    /// Switches the fields that depend on selectors.
    void followSelector(const QString &item);
    void generate();

private:
    void buildRight();
    void connectAll();
    [[nodiscard]] Obkey &obkey() const { return context().obkey(); }
    [[nodiscard]] bool isFromCommandLine() const { return !context().templatePath.empty(); }
    void open(const QString &path);
    // Rows may be null: then nothing happens.
    void chooseFile(ObkRow *row);
    void regenerateKey(ObkRow *row);
    void restoreKey(ObkRow *row);
    void showTemplate();
    [[nodiscard]] QString outputText() const;
    void showEncryption();
    void showSlots();
    [[nodiscard]] QString complete(const QString &path) const;

    TemplatePage *m_view = nullptr;
    ObkRows *m_rows = nullptr;
    ObkInfoTable *m_info = nullptr;
    QLabel *m_slotTitle = nullptr;
    ObkSlotTable *m_slots = nullptr;
    ShowInFolder *m_made = nullptr;
};

}  // namespace workbench
