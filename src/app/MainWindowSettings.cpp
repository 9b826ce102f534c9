// What the window keeps from one run to the next, and the dialog behind "Settings".
#include "app/MainWindow.h"
#include "app/SettingsDialog.h"
#include "app/SettingsPlace.h"
#include "report/DisplayMng.h"
#include "workbench/forms/Tab.h"
#include "workbench/frame/CentralWidget.h"
#include "workbench/frame/TabRegistry.h"
#include "workbench/widgets/PathText.h"

#include <QScopedValueRollback>

#include <algorithm>

using workbench::Tab;

namespace
{

constexpr unsigned char paddingByte(bool isFF)
{
    return isFF ? 0xFF : 0x00;
}

constexpr char kRecentGroup[] = "Recent";
constexpr char kRecentPaths[] = "paths";

void note(const char *what, const files::Error &error)
{
    DisplayMng::getInstance().logMessage(7, L"%s: %s", what, error.text.c_str());
}

/// Tabs that keep something, in the order of their groups in the settings file.
std::vector<Tab *> savedTabs(std::vector<Tab *> tabs)
{
    static const QStringList order{"SFI", "SFIx", "SSP", "SIGN", "SMI", "HSM"};
    const auto place = [](const Tab *tab) {
        const auto at = order.indexOf(tab->settingsGroup());
        return at < 0 ? order.size() : at;  // groups of later versions follow
    };
    std::erase_if(tabs, [](const Tab *tab) { return tab->settingsGroup().isEmpty(); });
    std::ranges::stable_sort(tabs, {}, place);
    return tabs;
}

/// Whether it names a file, which its tab would read.
bool holdsFile(const workbench::SavedGroup &group)
{
    return std::ranges::any_of(group.entries(), [](const workbench::SavedGroup::Entry &entry) {
        const bool isOfFiles =
            entry.key.endsWith(QLatin1String("file")) || entry.key.endsWith(QLatin1String("files"));
        return isOfFiles && !entry.value.toStringList().join(QString()).isEmpty();
    });
}

}  // namespace

void MainWindow::SaveSettings()
{
    // Closed behind a box of the restoring, the window holds only a part of what was saved.
    if (!generateSettingsFile || centralWidget == nullptr || m_isRestoring ||
        settingsPath.isEmpty()) {
        return;
    }
    app::SavedState state;
    state.window = {size(),          centralWidget->lastFolder,
                    paddingFF,       generateSettingsFile,
                    generateLogFile, logFilePath};
    for (const Tab *tab : savedTabs(centralWidget->tabs())) {
        tab->save(
            state.groups.emplace_back(app::SavedState::Named{tab->settingsGroup(), {}}).group);
    }
    auto &recent =
        state.groups.emplace_back(app::SavedState::Named{QLatin1String(kRecentGroup), {}}).group;
    recent.set(QLatin1String(kRecentPaths), workbench::RecentPaths::instance().saved());
    app::makeSettingsFolder(settingsPath);
    if (const auto written = app::writeSettings(settingsPath, state); !written) {
        note("Settings.ini was not saved", written.error());
    }
}

void MainWindow::LoadSettings()
{
    const QScopedValueRollback<bool> restoring(m_isRestoring, true);
    const auto read = app::readSettings(settingsPath);
    if (!read) {
        note("Settings.ini was not read", read.error());
        return;
    }
    const app::SavedWindow &window = read->window;
    resize(window.size);  // an invalid one becomes the minimum size
    centralWidget->lastFolder = window.lastFolder;
    paddingFF = window.paddingFF;
    centralWidget->fileManager.paddingByte = paddingByte(paddingFF);
    generateSettingsFile = window.generateSettingsFile;
    generateLogFile = window.generateLogFile;
    logFilePath = window.logFilePath;
    if (generateLogFile) {
        DisplayMng::getInstance().initLogFile(logFilePath);
        DisplayMng::getInstance().logToFile = true;
    }
    workbench::RecentPaths::instance().restore(
        read->group(QLatin1String(kRecentGroup)).texts(QLatin1String(kRecentPaths)));
    restoreForms(*read);
}

void MainWindow::restoreForms(const app::SavedState &state)
{
    // Faults of files are told now, in one go. What names no file can wait for its tab.
    for (const workbench::TabEntry &entry : workbench::tabRegistry()) {
        if (holdsFile(state.group(QLatin1String(entry.name.settingsGroup)))) {
            static_cast<void>(centralWidget->tab(QLatin1String(entry.name.key)));
        }
    }
    const std::vector<Tab *> tabs = savedTabs(centralWidget->builtTabs());
    m_restored = state;
    for (Tab *tab : tabs) {
        tab->restore(state.group(tab->settingsGroup()));
    }
    for (Tab *tab : tabs) {
        tab->restoreFiles(state.group(tab->settingsGroup()));
    }
}

void MainWindow::restoreLate(Tab *tab)
{
    if (m_restored && !tab->settingsGroup().isEmpty()) {
        const workbench::SavedGroup group = m_restored->group(tab->settingsGroup());
        tab->restore(group);
        tab->restoreFiles(group);
    }
}

void MainWindow::Settings()
{
    SettingsDialog dialog(this);
    dialog.setValues({paddingFF, generateSettingsFile, generateLogFile, logFilePath},
                     app::areFormsFilled(*centralWidget));
    if (dialog.exec() != QDialog::Accepted) {
        return;
    }
    const SettingsDialog::Values chosen = dialog.values();
    if (chosen.paddingFF != paddingFF) {
        paddingFF = chosen.paddingFF;
        Clear();  // no list may hold files padded the old way
        m_cleared.reset();
        centralWidget->fileManager.paddingByte = paddingByte(paddingFF);
    }
    generateLogFile = chosen.generateLogFile;
    generateSettingsFile = chosen.generateSettingsFile;
    logFilePath = chosen.logFilePath;
}
