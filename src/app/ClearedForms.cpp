#include "app/ClearedForms.h"

#include "workbench/forms/RowForm.h"
#include "workbench/forms/Tab.h"
#include "workbench/frame/CentralWidget.h"
#include "workbench/widgets/PathEdit.h"
#include "workbench/widgets/PermissionTable.h"

#include <QAbstractSpinBox>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QSpinBox>

#include <algorithm>

namespace app
{

namespace
{

bool isPartOfAnother(const QWidget *widget)
{
    const QWidget *parent = widget->parentWidget();
    return qobject_cast<const QAbstractSpinBox *>(parent) != nullptr ||
           qobject_cast<const QComboBox *>(parent) != nullptr;
}

QList<workbench::FileList *> listsOf(const CentralWidget &form)
{
    QList<workbench::FileList *> lists;
    for (const workbench::Tab *tab : form.tabs()) {
        lists += tab->page()->findChildren<workbench::FileList *>();
    }
    return lists;
}

bool holdsFiles(const CentralWidget &form)
{
    const auto lists = listsOf(form);
    return std::any_of(lists.begin(), lists.end(),
                       [](const workbench::FileList *list) { return !list->rows().isEmpty(); });
}

QVariant valueOf(const QWidget *widget)
{
    if (const auto *edit = qobject_cast<const QLineEdit *>(widget)) {
        const bool isSecret = edit->property(workbench::kSecretProperty).toBool();
        return isSecret ? QVariant() : QVariant(edit->text());
    }
    if (const auto *spin = qobject_cast<const QSpinBox *>(widget)) {
        return spin->value();
    }
    if (const auto *choice = qobject_cast<const QComboBox *>(widget)) {
        return choice->currentIndex();
    }
    if (const auto *bits = qobject_cast<const workbench::PermissionTable *>(widget)) {
        QVariantList set;
        for (const bool bit : bits->bits()) {
            set << bit;
        }
        return set;
    }
    const auto *check = qobject_cast<const QCheckBox *>(widget);
    return check == nullptr ? QVariant() : QVariant(check->isChecked());
}

void setValue(QWidget *widget, const QVariant &value)
{
    if (auto *path = qobject_cast<workbench::PathEdit *>(widget)) {
        path->setPath(value.toString());
    } else if (auto *edit = qobject_cast<QLineEdit *>(widget)) {
        edit->setText(value.toString());
    } else if (auto *choice = qobject_cast<QComboBox *>(widget)) {
        choice->setCurrentIndex(value.toInt());
    } else if (auto *bits = qobject_cast<workbench::PermissionTable *>(widget)) {
        std::vector<bool> set;
        for (const QVariant &bit : value.toList()) {
            set.push_back(bit.toBool());
        }
        bits->setBits(set);
    } else if (auto *spin = qobject_cast<QSpinBox *>(widget)) {
        spin->setValue(value.toInt());
    } else if (auto *check = qobject_cast<QCheckBox *>(widget)) {
        check->setChecked(value.toBool());
    }
}

}  // namespace

bool areFormsFilled(const CentralWidget &form)
{
    const auto holdsText = [](const workbench::Tab *tab) {
        if (tab->page()->findChild<workbench::RowForm *>() == nullptr) {
            return false;  // clearing leaves it as it is
        }
        const auto edits = tab->page()->findChildren<QLineEdit *>();
        return std::any_of(edits.begin(), edits.end(), [](const QLineEdit *edit) {
            return !isPartOfAnother(edit) && edit->isEnabled() && !edit->text().isEmpty();
        });
    };
    return holdsFiles(form) || std::ranges::any_of(form.tabs(), holdsText);
}

ClearedForms::ClearedForms(CentralWidget &form) : m_form(form), m_held(inputs())
{
    const auto lists = listsOf(form);
    for (workbench::FileList *list : lists) {
        m_files.push_back({list, list->takeRows()});
    }
    form.clearForms();
    m_left = inputs();
    // A choice that clearing leaves alone, such as a device, is the user's to change meanwhile.
    const auto isChoice = [](const Input &input) {
        return qobject_cast<QComboBox *>(input.widget) != nullptr;
    };
    std::erase_if(m_left, [&](const Input &left) {
        return isChoice(left) && valueBefore(left.widget) == left.value;
    });
    std::erase_if(m_held, [&](const Input &held) {
        return isChoice(held) && valueOf(held.widget) == held.value;
    });
}

QVariant ClearedForms::valueBefore(const QWidget *widget) const
{
    const auto hit = std::ranges::find(m_held, widget, [](const Input &held) {
        return static_cast<const QWidget *>(held.widget.data());
    });
    return hit == m_held.end() ? QVariant() : hit->value;
}

std::vector<ClearedForms::Input> ClearedForms::inputs() const
{
    std::vector<Input> all;
    for (const workbench::Tab *tab : m_form.tabs()) {
        const auto widgets = tab->page()->findChildren<QWidget *>();
        for (QWidget *widget : widgets) {
            const QVariant value = valueOf(widget);
            if (value.isValid() && !isPartOfAnother(widget)) {
                all.push_back({widget, value});
            }
        }
    }
    return all;
}

bool ClearedForms::areUntouched() const
{
    return !holdsFiles(m_form) && std::ranges::all_of(m_left, [](const Input &input) {
        return input.widget.isNull() || valueOf(input.widget) == input.value;
    });
}

void ClearedForms::bringBack()
{
    // Files first: the texts tell each tab to look whether it may generate.
    for (Files &files : m_files) {
        if (!files.list.isNull()) {
            files.list->giveBack(std::move(files.taken));
        }
    }
    for (const Input &input : m_held) {
        if (!input.widget.isNull()) {
            setValue(input.widget, input.value);
        }
    }
}

}  // namespace app
