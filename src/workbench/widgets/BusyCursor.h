#pragma once
#include <QObject>

namespace workbench
{

/// Shows the wait cursor while it lives, and the usual one over every dialog that opens meanwhile,
/// whoever opens it: a box that waits for the user must not look busy.
class BusyCursor : public QObject
{
public:
    BusyCursor();
    ~BusyCursor() override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    int m_dialogs = 0;  ///< dialogs open now, each with its own cursor on the stack
};

}  // namespace workbench
