// What the form is asked about the SMI, SSP, signed image and SFU tabs; the tabs themselves do it.
#include "workbench/frame/CentralWidget.h"
#include "workbench/tabs/sfi/SfiTab.h"
#include "workbench/tabs/sfu/SfuTab.h"
#include "workbench/tabs/sign/SignTab.h"
#include "workbench/tabs/smi/SmiTab.h"
#include "workbench/tabs/ssp/SspTab.h"
#include "workbench/widgets/Boxes.h"
#include "workbench/widgets/FileChoice.h"

namespace
{

template <typename Kind>
Kind *tabOf(const CentralWidget &form, const char *key)
{
    return static_cast<Kind *>(form.tab(QLatin1String(key)));
}

workbench::SmiTab *smi(const CentralWidget &form)
{
    return tabOf<workbench::SmiTab>(form, "smi");
}

workbench::SspTab *ssp(const CentralWidget &form)
{
    return tabOf<workbench::SspTab>(form, "ssp");
}

workbench::SignTab *sign(const CentralWidget &form)
{
    return tabOf<workbench::SignTab>(form, "sign");
}

workbench::SfuTab *sfu(const CentralWidget &form)
{
    return tabOf<workbench::SfuTab>(form, "sfu");
}

}  // namespace

void CentralWidget::ParseElf()
{
    smi(*this)->parseElf();
}

void CentralWidget::GenerateSmi()
{
    smi(*this)->generate();
}

void CentralWidget::GenerateSmiEnabled()
{
    smi(*this)->form()->updateGenerate();
}

void CentralWidget::ParseSmis()
{
    const QStringList paths = workbench::chooseFiles(this, lastFolder, tr("SMI files (*.smi)"));
    for (const QString &path : paths) {
        const QString refusal = smi(*this)->refuseModule(path);
        if (refusal.isEmpty()) {
            tabOf<workbench::SfiTab>(*this, "sfi")->addFiles(workbench::sfi_row::kSmi, {path});
        } else {
            workbench::showBox(this, workbench::BoxKind::Error, refusal);
        }
    }
}

void CentralWidget::GenerateSsp()
{
    ssp(*this)->generate();
}

void CentralWidget::GenerateSspEnabled()
{
    ssp(*this)->form()->updateGenerate();
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): its callers know it like this
void CentralWidget::DisplayBlobInfo(QString path)
{
    ssp(*this)->displaySecrets(path);
}

void CentralWidget::changeSspElements(int index)
{
    ssp(*this)->changeDevice(index);
}

void CentralWidget::generateKeySSP()
{
    ssp(*this)->makeKey();
}

void CentralWidget::generateNonceSSP()
{
    ssp(*this)->makeNonce();
}

void CentralWidget::GenerateSign()
{
    sign(*this)->generate();
}

void CentralWidget::GenerateSignEnabled()
{
    sign(*this)->form()->updateGenerate();
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): its callers know it like this
void CentralWidget::DisplaySignInfo(QString path)
{
    sign(*this)->displayInput(path);
}

bool CentralWidget::GetVDImgAndFooter(FileData **input, SignedImage **image, FileData **out)
{
    return sign(*this)->cutImage(input, image, out);
}

void CentralWidget::ParseSfuFirmware()
{
    sfu(*this)->parseFirmware();
}

void CentralWidget::GenerateSfu()
{
    sfu(*this)->generate();
}

void CentralWidget::GenerateSfuEnabled()
{
    sfu(*this)->form()->updateGenerate();
}
