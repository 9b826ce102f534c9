// What the form is asked about the SFI tab; the tab itself does it.
#include "workbench/frame/CentralWidget.h"
#include "workbench/tabs/sfi/TwinTab.h"

using workbench::Row;

namespace
{

workbench::TwinTab *sfi(const CentralWidget &form)
{
    return static_cast<workbench::TwinTab *>(form.tab(QStringLiteral("sfi")));
}

}  // namespace

void CentralWidget::changeSfiElements(int index)
{
    sfi(*this)->changeMcu(index);
}

void CentralWidget::AddFirmwares()
{
    sfi(*this)->chooseFiles(Row::Firmware);
}

void CentralWidget::RemoveFirmware()
{
    sfi(*this)->removeSelected(Row::Firmware);
}

void CentralWidget::RemoveFirmwareEnabled(const QItemSelection &selection)
{
    sfi(*this)->enableRemove(Row::Firmware, selection);
}

void CentralWidget::DisplayFirInfo(const QItemSelection &selection)
{
    sfi(*this)->display(Row::Firmware, selection);
}

void CentralWidget::AddRSSOBKeys()
{
    sfi(*this)->chooseFiles(Row::Obk);
}

void CentralWidget::RemoveRSSOBKeys()
{
    sfi(*this)->removeSelected(Row::Obk);
}

void CentralWidget::RemoveRSSOBKeysEnabled(const QItemSelection &selection)
{
    sfi(*this)->enableRemove(Row::Obk, selection);
}

void CentralWidget::DisplayOBKeyfileInfo(const QItemSelection &selection)
{
    sfi(*this)->display(Row::Obk, selection);
}

void CentralWidget::AddSmis()
{
    sfi(*this)->chooseFiles(Row::Smi);
}

void CentralWidget::RemoveSmi()
{
    sfi(*this)->removeSelected(Row::Smi);
}

void CentralWidget::RemoveSmiEnabled(const QItemSelection &selection)
{
    sfi(*this)->enableRemove(Row::Smi, selection);
}

void CentralWidget::DisplaySmiInfo(const QItemSelection &selection)
{
    sfi(*this)->display(Row::Smi, selection);
}

void CentralWidget::OpenAreaK_SFI()
{
    sfi(*this)->choosePath(Row::KeyArea);
}

void CentralWidget::OpenSfiSsfi()
{
    sfi(*this)->choosePath(Row::Ssfi);
}

void CentralWidget::OpenH5Modules()
{
    sfi(*this)->choosePath(Row::Modules);
}

void CentralWidget::SfiFolder()
{
    sfi(*this)->chooseOutputFolder();
}

void CentralWidget::GenerateSfiEnabled()
{
    sfi(*this)->updateGenerate();
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
    static_cast<workbench::TwinTab *>(tab(kind.toLower()))->parse(fromUser);
}

void CentralWidget::OpenSfiKey()
{
    sfi(*this)->choosePath(Row::Key);
}

void CentralWidget::OpenSfiNonce()
{
    sfi(*this)->choosePath(Row::Nonce);
}

void CentralWidget::OpenOb()
{
    sfi(*this)->choosePath(Row::OptionBytes);
}

void CentralWidget::GenerateEncryptionKey()
{
    sfi(*this)->makeRandomFile(Row::Key);
}

void CentralWidget::GenerateNonceKey()
{
    sfi(*this)->makeRandomFile(Row::Nonce);
}

void CentralWidget::ParseSavedFirmwares(QList<QVariant> addresses)
{
    sfi(*this)->restoreList(Row::Firmware, std::exchange(firmwarePaths, {}),
                            {addresses, {}, {}, {}});
}
