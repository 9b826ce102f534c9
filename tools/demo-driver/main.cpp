// Drives the real window over the demo inputs and keeps what comes out. Everything goes through the
// program's own start-up, widgets and dialogs; the program knows nothing of it.
#include "HelpPictures.h"
#include "SfiDemo.h"
#include "app/Application.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QPalette>
#include <QStyle>
#include <QTextStream>
#include <QTimer>

namespace
{

constexpr int kPollMs = 50;
constexpr int kPatienceMs = 20000;

demo::Request g_request;

QPalette darkPalette()
{
    QPalette palette(QColor(0x35, 0x38, 0x3C), QColor(0x2B, 0x2D, 0x30));
    palette.setColor(QPalette::Base, QColor(0x1F, 0x21, 0x24));
    palette.setColor(QPalette::AlternateBase, QColor(0x26, 0x29, 0x2C));
    palette.setColor(QPalette::Highlight, QColor(0x2C, 0x6C, 0xA8));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::ToolTipBase, QColor(0x35, 0x38, 0x3C));
    palette.setColor(QPalette::ToolTipText, Qt::white);
    return palette;
}

QMainWindow *mainWindow()
{
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (auto *window = qobject_cast<QMainWindow *>(widget)) {
            return window;
        }
    }
    return nullptr;
}

void finish(const QString &fault)
{
    QTextStream(stdout) << (fault.isEmpty() ? QStringLiteral("demo-driver: wrote its files to ") +
                                                  g_request.outputFolder
                                            : QStringLiteral("demo-driver: ") + fault)
                        << '\n';
    QApplication::exit(fault.isEmpty() ? 0 : 1);
}

/// Starts once the window shows its form: the program may handle events while it builds that.
void drive()
{
    static int waited = 0;
    QMainWindow *window = mainWindow();
    if (window == nullptr || window->centralWidget() == nullptr ||
        !window->centralWidget()->isVisible()) {
        if (++waited * kPollMs > kPatienceMs) {
            finish(QStringLiteral("the main window didn't come up"));
        } else {
            QTimer::singleShot(kPollMs, qApp, drive);
        }
        return;
    }
    if (g_request.isDark) {
        // A desktop's own colours go through the style; those that are set are left alone.
        QPalette palette = darkPalette();
        QApplication::style()->polish(palette);
        QApplication::setPalette(palette);
        qApp->setStyleSheet(qApp->styleSheet());  // the sheet took its colours from the old palette
    }
    finish(g_request.script.isEmpty()
               ? demo::SfiDemo(*window, g_request).run()
               : demo::HelpPictures(*window, g_request.outputFolder).run(g_request.script));
}

/// Runs while the application object is made: the first thing its event loop does is to drive.
void schedule()
{
    QTimer::singleShot(0, qApp, drive);
}

}  // namespace

int main(int argc, char **argv)
{
    QCommandLineParser parser;
    parser.addOptions({{QStringLiteral("dark"), QStringLiteral("show a dark desktop theme")},
                       {QStringLiteral("pictures"), QStringLiteral("take the steps of a file"),
                        QStringLiteral("script")}});
    parser.addPositionalArgument(QStringLiteral("data"), QStringLiteral("folder with the inputs"));
    parser.addPositionalArgument(QStringLiteral("out"), QStringLiteral("folder for the results"));
    QStringList arguments;
    for (int i = 0; i < argc; ++i) {
        arguments.append(QString::fromLocal8Bit(argv[i]));
    }
    if (!parser.parse(arguments) || parser.positionalArguments().size() != 2) {
        QTextStream(stderr)
            << "usage: demo-driver [--dark] [--pictures SCRIPT] DATA-FOLDER OUT-FOLDER\n";
        return 3;
    }
    g_request.dataFolder = QDir(parser.positionalArguments().at(0)).absolutePath();
    g_request.outputFolder = QDir(parser.positionalArguments().at(1)).absolutePath();
    g_request.script = parser.value(QStringLiteral("pictures"));
    g_request.isDark = parser.isSet(QStringLiteral("dark"));
    if (!QDir().mkpath(g_request.outputFolder)) {
        QTextStream(stderr) << "demo-driver: can't make " << g_request.outputFolder << '\n';
        return 1;
    }
    // The robot finds its way about Qt's own file dialog, not about a desktop's.
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    qAddPreRoutine(schedule);
    int programArgc = 1;  // the program is started as if without arguments
    return app::run(programArgc, argv);
}
