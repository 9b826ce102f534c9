#pragma once
#include <QDialog>

class QTextEdit;

/// Shows the trace as it stood when `ReadLogs` was called.
class LogDialog : public QDialog
{
    Q_OBJECT
public:
    explicit LogDialog(QWidget *parent = nullptr);

    /// Appends every entry of `logs`, as plain text.
    void ReadLogs();

private:
    QTextEdit *m_text = nullptr;
};
