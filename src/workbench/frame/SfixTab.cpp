#include "workbench/frame/CentralWidget.h"
#include "workbench/tabs/sfi/TwinTab.h"

using workbench::Row;

void CentralWidget::InitSfixTab()
{
    workbench::TwinSurroundings near = twinSurroundings();
    // Both questions are the SFI tab's, also for this image.
    near.isCombined = [this] { return sfiTab->mcu().combined; };
    near.smiFiles = [this] { return sfiTab->form()->list(Row::Smi)->rows().records(); };
    sfixTab = new workbench::TwinTab(workbench::kSfixTwin, sfixPage, near);
    sfixMcuCombo = sfixTab->form()->mcuBox();
    connectTwin(sfixTab, {&CentralWidget::changeSfixElements, &CentralWidget::OpenAreaK,
                          &CentralWidget::OpenSfixSsfi, &CentralWidget::OpenH5Modules_SFIx,
                          &CentralWidget::SfixFolder, &CentralWidget::GenerateSfixEnabled,
                          &CentralWidget::GenerateSfix, &CentralWidget::OpenSfixFile});
    connectList(sfixTab->form()->list(Row::Firmware), &CentralWidget::AddFirmIx,
                &CentralWidget::RemoveFirmIx, &CentralWidget::RemoveFirmIxEnabled,
                &CentralWidget::DisplayFirmIxInfo);
    connectList(sfixTab->form()->list(Row::External), &CentralWidget::AddVFirmEx,
                &CentralWidget::RemoveFirmEx, &CentralWidget::RemoveFirmExEnabled,
                &CentralWidget::DisplayFirmExInfo);
    connectList(sfixTab->form()->list(Row::Obk), &CentralWidget::AddRSSOBKeys_SFIx,
                &CentralWidget::RemoveRSSOBKeys_SFIx, &CentralWidget::RemoveRSSOBKeysEnabled_SFIx,
                &CentralWidget::DisplayOBKeyfileInfo_SFIx);
}

void CentralWidget::clearSfixForm()
{
    sfixTab->clear();
}

void CentralWidget::changeSfixElements(int index)
{
    sfixTab->changeMcu(index);
}

void CentralWidget::AddFirmIx()
{
    sfixTab->chooseFiles(Row::Firmware);
}

void CentralWidget::RemoveFirmIx()
{
    sfixTab->removeSelected(Row::Firmware);
}

void CentralWidget::RemoveFirmIxEnabled(const QItemSelection &selection)
{
    sfixTab->enableRemove(Row::Firmware, selection);
}

void CentralWidget::DisplayFirmIxInfo(const QItemSelection &selection)
{
    sfixTab->display(Row::Firmware, selection);
}

void CentralWidget::AddVFirmEx()
{
    sfixTab->chooseFiles(Row::External);
}

void CentralWidget::RemoveFirmEx()
{
    sfixTab->removeSelected(Row::External);
}

void CentralWidget::RemoveFirmExEnabled(const QItemSelection &selection)
{
    sfixTab->enableRemove(Row::External, selection);
}

void CentralWidget::DisplayFirmExInfo(const QItemSelection &selection)
{
    sfixTab->display(Row::External, selection);
}

void CentralWidget::AddRSSOBKeys_SFIx()
{
    sfixTab->chooseFiles(Row::Obk);
}

void CentralWidget::RemoveRSSOBKeys_SFIx()
{
    sfixTab->removeSelected(Row::Obk);
}

void CentralWidget::RemoveRSSOBKeysEnabled_SFIx(const QItemSelection &selection)
{
    sfixTab->enableRemove(Row::Obk, selection);
}

void CentralWidget::DisplayOBKeyfileInfo_SFIx(const QItemSelection &selection)
{
    sfixTab->display(Row::Obk, selection);
}

void CentralWidget::OpenAreaK()
{
    sfixTab->chooseOwnPath(Row::KeyArea);
}

void CentralWidget::OpenSfixSsfi()
{
    sfixTab->chooseOwnPath(Row::Ssfi);
}

void CentralWidget::OpenH5Modules_SFIx()
{
    sfixTab->chooseOwnPath(Row::Modules);
}

void CentralWidget::SfixFolder()
{
    sfixTab->chooseOutputFolder();
}

void CentralWidget::GenerateSfixEnabled()
{
    sfixTab->updateGenerate();
}

void CentralWidget::GenerateSfix()
{
    sfixTab->generate();
}

void CentralWidget::OpenSfixFile()
{
    if (sfixTab->chooseImage()) {
        parseSfiFile(QStringLiteral("sfix"), true);
    }
}
