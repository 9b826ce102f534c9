#pragma once
#include "obk/Obkey.h"
#include "workbench/forms/Tab.h"

class QPlainTextEdit;
class QPushButton;

namespace process
{
struct ToolOutcome;
}

namespace workbench
{

class ObkRows;
class ShowInFolder;
class TemplatePage;

/// Makes a boot image with the image tool: the form is built from an image template, the command is
/// shown as it is filled in, and what was used goes back into the template. Each tab has a template
/// of its own.
class ImgTab : public Tab
{
    Q_OBJECT

public:
    ImgTab(const TabName &name, QWidget *page, FormContext &context);

    /// Says which of the tabs this is.
    /// @param index       of its record in `Obkey::imgTools`
    /// @param isSaveOnly  the button keeps the values and runs no tool
    void setRole(std::size_t index, bool isSaveOnly);

    /// Opens the template of the command line; without one the file that the user chooses.
    void openTemplate();
    /// Opens the shown template once more; without one nothing happens.
    void refresh();
    void chooseFile(int item);
    void chooseOutput();
    void copyCommand();
    void generate();
    void saveConfiguration();

private:
    void buildRight();
    void connectAll();
    [[nodiscard]] bool isFromCommandLine() const { return !context().templatePath.empty(); }
    void open(const QString &path);
    void showTemplate();
    void showCommand();
    /// What the form holds, by item.
    [[nodiscard]] std::vector<std::optional<QString>> values() const;
    /// @return the arguments; nothing after a report
    [[nodiscard]] std::optional<QStringList> arguments();
    [[nodiscard]] QString outputPath() const;  ///< complete
    void showOutcome(const process::ToolOutcome &outcome, const QString &command);
    bool keepValues();

    Obkey m_template;
    std::size_t m_index = 0;
    bool m_isSaveOnly = false;
    TemplatePage *m_view = nullptr;
    ObkRows *m_rows = nullptr;
    QPlainTextEdit *m_command = nullptr;
    QPushButton *m_copy = nullptr;
    QPlainTextEdit *m_said = nullptr;
    ShowInFolder *m_made = nullptr;
};

}  // namespace workbench
