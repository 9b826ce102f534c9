// The menus and the tool bar of the window.
#include "app/MainWindow.h"

#include <QAction>
#include <QIcon>
#include <QMenu>
#include <QMenuBar>
#include <QToolBar>

namespace
{

QAction *addEntry(QMenu *menu, const char *objectName, const QString &text)
{
    QAction *action = menu->addAction(text);
    action->setObjectName(QLatin1String(objectName));
    return action;
}

QMenu *addMenu(QMenuBar *bar, const char *objectName, const QString &title)
{
    QMenu *menu = bar->addMenu(title);
    menu->setObjectName(QLatin1String(objectName));
    return menu;
}

QAction *addTool(QToolBar *bar, const char *objectName, const char *icon, const QString &text)
{
    if (!bar->actions().isEmpty()) {
        bar->addSeparator();
    }
    QAction *action = bar->addAction(QIcon(QLatin1String(icon)), text);
    action->setObjectName(QLatin1String(objectName));
    return action;
}

}  // namespace

void MainWindow::InitMenuBar()
{
    menus = menuBar();
    fileMenu = addMenu(menus, "file", tr("&File"));
    checkAction = addEntry(fileMenu, "menu_check_action", tr("&Check SFI/SMI"));
    fileMenu->addSeparator();
    clearAction = addEntry(fileMenu, "menu_clear_action", tr("C&lear"));
    updateAction = addEntry(fileMenu, "menu_update_action", tr("&Secure update (SFU)"));
    fileMenu->addSeparator();
    exitAction = addEntry(fileMenu, "menu_exit_action", tr("E&xit"));

    editMenu = addMenu(menus, "edit", tr("&Edit"));
    undoAction = addEntry(editMenu, "menu_undo_action", tr("&Undo"));
    redoAction = addEntry(editMenu, "menu_redo_action", tr("&Redo"));
    editMenu->addSeparator();
    copyAction = addEntry(editMenu, "menu_copy_action", tr("&Copy"));
    cutAction = addEntry(editMenu, "menu_cut_action", tr("Cu&t"));
    pasteAction = addEntry(editMenu, "menu_paste_action", tr("&Paste"));

    optionsMenu = addMenu(menus, "options", tr("&Options"));
    logAction = addEntry(optionsMenu, "menu_log_action", tr("&Log"));
    settingsAction = addEntry(optionsMenu, "menu_settings_action", tr("&Settings"));

    infoMenu = addMenu(menus, "help", tr("&Info"));
    aboutAction = addEntry(infoMenu, "menu_about_action", tr("&About"));

    docMenu = addMenu(menus, "doc", tr("&Doc"));
    docAction = addEntry(docMenu, "doc", tr("&UM4100 Sealed Package Builder User Manual"));
    refAction = addEntry(docMenu, "menu_reference_action",
                         tr("&AN4100 Secure programming using VDR32FlashBench"));
    // Menu entries of these roles would be moved about on some desktops.
    for (QAction *action : {exitAction, settingsAction, aboutAction}) {
        action->setMenuRole(QAction::NoRole);
    }
}

void MainWindow::InitToolsBar()
{
    toolBar = addToolBar(tr("ToolBar"));
    toolBar->setObjectName(QStringLiteral("frame_tools_bar"));
    toolBar->setFloatable(false);
    toolBar->setMovable(false);
    toolBar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    checkTool = addTool(toolBar, "tool_check_action", ":/parse.png", tr("check SFI/SMI"));
    clearTool = addTool(toolBar, "tool_clear_action", ":/clear.png", tr("clear"));
    settingsTool = addTool(toolBar, "tool_settings_action", ":/settings.png", tr("settings"));
    logsTool = addTool(toolBar, "tool_logs_action", ":/logs.png", tr("logs"));
    closeTool = addTool(toolBar, "tool_close_action", ":/close.png", tr("close"));
    clearTool->setToolTip(tr("Empties all forms; Edit, Undo brings them back"));
    settingsTool->setToolTip(tr("Padding byte, settings file and log file"));
    logsTool->setToolTip(tr("Shows all messages of this run"));
    toolBar->ensurePolished();
    m_wordsWidth = toolBar->sizeHint().width();
    fitToolBar();
}

void MainWindow::fitToolBar()
{
    if (toolBar != nullptr) {
        toolBar->setToolButtonStyle(m_wordsWidth <= width() ? Qt::ToolButtonTextBesideIcon
                                                            : Qt::ToolButtonIconOnly);
    }
}

void MainWindow::connectActions()
{
    for (const QAction *action : {checkAction, checkTool}) {
        connect(action, &QAction::triggered, this, &MainWindow::Check);
    }
    for (const QAction *action : {clearAction, clearTool}) {
        connect(action, &QAction::triggered, this, &MainWindow::Clear);
    }
    connect(updateAction, &QAction::triggered, this, &MainWindow::SecureUpdate);
    for (const QAction *action : {logAction, logsTool}) {
        connect(action, &QAction::triggered, this, &MainWindow::Log);
    }
    for (const QAction *action : {settingsAction, settingsTool}) {
        connect(action, &QAction::triggered, this, &MainWindow::Settings);
    }
    for (const QAction *action : {exitAction, closeTool}) {
        connect(action, &QAction::triggered, this, &MainWindow::close);
    }
    connect(undoAction, &QAction::triggered, this, &MainWindow::Undo);
    connect(redoAction, &QAction::triggered, this, &MainWindow::Redo);
    connect(copyAction, &QAction::triggered, this, &MainWindow::Copy);
    connect(cutAction, &QAction::triggered, this, &MainWindow::Cut);
    connect(pasteAction, &QAction::triggered, this, &MainWindow::Paste);
    connect(aboutAction, &QAction::triggered, this, &MainWindow::About);
    connect(docAction, &QAction::triggered, this, &MainWindow::OpenDoc);
    connect(refAction, &QAction::triggered, this, &MainWindow::OpenRef);
}
