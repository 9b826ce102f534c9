#include "workbench/widgets/DisplayMessage.h"

#include "report/DisplayMng.h"

#include "workbench/widgets/Boxes.h"

#include <QMessageBox>
#include <QTime>

namespace
{

// A file may be called "<b>x</b>.bin": the box shows names as they are.
void showPlainBox(QMessageBox::Icon icon, const QString &title, const QString &text)
{
    QMessageBox box(icon, title, text, QMessageBox::Ok);
    box.setTextFormat(Qt::PlainText);
    workbench::fitToScreen(box);
    box.exec();
}

void showBoxOfLevel(int level, const QString &text)
{
    switch (level) {
    case 1:
        showPlainBox(QMessageBox::Information, QStringLiteral("Information"), text);
        break;
    case 4:
        // An image without option bytes is normal for some devices; the trace keeps the note.
        if (!text.contains(QLatin1String("Failed to locate"))) {
            showPlainBox(QMessageBox::Warning, QStringLiteral("Warning"), text);
        }
        break;
    case 5:
        showPlainBox(QMessageBox::Critical, QStringLiteral("Error"), text);
        break;
    default:
        break;
    }
}

QString stamped(const QString &text)
{
    return QTime::currentTime().toString(QStringLiteral("hh:mm:ss:zzz")) + QLatin1Char(' ') + text;
}

}  // namespace

void displayMessage(int level, const wchar_t *text)
{
    const QString message = text == nullptr ? QString() : QString::fromWCharArray(text);
    showBoxOfLevel(level, message);
    logs.append(stamped(message));
    const DisplayMng &sink = DisplayMng::getInstance();
    if (sink.logFile != nullptr && sink.logToFile) {
        const QByteArray line = (stamped(message) + QLatin1Char('\n')).toUtf8();
        std::fputs(line.constData(), sink.logFile);
    }
}

void myMessageHandler(QtMsgType /*type*/, const QMessageLogContext & /*context*/,
                      const QString & /*text*/)
{
}
