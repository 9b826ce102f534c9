#pragma once
#include "workbench/forms/RowForm.h"
#include "workbench/forms/Tab.h"

namespace workbench
{

/// A tab whose page is a `RowForm` with info panes beside it. The buttons of its rows work by what
/// the rows say: "open" asks for a file of the row's filter, "folder" for a folder, "generate"
/// makes the row's random file. What is opened for a shared row goes to all tabs.
class FormTab : public Tab
{
    Q_OBJECT

public:
    FormTab(const TabName &name, QWidget *page, FormContext &context);

    [[nodiscard]] RowForm *form() const { return m_form; }

    void clear() override { m_form->clear(); }
    void takeShared(SharedField field, const QString &path) override;

    void choosePath(const QString &row);
    void chooseFolder(const QString &row);
    void makeRandomFile(const QString &row);

protected:
    /// What a row's button does; for buttons of a tab's own.
    virtual void press(const QString &row, const QString &role);
    /// Puts a path into a row: in this tab or, of a shared row, in all.
    void putPath(const QString &row, const QString &path);

private:
    RowForm *m_form;
};

}  // namespace workbench
