#pragma once
#include <QDialog>
#include <QMessageBox>
#include <QObject>
#include <QStringList>

#include <functional>
#include <initializer_list>
#include <list>
#include <variant>
#include <vector>

/// The answer to one modal dialog.
class DialogAnswer
{
public:
    /// Message boxes: presses this button.
    DialogAnswer(QMessageBox::StandardButton button) : m_action(button) {}
    /// File dialogs: chooses this path (absolute); an empty one cancels.
    DialogAnswer(const QString &path) : m_action(path.isEmpty() ? QStringList() : QStringList(path))
    {
    }
    DialogAnswer(const char *path) : DialogAnswer(QString::fromUtf8(path)) {}
    /// File dialogs: chooses these paths (absolute); an empty list cancels.
    DialogAnswer(const QStringList &paths) : m_action(paths) {}
    /// Any dialog: runs while the dialog is shown and has to close it.
    DialogAnswer(std::function<void(QDialog &)> script) : m_action(std::move(script)) {}

private:
    friend class DialogAnswers;
    std::variant<QMessageBox::StandardButton, QStringList, std::function<void(QDialog &)>> m_action;
};

/// What a dialog showed when it was answered.
struct SeenDialog {
    QString title;
    QMessageBox::Icon icon = QMessageBox::NoIcon;  ///< message boxes only
    QString text;                                  ///< message boxes only
    Qt::TextFormat textFormat = Qt::AutoText;      ///< message boxes only
    QMessageBox::StandardButtons buttons;          ///< message boxes only
    QMessageBox::StandardButton defaultButton = QMessageBox::NoButton;
    QMessageBox::StandardButton escapeButton = QMessageBox::NoButton;
    QString folder;           ///< file dialogs only: where it started
    QStringList nameFilters;  ///< file dialogs only
    bool hasParent = false;
};

/// Answers and records the real modal dialogs of the program, in the order in which they come.
/// A dialog without an answer is rejected and fails the test; so does an answer that no dialog
/// took. Boxes that aren't modal are left alone.
class DialogAnswers : public QObject
{
public:
    explicit DialogAnswers(std::initializer_list<DialogAnswer> answers = {});
    ~DialogAnswers() override;

    /// Adds one answer behind those that are left.
    void expect(DialogAnswer answer) { m_answers.push_back(std::move(answer)); }

    const std::vector<SeenDialog> &seen() const { return m_seen; }
    /// "title|text" of each dialog, for comparing a whole run at once.
    QStringList texts() const;

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void answer(QDialog *dialog);

    std::list<DialogAnswer> m_answers;
    std::vector<SeenDialog> m_seen;
};
