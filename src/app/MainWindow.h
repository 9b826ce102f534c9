#pragma once
#include <QMainWindow>
#include <QString>

class CentralWidget;

/// The one window: menus, tool bar, the form, and what the command line does to it.
class MainWindow : public QMainWindow
{
    Q_OBJECT
public:
    /// Does the whole start-up, the command line included, and shows the window.
    MainWindow(int argc, char **argv, QWidget *parent = nullptr);

    CentralWidget *centralWidget = nullptr;
};
