// How each kind of row looks.
#include "workbench/forms/RowForm.h"
#include "workbench/widgets/FieldNames.h"
#include "workbench/widgets/SelectedRow.h"
#include "workbench/widgets/TableCopy.h"
#include "workbench/widgets/TypedSpinBox.h"

#include <QAction>
#include <QHeaderView>
#include <QStyle>

namespace workbench
{

namespace
{

constexpr int kTextWidth = 40;

}  // namespace

QWidget *RowForm::makeInput(Line &line)
{
    const FormRow &row = line.row;
    switch (row.kind) {
    case RowKind::Choice:
        return makeChoice(row);
    case RowKind::File:
        return makeFile(line);
    case RowKind::List:
        return makeList(line);
    case RowKind::Text:
        return makeText(row);
    case RowKind::Number:
        return makeNumber(row);
    case RowKind::Table:
        return makeTable(row);
    case RowKind::Block:
        return row.make(m_page);
    case RowKind::Note:
        return makeNote(row);
    case RowKind::Check:
        break;
    }
    auto *box = new QCheckBox(m_page);
    nameWidget(box, nameOf(row, "_check"), withoutMnemonic(row.label));
    connect(box, &QCheckBox::toggled, this, [this, name = row.name] { report(name); });
    return box;
}

QWidget *RowForm::makeChoice(const FormRow &row)
{
    auto *box = new QComboBox(m_page);
    box->addItems(row.choices);
    if (row.width > 0) {
        box->setFixedWidth(row.width);
    }
    nameWidget(box, nameOf(row, "_combo"), withoutMnemonic(row.label));
    connect(box, qOverload<int>(&QComboBox::currentIndexChanged), this,
            [this, name = row.name] { report(name); });
    return box;
}

QWidget *RowForm::makeFile(Line &line)
{
    const FormRow &row = line.row;
    QList<FieldButton> buttons;
    for (const RowButton &button : row.buttons) {
        buttons.append({button.role, button.caption});
    }
    auto *field = new FileField(m_key + '_' + row.name, row.label, buttons, m_page);
    line.label = field->label();
    field->edit()->setPlaceholderText(row.hint);
    if (!row.objectName.isEmpty()) {
        field->edit()->setObjectName(row.objectName);
    }
    for (const RowButton &wanted : row.buttons) {
        QPushButton *button = field->button(wanted.role);
        connect(button, &QPushButton::clicked, this,
                [this, name = row.name, role = wanted.role] { emit buttonPressed(name, role); });
        if (!wanted.objectName.isEmpty()) {
            button->setObjectName(wanted.objectName);
        }
    }
    watchText(row.name, field->edit());
    watchPath(row.name, field->edit());
    return field;
}

QWidget *RowForm::makeList(Line &line)
{
    const FormRow &row = line.row;
    auto *list = new FileList(m_key + '_' + row.name, row.label, m_page);
    line.label = list->label();
    list->setHint(row.hint);
    const QAbstractItemModel *model = list->view()->model();
    const auto changed = [this, name = row.name] { report(name); };
    connect(model, &QAbstractItemModel::rowsInserted, this, changed);
    connect(model, &QAbstractItemModel::rowsRemoved, this, changed);
    connect(model, &QAbstractItemModel::modelReset, this, changed);
    return list;
}

QWidget *RowForm::makeText(const FormRow &row)
{
    auto *edit = new QLineEdit(m_page);
    edit->setMinimumWidth(kTextWidth);
    edit->setPlaceholderText(row.hint);
    nameWidget(edit, nameOf(row, "_edit"), withoutMnemonic(row.label));
    if (row.isSecret) {
        edit->setEchoMode(QLineEdit::Password);
        edit->setInputMethodHints(Qt::ImhHiddenText | Qt::ImhNoPredictiveText |
                                  Qt::ImhSensitiveData);
        edit->setProperty(kSecretProperty, true);
    }
    watchText(row.name, edit);
    return edit;
}

void RowForm::addButtons(Line &line)
{
    for (const RowButton &wanted : line.row.buttons) {
        auto *const button = new QPushButton(wanted.caption, m_page);
        nameWidget(button, m_key + '_' + line.row.name + '_' + wanted.role,
                   withoutMnemonic(wanted.caption) + ' ' + withoutMnemonic(line.row.label));
        connect(
            button, &QPushButton::clicked, this,
            [this, name = line.row.name, role = wanted.role] { emit buttonPressed(name, role); });
        line.buttons.append(button);
    }
}

void RowForm::watchText(const QString &name, QLineEdit *edit)
{
    connect(edit, &QLineEdit::textChanged, this, [this, name] {
        showFault(*find(name));
        report(name);
    });
}

void RowForm::watchPath(const QString &name, QLineEdit *edit)
{
    connect(edit, &QLineEdit::textChanged, this, [this, name, edit](const QString &text) {
        const bool isLast = text == edit->text();  // a pasted address becomes its path on the way
        if (isLast && !edit->isModified()) {
            emit pathSettled(name, false);
        }
    });
    connect(edit, &QLineEdit::editingFinished, this, [this, name, edit] {
        if (edit->isModified()) {
            edit->setModified(false);
            emit pathSettled(name, true);
        }
    });
}

QWidget *RowForm::makeNumber(const FormRow &row)
{
    QSpinBox *box = row.takesAnyText ? new TypedSpinBox(m_page) : new QSpinBox(m_page);
    box->setRange(row.least, row.most);
    nameWidget(box, nameOf(row, "_spin"), withoutMnemonic(row.label));
    connect(box, qOverload<int>(&QSpinBox::valueChanged), this,
            [this, name = row.name] { report(name); });
    return box;
}

QWidget *RowForm::makeTable(const FormRow &row)
{
    auto *table = new QTableWidget(0, row.choices.size(), m_page);
    table->setHorizontalHeaderLabels(row.choices);
    table->verticalHeader()->hide();
    table->horizontalHeader()->setStretchLastSection(true);
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setItemDelegate(new SelectedRowDelegate(table));
    makeCopyable(table);
    nameWidget(table, nameOf(row, "_table"), withoutMnemonic(row.label));
    return table;
}

QWidget *RowForm::makeNote(const FormRow &row)
{
    auto *note = new QLabel(m_page);
    note->setObjectName(nameOf(row, "_note"));
    note->setTextFormat(Qt::PlainText);
    note->setWordWrap(true);
    return note;
}

void RowForm::showFault(Line &line)
{
    if (!line.row.check) {
        return;
    }
    const QString text = edit(line.row.name)->text();
    const QString fault = text.isEmpty() ? QString() : line.row.check(text);
    if (line.fault == nullptr && !fault.isEmpty()) {
        line.fault = edit(line.row.name)
                         ->addAction(style()->standardIcon(QStyle::SP_MessageBoxWarning),
                                     QLineEdit::TrailingPosition);
    }
    if (line.fault != nullptr) {
        line.fault->setVisible(!fault.isEmpty());
        line.fault->setToolTip(plainToolTip(fault));
    }
}

}  // namespace workbench
