#pragma once
#include <QPushButton>

namespace workbench
{

/// "Show in folder" for the file that was made last. Not there before, and not there any more once
/// something else is shown.
class ShowInFolder : public QPushButton
{
    Q_OBJECT

public:
    /// @param of  what was made, for the accessible name; such as "SMI information"
    ShowInFolder(const QString &objectName, const QString &of, QWidget *parent);

    void offer(const QString &path);
    void withdraw() { hide(); }

private:
    QString m_path;
};

}  // namespace workbench
