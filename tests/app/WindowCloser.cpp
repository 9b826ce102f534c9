// The real program, but for a hand that closes the window: in the first box when the variable
// CLOSE_IN_BOX is set, else when the event loop runs. A process that doesn't end is the fault the
// test looks for. Before that it looks for the file of variable LOOK_FOR (UTF-8) and warns with the
// text of SAY.
#include "app/Application.h"
#include "support/LeakSuppressions.h"

#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QFile>
#include <QMainWindow>
#include <QTimer>

#include <cstdio>

namespace
{

void answerQuestions()
{
    if (const QByteArray path = qgetenv("LOOK_FOR"); !path.isEmpty()) {
        std::puts(QFile::exists(QString::fromUtf8(path)) ? "found" : "missing");
    }
    if (const QByteArray text = qgetenv("SAY"); !text.isEmpty()) {
        qWarning("%s", text.constData());
    }
}

void closeMainWindow()
{
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        auto *window = qobject_cast<QMainWindow *>(widget);
        if (window != nullptr && window->isVisible()) {
            answerQuestions();
            window->close();
        }
    }
}

class Hand : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        auto *dialog = event->type() == QEvent::Show ? qobject_cast<QDialog *>(watched) : nullptr;
        if (dialog == nullptr) {
            return false;
        }
        if (qEnvironmentVariableIsSet("CLOSE_IN_BOX")) {
            QTimer::singleShot(0, this, closeMainWindow);
        } else {
            QTimer::singleShot(0, dialog, &QDialog::reject);
        }
        return false;
    }
};

void reachOut()
{
    QCoreApplication::instance()->installEventFilter(new Hand(QCoreApplication::instance()));
    if (!qEnvironmentVariableIsSet("CLOSE_IN_BOX")) {
        // Boxes of the start-up run loops, too; only without one is the start-up over.
        auto *timer = new QTimer(QCoreApplication::instance());
        QObject::connect(timer, &QTimer::timeout, timer, [] {
            if (QApplication::activeModalWidget() == nullptr) {
                closeMainWindow();
            }
        });
        timer->start(20);
    }
}

}  // namespace

Q_COREAPP_STARTUP_FUNCTION(reachOut)

int main(int argc, char **argv)
{
    return app::run(argc, argv);
}
