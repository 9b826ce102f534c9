#include "workbench/widgets/TypedSpinBox.h"

#include "workbench/widgets/NumberText.h"

#include <QLineEdit>

namespace workbench
{

TypedSpinBox::TypedSpinBox(QWidget *parent) : QSpinBox(parent)
{
    reset(0);  // or the text would be empty until the box is shown
}

QValidator::State TypedSpinBox::validate(QString &, int &) const
{
    return QValidator::Acceptable;
}

int TypedSpinBox::valueFromText(const QString &text) const
{
    const auto number = unsignedFromText(text);
    if (number && *number >= static_cast<std::uint32_t>(minimum()) &&
        *number <= static_cast<std::uint32_t>(maximum())) {
        m_typed.clear();
        return static_cast<int>(*number);
    }
    m_typed = text;
    return value();
}

QString TypedSpinBox::textFromValue(int value) const
{
    return m_typed.isEmpty() ? QSpinBox::textFromValue(value) : m_typed;
}

void TypedSpinBox::stepBy(int steps)
{
    reset(qBound(minimum(), value() + steps, maximum()));
}

void TypedSpinBox::reset(int value)
{
    m_typed.clear();
    setValue(value);
    lineEdit()->setText(QSpinBox::textFromValue(this->value()));
}

}  // namespace workbench
