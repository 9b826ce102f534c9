#pragma once
#include "workbench/forms/RowForm.h"
#include "workbench/forms/Tab.h"

#include <functional>
#include <span>

namespace workbench
{

/// A tab whose page is a `RowForm` with info panes beside it. The buttons of its rows work by what
/// the rows say: "open" asks for a file of the row's filter, "folder" for a folder, "generate"
/// makes the row's random file. What is opened for a shared row goes to all tabs.
class FormTab : public Tab
{
    Q_OBJECT

public:
    /// A text row or file row and its key in the settings file.
    struct SavedText {
        const char *key;
        QString row;
    };

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

    /// Shows what a file row names, once its path is whole: not between two letters, and not while
    /// texts are restored.
    /// @param show  gets the path; an empty one for a path that was set and names no file
    void whenPathSettles(const QString &row, std::function<void(const QString &path)> show);

    void saveTexts(SavedGroup &group, std::span<const SavedText> texts) const;
    void restoreTexts(const SavedGroup &group, std::span<const SavedText> texts);

private:
    RowForm *m_form;
    bool m_isRestoring = false;
};

}  // namespace workbench
