// What the form is asked about the SFIx tab; the tab itself does it.
#include "workbench/frame/CentralWidget.h"
#include "workbench/tabs/sfi/TwinTab.h"

using workbench::Row;

namespace
{

workbench::TwinTab *sfix(const CentralWidget &form)
{
    return static_cast<workbench::TwinTab *>(form.tab(QStringLiteral("sfix")));
}

}  // namespace

void CentralWidget::changeSfixElements(int index)
{
    sfix(*this)->changeMcu(index);
}

void CentralWidget::AddFirmIx()
{
    sfix(*this)->chooseFiles(Row::Firmware);
}

void CentralWidget::RemoveFirmIx()
{
    sfix(*this)->removeSelected(Row::Firmware);
}

void CentralWidget::RemoveFirmIxEnabled(const QItemSelection &selection)
{
    sfix(*this)->enableRemove(Row::Firmware, selection);
}

void CentralWidget::DisplayFirmIxInfo(const QItemSelection &selection)
{
    sfix(*this)->display(Row::Firmware, selection);
}

void CentralWidget::AddVFirmEx()
{
    sfix(*this)->chooseFiles(Row::External);
}

void CentralWidget::RemoveFirmEx()
{
    sfix(*this)->removeSelected(Row::External);
}

void CentralWidget::RemoveFirmExEnabled(const QItemSelection &selection)
{
    sfix(*this)->enableRemove(Row::External, selection);
}

void CentralWidget::DisplayFirmExInfo(const QItemSelection &selection)
{
    sfix(*this)->display(Row::External, selection);
}

void CentralWidget::AddRSSOBKeys_SFIx()
{
    sfix(*this)->chooseFiles(Row::Obk);
}

void CentralWidget::RemoveRSSOBKeys_SFIx()
{
    sfix(*this)->removeSelected(Row::Obk);
}

void CentralWidget::RemoveRSSOBKeysEnabled_SFIx(const QItemSelection &selection)
{
    sfix(*this)->enableRemove(Row::Obk, selection);
}

void CentralWidget::DisplayOBKeyfileInfo_SFIx(const QItemSelection &selection)
{
    sfix(*this)->display(Row::Obk, selection);
}

void CentralWidget::OpenAreaK()
{
    sfix(*this)->choosePath(Row::KeyArea);
}

void CentralWidget::OpenSfixSsfi()
{
    sfix(*this)->choosePath(Row::Ssfi);
}

void CentralWidget::OpenH5Modules_SFIx()
{
    sfix(*this)->choosePath(Row::Modules);
}

void CentralWidget::SfixFolder()
{
    sfix(*this)->chooseOutputFolder();
}

void CentralWidget::GenerateSfixEnabled()
{
    sfix(*this)->updateGenerate();
}

void CentralWidget::GenerateSfix()
{
    sfix(*this)->generate();
}

void CentralWidget::OpenSfixFile()
{
    sfix(*this)->chooseImage();
}

void CentralWidget::ParseSavedFirmwIx(QList<QVariant> addresses)
{
    sfix(*this)->restoreList(Row::Firmware, std::exchange(firmIxPaths, {}),
                             {addresses, {}, {}, {}});
}

void CentralWidget::ParseSavedFirmwEx(QList<QVariant> addresses, QList<QVariant> modes,
                                      QList<QVariant> numbers, QList<QVariant> keyAddresses)
{
    sfix(*this)->restoreList(Row::External, std::exchange(firmExPaths, {}),
                             {addresses, modes, numbers, keyAddresses});
}
