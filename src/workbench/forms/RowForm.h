#pragma once
#include "workbench/forms/FormRow.h"
#include "workbench/widgets/FileField.h"
#include "workbench/widgets/FileList.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFrame>
#include <QGridLayout>
#include <QHash>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QSpinBox>
#include <QTableWidget>
#include <QWidget>

#include <vector>

namespace workbench
{

class MissingLine;

/// A form made of a list of rows, whoever wrote the list: scrolling rows above, the "Generate"
/// button and what is still missing below. It knows how rows look, and none by its name.
class RowForm : public QWidget
{
    Q_OBJECT

public:
    /// @param key  of the tab; object names begin with it
    RowForm(const QString &key, QWidget *parent);

    /// Appends rows. Columns align over all rows, shown or not, so edges stay where they are when
    /// rows are hidden. Hundreds of rows are laid out once.
    void addRows(const QList<FormRow> &rows);
    void removeRows();  ///< all of them, with their widgets

    /// Makes the button that starts the request; disabled at first.
    void addGenerate(const QString &caption);
    [[nodiscard]] QPushButton *generateButton() const { return m_generate; }

    /// Decides what is missing; without it: all needed rows that are empty.
    void setMissing(std::function<QList<MissingInput>()> missing);
    /// Enables "Generate" and shows what is missing. Runs by itself after every edit.
    void updateGenerate();
    /// Disables "Generate" for want of a row's input until something is edited.
    void holdGenerate(const QString &row);

    /// @return null when the form has no such row
    [[nodiscard]] const FormRow *row(const QString &name) const;
    // The input of a row; null when the form has no such row or it is of another kind.
    [[nodiscard]] FileList *list(const QString &name) const { return input<FileList>(name); }
    [[nodiscard]] FileField *file(const QString &name) const { return input<FileField>(name); }
    [[nodiscard]] QComboBox *choice(const QString &name) const { return input<QComboBox>(name); }
    [[nodiscard]] QSpinBox *number(const QString &name) const { return input<QSpinBox>(name); }
    [[nodiscard]] QCheckBox *check(const QString &name) const { return input<QCheckBox>(name); }
    [[nodiscard]] QTableWidget *table(const QString &name) const
    {
        return input<QTableWidget>(name);
    }
    /// The line edit of a text or file row.
    [[nodiscard]] QLineEdit *edit(const QString &name) const;
    /// @return null when the row has no button of that role
    [[nodiscard]] QPushButton *button(const QString &name, const QString &role) const;

    /// Text of a text row, path of a file row as it is meant, entry of a choice; empty for all
    /// others.
    [[nodiscard]] QString text(const QString &name) const;
    /// Another label for a row, and for what is said of its input and buttons.
    void setLabel(const QString &name, const QString &label);
    /// What "folder" proposes for a file row from now on.
    void setDefaultName(const QString &name, const QString &fileName);
    /// Of a text or file row, or of a note, which is hidden while empty.
    void setText(const QString &name, const QString &text);
    /// A path that the user has chosen for a file row; fields of its kind propose it from now on.
    void choosePath(const QString &name, const QString &path);

    // Each does nothing when the form has no such row.
    void setRowVisible(const QString &name, bool visible);
    void setSeparatorVisible(const QString &name, bool visible);
    /// @param why  said in the tool tip while the row is disabled
    void setRowEnabled(const QString &name, bool enabled, const QString &why);
    void focusRow(const QString &name);

    [[nodiscard]] bool hasLists() const;
    /// Shows a widget in the room below the rows, which a form without lists has to spare. Takes it
    /// over.
    void fillSpareRoom(QWidget *widget);

    /// Puts a path into the rows that take it.
    void takeShared(SharedField field, const QString &path);

    /// Empties texts, lists and tables, puts numbers at their least and unchecks nothing; choices
    /// keep their entries.
    void clear();

signals:
    void edited(const QString &row);
    /// A file row has its path whole: it was set, or the typing has ended.
    /// @param isTyped  an empty or missing path that was typed is for its tab to report
    void pathSettled(const QString &row, bool isTyped);
    void buttonPressed(const QString &row, const QString &role);

private:
    struct Line {
        FormRow row;
        QLabel *label = nullptr;
        QWidget *input = nullptr;
        QList<QPushButton *> buttons;  ///< beside a choice or a text; those of a file are its own
        QFrame *separator = nullptr;
        QWidget *grip = nullptr;   ///< below a list; shown where a form has two and more
        QAction *fault = nullptr;  ///< sign in the edit, once a check has failed
        int gridLine = 0;
    };

    template <typename Widget>
    Widget *input(const QString &name) const
    {
        const Line *line = find(name);
        return line == nullptr ? nullptr : qobject_cast<Widget *>(line->input);
    }
    [[nodiscard]] const Line *find(const QString &name) const;
    [[nodiscard]] Line *find(const QString &name);
    [[nodiscard]] bool isEmpty(const Line &line) const;
    [[nodiscard]] QString nameOf(const FormRow &row, const char *role) const;

    void buildPage();
    void addRow(const FormRow &row, bool isFirstOfPair);
    QWidget *makeInput(Line &line);
    QWidget *makeChoice(const FormRow &row);
    QWidget *makeFile(Line &line);
    QWidget *makeList(Line &line);
    QWidget *makeText(const FormRow &row);
    QWidget *makeNumber(const FormRow &row);
    QWidget *makeTable(const FormRow &row);
    QWidget *makeNote(const FormRow &row);
    void place(Line &line, bool isFirstOfPair);
    void placeSeparator(Line &line);
    void addButtons(Line &line);
    void watchText(const QString &name, QLineEdit *edit);
    void watchPath(const QString &name, QLineEdit *edit);
    void showFault(Line &line);
    void alignColumns();
    void showGrips();
    void placeSpare();
    void orderFocus();
    void showToolTip(const Line &line, const QString &why);
    void setStretch(const Line &line, bool visible);
    void showMissing(const QList<MissingInput> &missing);
    [[nodiscard]] QList<MissingInput> emptyRows() const;
    void report(const QString &row);

    QString m_key;
    QScrollArea *m_scroll;
    QWidget *m_page = nullptr;
    QGridLayout *m_grid = nullptr;
    int m_spareLine = 0;  ///< takes the height that no row wants
    QWidget *m_foot;
    MissingLine *m_missingLine;
    QPushButton *m_generate = nullptr;
    QWidget *m_spare = nullptr;
    std::vector<Line> m_lines;
    QHash<QString, std::size_t> m_index;
    std::function<QList<MissingInput>()> m_missing;
};

/// Lays a form and its info panes side by side into a tab's page, with a handle between them. The
/// memory map of the pane in front stands below the rows of a form that has no lists.
/// @param form   cheapest with a splitter as parent, which is laid into the page then: what changes
///               its parent is styled again with all that is in it
/// @param panes  likewise, with the same splitter
void layFormPage(QWidget *page, RowForm *form, QTabWidget *panes);

}  // namespace workbench
