#include "app/MainWindow.h"

#include "workbench/CentralWidget.h"

MainWindow::MainWindow(int /*argc*/, char ** /*argv*/, QWidget *parent) : QMainWindow(parent)
{
    setWindowTitle(tr("VDR32 Sealed Package Builder"));
    setMinimumSize(1420, 800);
    show();
    centralWidget = new CentralWidget(1, nullptr);
    setCentralWidget(centralWidget);
}
