#pragma once
#include "app/ClearedForms.h"
#include "app/CommandLine.h"
#include "app/SettingsFile.h"
#include "workbench/frame/Building.h"

#include <QMainWindow>
#include <QString>

#include <memory>
#include <optional>
#include <vector>

class CentralWidget;
class QAction;
class QMenu;
class QMenuBar;
class QToolBar;
namespace workbench
{
class Tab;
}

/// The one window: menus, tool bar, the form, and what the command line does to it.
class MainWindow : public QMainWindow
{
    Q_OBJECT
public:
    /// Does the whole start-up and shows the window. The command line has been parsed when it
    /// returns; boxes on the way run event loops of their own, in which the window may be closed.
    /// @param building  with WhenNeeded the missing tabs follow when the event loop runs
    MainWindow(int argc, char **argv, QWidget *parent = nullptr,
               workbench::Building building = workbench::Building::AtOnce);

    /// The process's exit status once the window was closed; nothing before that.
    std::optional<int> closedStatus() const { return m_closedStatus; }

    // Menus and their actions, null until InitMenuBar
    QMenuBar *menus = nullptr;
    QMenu *fileMenu = nullptr;
    QAction *checkAction = nullptr;
    QAction *clearAction = nullptr;
    QAction *updateAction = nullptr;
    QAction *exitAction = nullptr;
    QMenu *editMenu = nullptr;
    QAction *undoAction = nullptr;
    QAction *redoAction = nullptr;
    QAction *copyAction = nullptr;
    QAction *cutAction = nullptr;
    QAction *pasteAction = nullptr;
    QMenu *optionsMenu = nullptr;
    QAction *logAction = nullptr;
    QAction *settingsAction = nullptr;
    QMenu *infoMenu = nullptr;
    QAction *aboutAction = nullptr;
    QMenu *docMenu = nullptr;
    QAction *docAction = nullptr;
    QAction *refAction = nullptr;
    // Tool bar and its actions, null until InitToolsBar
    QToolBar *toolBar = nullptr;
    QAction *checkTool = nullptr;
    QAction *clearTool = nullptr;
    QAction *settingsTool = nullptr;
    QAction *logsTool = nullptr;
    QAction *closeTool = nullptr;

    CentralWidget *centralWidget = nullptr;
    QString settingsPath;
    bool paddingFF = true;  ///< padding byte 0xFF, else 0x00
    bool generateLogFile = false;
    bool generateSettingsFile = true;
    QString logFilePath;

    /// Writes the state of window and forms to `settingsPath`, unless the user has switched that
    /// off. A failure stands in the trace only: it must not keep the window open.
    void SaveSettings();
    /// Restores what SaveSettings wrote; boxes tell about files that are gone.
    void LoadSettings();

    void InitMenuBar();
    void InitToolsBar();

public slots:
    void Check();
    void Clear();         ///< of filled forms, "Undo" as the next action takes it back
    void SecureUpdate();  ///< shows the SFU page in a window of its own
    void Log();
    void Settings();
    void About();
    void OpenDoc();
    void OpenRef();
    // Each posts its key combination to the widget with the focus, if there is one.
    void Undo();
    void Redo();
    void Copy();
    void Cut();
    void Paste();

signals:
    void SettingsFound();

protected:
    void closeEvent(QCloseEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void connectActions();
    void fitToolBar();            ///< words beside the icons, where there is room for them
    void focusDeviceBox() const;  ///< of the tab in front
    void checkImage(const QString &path);
    void startWithoutArguments();
    void startWithArguments(const QStringList &arguments);
    // Each returns false when the steps behind it are to be ignored.
    bool perform(const app::Step &step);
    bool openObkTemplate(const app::Step &step);
    bool openImageTemplate(const app::Step &step);
    bool showTab(const app::Step &step);
    void takeTemplatePath(const QString &path);
    int statusOnClose() const;

    QWidget *m_updateWindow = nullptr;  ///< null until it is asked for

    void restoreForms(const app::SavedState &state);
    /// Gives a tab that was built later its share of the settings file.
    void restoreLate(workbench::Tab *tab);

    std::unique_ptr<app::ClearedForms> m_cleared;  ///< what "Undo" would bring back
    std::optional<app::SavedState> m_restored;     ///< tabs that are built later take theirs
    int m_wordsWidth = 0;                          ///< of the tool bar with its words
    bool m_isStarting = true;
    bool m_isRestoring = false;
    std::optional<int> m_closedStatus;
};
