#pragma once
#include <QSpinBox>

namespace workbench
{

/// A spin box whose text may be typed as "0x" hexadecimal, too, and that leaves a text standing
/// that is no number of its range: the form refuses it with a sentence when it is used. Arrows and
/// keys go through the range alone.
class TypedSpinBox : public QSpinBox
{
    Q_OBJECT

public:
    explicit TypedSpinBox(QWidget *parent = nullptr);

    QValidator::State validate(QString &text, int &position) const override;
    void stepBy(int steps) override;

    /// Takes a value from code; what was typed is forgotten.
    void reset(int value);

protected:
    int valueFromText(const QString &text) const override;
    QString textFromValue(int value) const override;

private:
    mutable QString m_typed;  ///< a text that stands for no value; empty for none
};

}  // namespace workbench
