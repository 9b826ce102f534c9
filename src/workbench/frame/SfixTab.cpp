// What the form is asked about the SFIx tab; the tab itself does it.
#include "workbench/frame/CentralWidget.h"
#include "workbench/tabs/sfi/SfiTab.h"

namespace sfi_row = workbench::sfi_row;

namespace
{

workbench::SfiTab *sfix(const CentralWidget &form)
{
    return static_cast<workbench::SfiTab *>(form.tab(QStringLiteral("sfix")));
}

}  // namespace

void CentralWidget::changeSfixElements(int index)
{
    sfix(*this)->changeDevice(index);
}

void CentralWidget::AddFirmIx()
{
    sfix(*this)->chooseFiles(sfi_row::kInternal);
}

void CentralWidget::RemoveFirmIx()
{
    sfix(*this)->removeSelected(sfi_row::kInternal);
}

void CentralWidget::RemoveFirmIxEnabled(const QItemSelection &selection)
{
    sfix(*this)->enableRemove(sfi_row::kInternal, selection);
}

void CentralWidget::DisplayFirmIxInfo(const QItemSelection &selection)
{
    sfix(*this)->display(sfi_row::kInternal, selection);
}

void CentralWidget::AddVFirmEx()
{
    sfix(*this)->chooseFiles(sfi_row::kExternal);
}

void CentralWidget::RemoveFirmEx()
{
    sfix(*this)->removeSelected(sfi_row::kExternal);
}

void CentralWidget::RemoveFirmExEnabled(const QItemSelection &selection)
{
    sfix(*this)->enableRemove(sfi_row::kExternal, selection);
}

void CentralWidget::DisplayFirmExInfo(const QItemSelection &selection)
{
    sfix(*this)->display(sfi_row::kExternal, selection);
}

void CentralWidget::AddRSSOBKeys_SFIx()
{
    sfix(*this)->chooseFiles(sfi_row::kObk);
}

void CentralWidget::RemoveRSSOBKeys_SFIx()
{
    sfix(*this)->removeSelected(sfi_row::kObk);
}

void CentralWidget::RemoveRSSOBKeysEnabled_SFIx(const QItemSelection &selection)
{
    sfix(*this)->enableRemove(sfi_row::kObk, selection);
}

void CentralWidget::DisplayOBKeyfileInfo_SFIx(const QItemSelection &selection)
{
    sfix(*this)->display(sfi_row::kObk, selection);
}

void CentralWidget::OpenAreaK()
{
    sfix(*this)->choosePath(sfi_row::kKeyArea);
}

void CentralWidget::OpenSfixSsfi()
{
    sfix(*this)->choosePath(sfi_row::kSsfi);
}

void CentralWidget::OpenH5Modules_SFIx()
{
    sfix(*this)->choosePath(sfi_row::kModules);
}

void CentralWidget::SfixFolder()
{
    sfix(*this)->chooseFolder(sfi_row::kOutput);
}

void CentralWidget::GenerateSfixEnabled()
{
    sfix(*this)->form()->updateGenerate();
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
    sfix(*this)->restoreList(sfi_row::kInternal, std::exchange(firmIxPaths, {}),
                             {std::move(addresses), {}, {}, {}});
}

void CentralWidget::ParseSavedFirmwEx(QList<QVariant> addresses, QList<QVariant> modes,
                                      QList<QVariant> numbers, QList<QVariant> keyAddresses)
{
    sfix(*this)->restoreList(
        sfi_row::kExternal, std::exchange(firmExPaths, {}),
        {std::move(addresses), std::move(modes), std::move(numbers), std::move(keyAddresses)});
}
