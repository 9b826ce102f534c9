#pragma once
#include "workbench/widgets/InfoPane.h"
#include "workbench/widgets/InfoTabs.h"

namespace workbench
{

class RowForm;

/// The two panes beside the form of a package: what goes in, and the package that came out.
class PackagePanes
{
public:
    struct Pane {
        QString name;   ///< of its objects, behind the tab's key: "firmwareInfo"
        QString title;  ///< on its tab
        PaneContents start;
    };

    /// Lays form and panes into a tab's page.
    void build(const QString &key, QWidget *page, RowForm *form, const Pane &input,
               const Pane &package);

    void showInput(const PaneContents &contents);
    /// @param path  what was made; empty for a package that was there before
    void showPackage(const PaneContents &contents, const QString &path);
    void resetInput() { m_input->reset(); }
    void resetPackage() { m_package->reset(); }
    void reset();

    [[nodiscard]] InfoPane *input() const { return m_input; }
    [[nodiscard]] InfoPane *package() const { return m_package; }

private:
    InfoPane *m_input = nullptr;
    InfoPane *m_package = nullptr;
    InfoTabs *m_tabs = nullptr;
};

}  // namespace workbench
