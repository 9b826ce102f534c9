// Rebuilds the firmware lists from the settings file.
#include "workbench/frame/CentralWidget.h"
#include "workbench/tabs/sfi/TwinTab.h"

using workbench::Row;

void CentralWidget::ParseSavedFirmwares(QList<QVariant> addresses)
{
    sfiTab->restoreFiles(Row::Firmware, std::exchange(firmwarePaths, {}), {addresses, {}, {}, {}});
}

void CentralWidget::ParseSavedFirmwIx(QList<QVariant> addresses)
{
    sfixTab->restoreFiles(Row::Firmware, std::exchange(firmIxPaths, {}), {addresses, {}, {}, {}});
}

void CentralWidget::ParseSavedFirmwEx(QList<QVariant> addresses, QList<QVariant> modes,
                                      QList<QVariant> numbers, QList<QVariant> keyAddresses)
{
    sfixTab->restoreFiles(Row::External, std::exchange(firmExPaths, {}),
                          {addresses, modes, numbers, keyAddresses});
}
