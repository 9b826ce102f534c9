// What the form is asked about the SFI tab; the tab itself does it.
#include "workbench/tabs/sfi/SfiTab.h"
#include "workbench/frame/CentralWidget.h"

namespace sfi_row = workbench::sfi_row;

namespace
{

workbench::SfiTab *sfi(const CentralWidget &form)
{
    return static_cast<workbench::SfiTab *>(form.tab(QStringLiteral("sfi")));
}

}  // namespace

void CentralWidget::changeSfiElements(int index)
{
    sfi(*this)->changeDevice(index);
}

void CentralWidget::AddFirmwares()
{
    sfi(*this)->chooseFiles(sfi_row::kFirmware);
}

void CentralWidget::RemoveFirmware()
{
    sfi(*this)->removeSelected(sfi_row::kFirmware);
}

void CentralWidget::RemoveFirmwareEnabled(const QItemSelection &selection)
{
    sfi(*this)->enableRemove(sfi_row::kFirmware, selection);
}

void CentralWidget::DisplayFirInfo(const QItemSelection &selection)
{
    sfi(*this)->display(sfi_row::kFirmware, selection);
}

void CentralWidget::AddRSSOBKeys()
{
    sfi(*this)->chooseFiles(sfi_row::kObk);
}

void CentralWidget::RemoveRSSOBKeys()
{
    sfi(*this)->removeSelected(sfi_row::kObk);
}

void CentralWidget::RemoveRSSOBKeysEnabled(const QItemSelection &selection)
{
    sfi(*this)->enableRemove(sfi_row::kObk, selection);
}

void CentralWidget::DisplayOBKeyfileInfo(const QItemSelection &selection)
{
    sfi(*this)->display(sfi_row::kObk, selection);
}

void CentralWidget::AddSmis()
{
    sfi(*this)->chooseFiles(sfi_row::kSmi);
}

void CentralWidget::RemoveSmi()
{
    sfi(*this)->removeSelected(sfi_row::kSmi);
}

void CentralWidget::RemoveSmiEnabled(const QItemSelection &selection)
{
    sfi(*this)->enableRemove(sfi_row::kSmi, selection);
}

void CentralWidget::DisplaySmiInfo(const QItemSelection &selection)
{
    sfi(*this)->display(sfi_row::kSmi, selection);
}

void CentralWidget::OpenAreaK_SFI()
{
    sfi(*this)->choosePath(sfi_row::kKeyArea);
}

void CentralWidget::OpenSfiSsfi()
{
    sfi(*this)->choosePath(sfi_row::kSsfi);
}

void CentralWidget::OpenH5Modules()
{
    sfi(*this)->choosePath(sfi_row::kModules);
}

void CentralWidget::SfiFolder()
{
    sfi(*this)->chooseFolder(sfi_row::kOutput);
}

void CentralWidget::GenerateSfiEnabled()
{
    sfi(*this)->form()->updateGenerate();
}

void CentralWidget::GenerateSfi()
{
    sfi(*this)->generate();
}

void CentralWidget::OpenSfiFile()
{
    sfi(*this)->chooseImage();
}

void CentralWidget::parseSfiFile(const QString &kind, bool fromUser)
{
    static_cast<workbench::SfiTab *>(tab(kind.toLower()))->parse(fromUser);
}

void CentralWidget::OpenSfiKey()
{
    sfi(*this)->choosePath(sfi_row::kKey);
}

void CentralWidget::OpenSfiNonce()
{
    sfi(*this)->choosePath(sfi_row::kNonce);
}

void CentralWidget::OpenOb()
{
    sfi(*this)->choosePath(sfi_row::kOptionBytes);
}

void CentralWidget::GenerateEncryptionKey()
{
    sfi(*this)->makeRandomFile(sfi_row::kKey);
}

void CentralWidget::GenerateNonceKey()
{
    sfi(*this)->makeRandomFile(sfi_row::kNonce);
}

void CentralWidget::ParseSavedFirmwares(QList<QVariant> addresses)
{
    sfi(*this)->restoreList(sfi_row::kFirmware, std::exchange(firmwarePaths, {}),
                            {std::move(addresses), {}, {}, {}});
}
