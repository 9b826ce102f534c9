#pragma once
#include <QObject>

namespace workbench
{

/// Keeps the wheel from changing a choice or a number that hasn't got the keyboard focus: the form
/// scrolls instead. One object watches all boxes of the program, those of later forms included.
class WheelGuard : public QObject
{
public:
    explicit WheelGuard(QObject *parent);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
};

}  // namespace workbench
