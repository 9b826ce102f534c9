#include "app/LogDialog.h"

#include "report/DisplayMng.h"

#include <QTextCursor>
#include <QTextEdit>
#include <QVBoxLayout>

LogDialog::LogDialog(QWidget *parent) : QDialog(parent)
{
    setWindowTitle(tr("Log"));
    setFixedSize(400, 480);
    m_text = new QTextEdit(this);
    m_text->setObjectName(QStringLiteral("log_text_edit"));
    m_text->setAccessibleName(tr("Log"));
    m_text->setReadOnly(true);
    m_text->setUndoRedoEnabled(false);
    // A read-only text would keep the Tab key for itself.
    m_text->setTabChangesFocus(true);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_text);
}

void LogDialog::ReadLogs()
{
    // QTextEdit::append would take a file called "<b>x</b>.bin" for markup.
    QTextCursor cursor(m_text->document());
    cursor.movePosition(QTextCursor::End);
    cursor.beginEditBlock();  // or each of many thousand entries would lay the text out anew
    for (const QString &entry : logs) {
        if (!m_text->document()->isEmpty()) {
            cursor.insertBlock();
        }
        cursor.insertText(entry);
    }
    cursor.endEditBlock();
}
