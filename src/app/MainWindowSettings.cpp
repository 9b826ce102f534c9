// What the window keeps from one run to the next, and the dialog behind "Settings".
#include "app/MainWindow.h"
#include "app/SettingsDialog.h"
#include "report/DisplayMng.h"
#include "workbench/frame/CentralWidget.h"
#include "workbench/tabs/sfi/TwinTab.h"

#include <QScopedValueRollback>

namespace
{

constexpr unsigned char paddingByte(bool isFF)
{
    return isFF ? 0xFF : 0x00;
}

void note(const char *what, const files::Error &error)
{
    DisplayMng::getInstance().logMessage(7, L"%s: %s", what, error.text.c_str());
}

}  // namespace

void MainWindow::SaveSettings()
{
    // Closed behind a box of the restoring, the window holds only a part of what was saved.
    if (!generateSettingsFile || centralWidget == nullptr || m_isRestoring) {
        return;
    }
    app::SavedState state;
    state.windowSize = size();
    state.lastFolder = centralWidget->lastFolder;
    state.paddingFF = paddingFF;
    state.generateSettingsFile = generateSettingsFile;
    state.generateLogFile = generateLogFile;
    state.logFilePath = logFilePath;
    state.sfi = centralWidget->sfiTab->saved();
    state.sfix = centralWidget->sfixTab->saved();
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
    resize(read->windowSize);  // an invalid one becomes the minimum size
    centralWidget->lastFolder = read->lastFolder;
    paddingFF = read->paddingFF;
    centralWidget->fileManager.paddingByte = paddingByte(paddingFF);
    generateSettingsFile = read->generateSettingsFile;
    generateLogFile = read->generateLogFile;
    logFilePath = read->logFilePath;
    if (generateLogFile) {
        DisplayMng::getInstance().initLogFile(logFilePath);
        DisplayMng::getInstance().logToFile = true;
    }
    restoreForms(*read);
}

void MainWindow::restoreForms(const app::SavedState &state)
{
    CentralWidget &form = *centralWidget;
    form.sfiTab->restoreFields(state.sfi);
    form.sfixTab->restoreFields(state.sfix);
    form.sfiTab->restoreFiles(workbench::Row::Smi, state.sfi.smi, {});
    form.firmwarePaths = state.sfi.firmware;
    form.ParseSavedFirmwares(state.sfi.firmwarePlaces.addresses);
    form.firmIxPaths = state.sfix.firmware;
    form.ParseSavedFirmwIx(state.sfix.firmwarePlaces.addresses);
    form.firmExPaths = state.sfix.external;
    const workbench::SavedPlaces &external = state.sfix.externalPlaces;
    form.ParseSavedFirmwEx(external.addresses, external.modes, external.numbers,
                           external.keyAddresses);
}

void MainWindow::Settings()
{
    SettingsDialog dialog(this);
    dialog.setValues({paddingFF, generateSettingsFile, generateLogFile, logFilePath});
    if (dialog.exec() != QDialog::Accepted) {
        return;
    }
    const SettingsDialog::Values chosen = dialog.values();
    if (chosen.paddingFF != paddingFF) {
        paddingFF = chosen.paddingFF;
        Clear();  // no list may hold files padded the old way
        centralWidget->fileManager.paddingByte = paddingByte(paddingFF);
    }
    generateLogFile = chosen.generateLogFile;
    generateSettingsFile = chosen.generateSettingsFile;
    logFilePath = chosen.logFilePath;
}
