#pragma once
#include "workbench/widgets/PathEdit.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QList>
#include <QPushButton>
#include <QWidget>

namespace workbench
{

/// One push button behind a file field.
struct FieldButton {
    QString role;     ///< last part of its object name: "open", "generate", "folder", "browse"
    QString caption;  ///< as shown
};

/// Label, line edit and buttons for one path. One with a "folder" button is an output, all others
/// name files that exist. The label is made beside the field, so that a form can put all labels
/// into one column.
class FileField : public QWidget
{
    Q_OBJECT

public:
    /// @param name   object names begin with it, such as "sfi_key"
    /// @param label  text of the row's label, '&' marks its mnemonic
    FileField(const QString &name, const QString &label, const QList<FieldButton> &buttons,
              QWidget *parent);

    [[nodiscard]] QString path() const { return m_edit->path(); }
    void setPath(const QString &path) { m_edit->setPath(path); }
    void choose(const QString &path) { m_edit->choose(path); }  ///< as `PathEdit::choose`
    [[nodiscard]] QLabel *label() const { return m_label; }
    [[nodiscard]] PathEdit *edit() const { return m_edit; }

    /// What is said of the edit and, with their captions, of the buttons.
    void setSpokenLabel(const QString &plain);

    /// The button of a role given to the constructor, or null.
    [[nodiscard]] QPushButton *button(const QString &role) const;

signals:
    void pathChanged(const QString &path);

private:
    QString m_name;
    QLabel *m_label;
    PathEdit *m_edit;
};

}  // namespace workbench
