#pragma once
#include <QLineEdit>
#include <QTimer>

class QCompleter;
class QStringListModel;

namespace workbench
{

/// A line edit for one path. It takes dropped files and pasted `file://` addresses, completes what
/// is typed, shows the end of a long path while nobody edits it, and marks an input that doesn't
/// exist: a sign behind the text, and a line more in the tool tip.
class PathEdit : public QLineEdit
{
    Q_OBJECT

public:
    enum class Use {
        Input,  ///< names an existing file
        Output  ///< names a file to be made
    };

    /// @param kind  fields of one kind share their recent paths, such as "key"
    PathEdit(const QString &kind, Use use, QWidget *parent);

    /// The path as meant: what a dialog gave stays as it is, typed text is cleaned.
    [[nodiscard]] QString path() const;

    /// Shows a path as it is.
    void setPath(const QString &path);
    /// The same for one that the user has chosen, which fields of this kind then propose.
    void choose(const QString &path);

    /// The folder that relative paths count from; without one the program's own.
    void setBase(const QString &folder) { m_base = folder; }

protected:
    bool event(QEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void clean();
    void offer(const QString &text);
    void markMissing();
    [[nodiscard]] QString absolutePath() const;

    QString m_kind;
    Use m_use;
    QString m_base;
    QString m_given;               ///< set as a whole; not cleaned while it stands unchanged
    QTimer m_pause;                ///< the disk is asked when typing pauses
    QAction *m_missing = nullptr;  ///< made with the first missing file
    bool m_isMissing = false;
    QCompleter *m_completer = nullptr;  ///< made with the first key
    QStringListModel *m_offers = nullptr;
};

}  // namespace workbench
