#include "workbench/widgets/FileField.h"

#include "workbench/widgets/Drops.h"
#include "workbench/widgets/FieldNames.h"

#include <QDragEnterEvent>
#include <QDropEvent>

namespace workbench
{

namespace
{

/// A line edit that takes a dropped file as its path; dropped text is handled as usual.
class PathEdit : public QLineEdit
{
public:
    using QLineEdit::QLineEdit;

protected:
    void dragEnterEvent(QDragEnterEvent *event) override
    {
        if (!droppedFiles(*event->mimeData()).isEmpty()) {
            event->acceptProposedAction();
            return;
        }
        QLineEdit::dragEnterEvent(event);
    }

    void dropEvent(QDropEvent *event) override
    {
        const QStringList paths = droppedFiles(*event->mimeData());
        if (!paths.isEmpty()) {
            setText(paths.first());
            event->acceptProposedAction();
            return;
        }
        QLineEdit::dropEvent(event);
    }
};

}  // namespace

FileField::FileField(const QString &name, const QString &label, const QList<FieldButton> &buttons,
                     QWidget *parent)
    : QWidget(parent), m_name(name), m_label(new QLabel(label, parent)), m_edit(new PathEdit(this))
{
    const QString plain = withoutMnemonic(label);
    m_label->setObjectName(name + QStringLiteral("_label"));
    m_label->setBuddy(m_edit);
    nameWidget(m_edit, name + QStringLiteral("_edit"), plain);
    setFocusProxy(m_edit);

    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_edit, 1);
    for (const FieldButton &wanted : buttons) {
        auto *button = new QPushButton(wanted.caption, this);
        nameWidget(button, name + '_' + wanted.role, plain + ' ' + button->text());
        layout->addWidget(button);
    }
    connect(m_edit, &QLineEdit::textChanged, this, &FileField::pathChanged);
}

QPushButton *FileField::button(const QString &role) const
{
    return findChild<QPushButton *>(m_name + '_' + role, Qt::FindDirectChildrenOnly);
}

}  // namespace workbench
