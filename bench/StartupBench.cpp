// Starts the program, or a bare Qt window with five empty tabs, and ends at the first turn of the
// event loop. Both in one executable, so that both load the same libraries.
#include "app/Application.h"

#include <QApplication>
#include <QMainWindow>
#include <QTabWidget>
#include <QTimer>

#include <cstdlib>
#include <cstring>

namespace
{

constexpr int kEmptyTabs = 5;

/// The process is gone at once: what is measured is the start, not the end.
void endAtFirstTurn()
{
    QTimer::singleShot(0, qApp, [] { std::_Exit(0); });
}

int runBare(int argc, char **argv)
{
    const QApplication application(argc, argv);
    QMainWindow window;
    auto *tabs = new QTabWidget(&window);
    for (int i = 0; i < kEmptyTabs; ++i) {
        tabs->addTab(new QWidget, QString::number(i));
    }
    window.setCentralWidget(tabs);
    window.show();
    return QApplication::exec();
}

}  // namespace

Q_COREAPP_STARTUP_FUNCTION(endAtFirstTurn)

int main(int argc, char **argv)
{
    if (argc == 2 && std::strcmp(argv[1], "bare") == 0) {
        return runBare(1, argv);
    }
    return app::run(1, argv);
}
