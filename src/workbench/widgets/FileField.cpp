#include "workbench/widgets/FileField.h"

#include "workbench/widgets/FieldNames.h"

#include <algorithm>

namespace workbench
{

namespace
{

bool isOutput(const QList<FieldButton> &buttons)
{
    return std::any_of(buttons.begin(), buttons.end(), [](const FieldButton &button) {
        return button.role == QLatin1String("folder");
    });
}

/// "key" of "sfi_key": fields of several tabs that take the same kind of file.
QString kindOf(const QString &name)
{
    return name.section('_', 1);
}

}  // namespace

FileField::FileField(const QString &name, const QString &label, const QList<FieldButton> &buttons,
                     QWidget *parent)
    : QWidget(parent), m_name(name), m_label(new QLabel(label, parent)),
      m_edit(new PathEdit(kindOf(name),
                          isOutput(buttons) ? PathEdit::Use::Output : PathEdit::Use::Input, this))
{
    const QString plain = withoutMnemonic(label);
    m_label->setObjectName(name + QStringLiteral("_label"));
    m_label->setBuddy(m_edit);
    m_edit->setObjectName(name + QStringLiteral("_edit"));
    setFocusProxy(m_edit);

    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_edit, 1);
    for (const FieldButton &wanted : buttons) {
        auto *button = new QPushButton(wanted.caption, this);
        button->setObjectName(name + '_' + wanted.role);
        layout->addWidget(button);
    }
    setSpokenLabel(plain);
    connect(m_edit, &QLineEdit::textChanged, this, &FileField::pathChanged);
}

void FileField::setSpokenLabel(const QString &plain)
{
    const QString said = plain.trimmed();
    m_edit->setAccessibleName(said);
    const QList<QPushButton *> buttons =
        findChildren<QPushButton *>(QString(), Qt::FindDirectChildrenOnly);
    for (QPushButton *button : buttons) {
        button->setAccessibleName(said + ' ' + button->text());
    }
}

QPushButton *FileField::button(const QString &role) const
{
    return findChild<QPushButton *>(m_name + '_' + role, Qt::FindDirectChildrenOnly);
}

}  // namespace workbench
