#include "workbench/CentralWidget.h"
#include "workbench/TwinTab.h"

using workbench::Row;

void CentralWidget::InitSfixTab()
{
    workbench::TwinSurroundings near = twinSurroundings();
    // Both questions are the SFI tab's, also for this image.
    near.isCombined = [this] { return sfiTab->mcu().combined; };
    near.smiFiles = [this] { return sfiTab->form()->list(Row::Smi)->rows().records(); };
    sfixTab = new workbench::TwinTab(workbench::kSfixTwin, sfixPage, near);
    sfixMcuCombo = sfixTab->form()->mcuBox();
    connectTwin(sfixTab);
    connect(sfixTab->form()->generateButton(), &QPushButton::clicked, this,
            &CentralWidget::GenerateSfix);
    connect(sfixTab->form()->parsePane(), &workbench::ParsePane::browseRequested, this,
            &CentralWidget::OpenSfixFile);
}

void CentralWidget::clearSfixForm()
{
    sfixTab->clear();
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
