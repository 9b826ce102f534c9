#pragma once
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
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

/// Label, line edit and buttons for one path. A file dropped on the edit fills it. The label is
/// made beside the field, so that a form can put all labels into one column.
class FileField : public QWidget
{
    Q_OBJECT

public:
    /// @param name   object names begin with it, such as "sfi_key"
    /// @param label  text of the row's label, '&' marks its mnemonic
    FileField(const QString &name, const QString &label, const QList<FieldButton> &buttons,
              QWidget *parent);

    [[nodiscard]] QString path() const { return m_edit->text(); }
    void setPath(const QString &path) { m_edit->setText(path); }
    [[nodiscard]] QLabel *label() const { return m_label; }
    [[nodiscard]] QLineEdit *edit() const { return m_edit; }

    /// The button of a role given to the constructor, or null.
    [[nodiscard]] QPushButton *button(const QString &role) const;

signals:
    void pathChanged(const QString &path);

private:
    QString m_name;
    QLabel *m_label;
    QLineEdit *m_edit;
};

}  // namespace workbench
