#pragma once
#include "workbench/templates/ObkRows.h"

#include <QWidget>

class QHBoxLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class QVBoxLayout;

namespace workbench
{

class MissingLine;
class PathEdit;

/// What the tabs built from templates have in common. At the left the template's path, what the
/// tool is, the rows, the output and the button that starts the request; at the right what the tab
/// itself shows. A template dropped at the left opens.
class TemplatePage : public QWidget
{
    Q_OBJECT

public:
    struct Texts {
        QString refreshName;  ///< object name of the refresh button
        QString description;
        QString outputTip;
        QString outputHint;
        QString outputNoun;  ///< what "Still missing" calls it
        QString folderKey;   ///< where the last folder is kept in the user's configuration
        QString folder;      ///< of the templates that ship, under the data folder
    };

    /// Takes the whole of a tab's page.
    /// @param key  of the tab; object names begin with it
    TemplatePage(const QString &key, const Texts &texts, QWidget *page);

    [[nodiscard]] QVBoxLayout *right() const { return m_right; }
    [[nodiscard]] ObkRows *rows() const { return m_rows; }
    [[nodiscard]] PathEdit *output() const { return m_output; }
    [[nodiscard]] QPushButton *generate() const { return m_generate; }

    /// What the button that starts the request says, and its tool tip.
    void setGenerate(const QString &caption, const QString &toolTip);

    /// Asks for a template, beginning in the folder of the last one.
    /// @return empty when the user cancelled
    [[nodiscard]] QString askForTemplate(QWidget *boxParent) const;
    /// The template is the command line's, and no other can be opened.
    void lockTemplate();

    /// Shows a template's path, title and rows, and its output.
    /// @param output     as the field shows it
    /// @param following  widgets of the tab's own, which Tab reaches behind the button
    void showTemplate(const QString &path, const obk::Template &model, const QString &output,
                      std::initializer_list<QWidget *> following);
    void setPurpose(const QString &text);  ///< below the title; hidden while empty
    void setWarning(const QString &text);  ///< beside the button; hidden while empty

    /// The path of the output as it is meant; a relative one counts from the template's folder.
    [[nodiscard]] QString outputPath() const;
    void chooseOutput(const QString &path);

    static QLabel *makeHeading(const QString &text, QWidget *parent);

signals:
    void openPressed();
    void refreshPressed();
    void folderPressed();
    void generatePressed();
    void outputChanged();
    void templateDropped(const QString &path);

protected:
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    void buildLeft(QWidget *left);
    [[nodiscard]] QWidget *makeFileGroup(QWidget *parent);
    [[nodiscard]] QWidget *makeOutputGroup(QWidget *parent);
    [[nodiscard]] QHBoxLayout *makeFoot(QWidget *parent);
    void tellMissing();

    QString m_key;
    Texts m_texts;
    bool m_isLocked = false;
    QLineEdit *m_path = nullptr;
    QPushButton *m_open = nullptr;
    QPushButton *m_refresh = nullptr;
    QLabel *m_title = nullptr;
    QLabel *m_purpose = nullptr;
    ObkRows *m_rows = nullptr;
    QLabel *m_outputLabel = nullptr;
    PathEdit *m_output = nullptr;
    QPushButton *m_folder = nullptr;
    QWidget *m_warning = nullptr;
    QLabel *m_warningText = nullptr;
    MissingLine *m_missing = nullptr;
    QPushButton *m_generate = nullptr;
    QVBoxLayout *m_right = nullptr;
};

}  // namespace workbench
