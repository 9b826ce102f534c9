#pragma once
#include "process/RunTool.h"

#include <QObject>

#include <memory>

class QMessageBox;
class QProgressBar;
class QPushButton;

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
    /// Shows how far an operation of known length is, repaints the window, and hears "Cancel".
    /// @return false once it was cancelled
    bool step(const QString &what, int done, int of);
    /// Whether "Cancel" can be pressed.
    void setCancellable(bool isCancellable);
    [[nodiscard]] bool isCancelled() const { return m_isCancelled; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void turn();
    std::unique_ptr<QMessageBox> m_box;
    QPushButton *m_cancel;
    QProgressBar *m_bar = nullptr;  ///< once there are steps
    bool m_isCancelled = false;
};

}  // namespace workbench
