#pragma once
#include "process/RunTool.h"

#include <QObject>

class QMessageBox;

namespace workbench
{

/// The box of a long operation. While an external tool runs, its "Cancel" is the only thing in the
/// window that takes clicks and keys.
class ToolProgress : public QObject
{
    Q_OBJECT

public:
    /// Shows the box. It is hidden again by `finish`, or with the object.
    explicit ToolProgress(QWidget *parent);
    ~ToolProgress() override;
    void finish();

    /// Keeps the window alive while a tool runs, and lets "Cancel" end it.
    [[nodiscard]] process::ToolWatch watch();
    [[nodiscard]] bool isCancelled() const { return m_isCancelled; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void turn();
    QMessageBox *m_box;
    bool m_isCancelled = false;
};

}  // namespace workbench
