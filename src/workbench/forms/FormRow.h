#pragma once
#include "workbench/forms/FormContext.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

namespace workbench
{

/// Property of inputs whose text nobody may keep: neither a settings file nor "Undo".
inline constexpr const char *kSecretProperty = "isSecret";

/// What stands behind a row's label.
enum class RowKind {
    Choice,  ///< combo box
    File,    ///< path field with buttons
    List,    ///< list of files with "Add" and "Remove"
    Text,    ///< line edit
    Number,  ///< spin box
    Check,   ///< check box
    Table,   ///< read-only table under given headings
    Block,   ///< a widget of the tab's own, below its label and as wide as the form
    Note,    ///< no input: a sentence of the tab's, such as what else goes into its request
};

/// What the "Generate" button of a file row makes.
enum class RandomFile { Key, Nonce };

struct RowButton {
    QString role;     ///< last part of its object name; "open", "generate" and "folder" are known
    QString caption;  ///< as shown
    QString objectName;  ///< instead of the one by the rule; for forms whose names others fix
};

/// One row of a form. Texts are as shown; those of a form written by hand are translated before.
struct FormRow {
    QString name;  ///< middle part of its object names, unique in the form
    RowKind kind = RowKind::Text;
    QString label;    ///< '&' marks the mnemonic
    QString noun;     ///< what "Still missing" calls it; else the label without its mnemonic
    QString toolTip;  ///< of the input
    QString hint;     ///< stands in the empty input: what goes in
    QString filter;   ///< of its "Open file" dialog
    QList<RowButton> buttons;              ///< of a file, choice or text row
    QStringList choices;                   ///< of a choice; headings of a table
    int least = 0;                         ///< of a number
    int most = 0;                          ///< of a number
    bool isSecret = false;                 ///< a text that is hidden, and never kept by anyone
    bool takesAnyText = false;             ///< a number that keeps what was typed, see TypedSpinBox
    int width = 0;                         ///< of a choice, in pixels; 0 takes what there is
    bool separatorAbove = false;           ///< a line above the row, shown or hidden on its own
    bool besideThePrevious = false;        ///< second of a pair in one line
    bool needed = false;                   ///< while empty, "Generate" is disabled
    QString disabledWhy;                   ///< a row that starts disabled says why
    QString defaultName;                   ///< file name that "folder" proposes
    std::optional<SharedField> shared;     ///< what one tab opens goes into this row of all tabs
    std::optional<RandomFile> randomFile;  ///< made by "generate"
    QString objectName;                    ///< of the input, instead of the one by the rule
    /// What is wrong with a text that isn't empty, as a sentence; an empty one for nothing. The row
    /// shows a sign with the sentence, and nothing is refused for it.
    std::function<QString(const QString &text)> check;
    std::function<QWidget *(QWidget *parent)> make;  ///< of a block; names itself

    /// Whether the row takes the height that the form has to spare.
    [[nodiscard]] bool isTall() const { return kind == RowKind::List || kind == RowKind::Table; }
};

/// An input that a request waits for.
struct MissingInput {
    QString row;
    bool blocks = true;  ///< false: "Generate" is enabled all the same, and refuses with a sentence
};

}  // namespace workbench
