#pragma once
#include <QString>

class QComboBox;

namespace workbench
{

/// What the H5 panel does to the device box of a tab.
class DeviceLock
{
public:
    /// Puts the box on an entry and disables it; or enables it again with the entry that the user
    /// had chosen. Either twice is the same as once: storing twice would lose the user's choice,
    /// and restoring without a lock would bring back a stale one. The box's tool tip says why it is
    /// locked.
    void set(QComboBox *box, int entry, bool lock);

private:
    // The user's while locked:
    int m_chosen = 0;
    QString m_toolTip;
};

}  // namespace workbench
