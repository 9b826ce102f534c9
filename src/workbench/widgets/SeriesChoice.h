#pragma once
#include <QObject>

class QCheckBox;
class QDialogButtonBox;
class QGridLayout;

namespace workbench
{

/// What a dialog offers while several files are added at once: "Cancel all", and to give the files
/// that follow the same answer without asking. Lives with the dialog.
class SeriesChoice : public QObject
{
    Q_OBJECT

public:
    /// Adds its inputs to a dialog's buttons and below its rows.
    /// @param name  object names begin with it, such as "address"
    SeriesChoice(const QString &name, QDialogButtonBox *buttons, QGridLayout *rows);

    [[nodiscard]] bool cancelsAll() const { return m_cancelsAll; }
    [[nodiscard]] bool isSameForAll() const;

private:
    QCheckBox *m_same;
    bool m_cancelsAll = false;
};

}  // namespace workbench
