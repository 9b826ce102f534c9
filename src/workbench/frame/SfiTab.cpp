#include "crypto/service/Crypto.h"
#include "workbench/frame/CentralWidget.h"
#include "workbench/tabs/sfi/TwinTab.h"
#include "workbench/widgets/Boxes.h"
#include "workbench/widgets/FileChoice.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>

using workbench::Row;

namespace
{

constexpr int kKeyBytes = 16;
constexpr int kNonceBytes = 12;

}  // namespace

void CentralWidget::InitSfiTab()
{
    workbench::TwinSurroundings near = twinSurroundings();
    near.isCombined = [this] { return sfiTab->mcu().combined; };
    near.smiFiles = [this] {
        return sfiTab->mcu().combined ? sfiTab->form()->list(Row::Smi)->rows().records()
                                      : QList<FileData *>();
    };
    sfiTab = new workbench::TwinTab(workbench::kSfiTwin, sfiPage, near);
    sfiMcuCombo = sfiTab->form()->mcuBox();
    connectTwin(sfiTab, {&CentralWidget::changeSfiElements, &CentralWidget::OpenAreaK_SFI,
                         &CentralWidget::OpenSfiSsfi, &CentralWidget::OpenH5Modules,
                         &CentralWidget::SfiFolder, &CentralWidget::GenerateSfiEnabled,
                         &CentralWidget::GenerateSfi, &CentralWidget::OpenSfiFile});
    connectList(sfiTab->form()->list(Row::Firmware), &CentralWidget::AddFirmwares,
                &CentralWidget::RemoveFirmware, &CentralWidget::RemoveFirmwareEnabled,
                &CentralWidget::DisplayFirInfo);
    connectList(sfiTab->form()->list(Row::Smi), &CentralWidget::AddSmis, &CentralWidget::RemoveSmi,
                &CentralWidget::RemoveSmiEnabled, &CentralWidget::DisplaySmiInfo);
    connectList(sfiTab->form()->list(Row::Obk), &CentralWidget::AddRSSOBKeys,
                &CentralWidget::RemoveRSSOBKeys, &CentralWidget::RemoveRSSOBKeysEnabled,
                &CentralWidget::DisplayOBKeyfileInfo);
}

workbench::TwinSurroundings CentralWidget::twinSurroundings()
{
    workbench::TwinSurroundings near;
    near.form = this;
    near.fileManager = &fileManager;
    near.preparation = &preparation;
    near.lastFolder = &lastFolder;
    near.lastOutputFolder = &lastOutputFolder;
    near.imageIsRead = [this] {
        if (sfixTab != nullptr) {
            sfixTab->dropFirmwareSelections();
        }
    };
    near.clearImagePanes = [this] { clearParsePanes(); };
    return near;
}

void CentralWidget::connectTwin(workbench::TwinTab *tab, const TwinSlots &own)
{
    const workbench::TwinForm *form = tab->form();
    const auto onButton = [this, form](Row row, const char *role, Slot slot) {
        connect(form->field(row)->button(QLatin1String(role)), &QPushButton::clicked, this, slot);
    };
    onButton(Row::Key, "open", &CentralWidget::OpenSfiKey);
    onButton(Row::Key, "generate", &CentralWidget::GenerateEncryptionKey);
    onButton(Row::Nonce, "open", &CentralWidget::OpenSfiNonce);
    onButton(Row::Nonce, "generate", &CentralWidget::GenerateNonceKey);
    onButton(Row::OptionBytes, "open", &CentralWidget::OpenOb);
    onButton(Row::KeyArea, "open", own.openKeyArea);
    onButton(Row::Ssfi, "open", own.openSsfi);
    onButton(Row::Modules, "open", own.openModules);
    onButton(Row::Output, "folder", own.folder);
    for (const Row row : {Row::Key, Row::Nonce, Row::OptionBytes, Row::Output}) {
        connect(form->field(row), &workbench::FileField::pathChanged, this, own.generateEnabled);
    }
    connect(form->mcuBox(), qOverload<int>(&QComboBox::currentIndexChanged), this, own.changeMcu);
    connect(form->generateButton(), &QPushButton::clicked, this, own.generate);
    connect(form->parsePane(), &workbench::ParsePane::browseRequested, this, own.openImage);
}

void CentralWidget::connectList(workbench::FileList *list, Slot add, Slot remove,
                                SelectionSlot removeEnabled, SelectionSlot display)
{
    connect(list, &workbench::FileList::addRequested, this, add);
    connect(list, &workbench::FileList::removeRequested, this, remove);
    connect(list, &workbench::FileList::selectionChanged, this, removeEnabled);
    connect(list, &workbench::FileList::selectionChanged, this, display);
}

void CentralWidget::clearSfiForm()
{
    sfiTab->clear();
}

void CentralWidget::changeSfiElements(int index)
{
    sfiTab->changeMcu(index);
}

void CentralWidget::AddFirmwares()
{
    sfiTab->chooseFiles(Row::Firmware);
}

void CentralWidget::RemoveFirmware()
{
    sfiTab->removeSelected(Row::Firmware);
}

void CentralWidget::RemoveFirmwareEnabled(const QItemSelection &selection)
{
    sfiTab->enableRemove(Row::Firmware, selection);
}

void CentralWidget::DisplayFirInfo(const QItemSelection &selection)
{
    sfiTab->display(Row::Firmware, selection);
}

void CentralWidget::AddRSSOBKeys()
{
    sfiTab->chooseFiles(Row::Obk);
}

void CentralWidget::RemoveRSSOBKeys()
{
    sfiTab->removeSelected(Row::Obk);
}

void CentralWidget::RemoveRSSOBKeysEnabled(const QItemSelection &selection)
{
    sfiTab->enableRemove(Row::Obk, selection);
}

void CentralWidget::DisplayOBKeyfileInfo(const QItemSelection &selection)
{
    sfiTab->display(Row::Obk, selection);
}

void CentralWidget::AddSmis()
{
    sfiTab->chooseFiles(Row::Smi);
}

void CentralWidget::RemoveSmi()
{
    sfiTab->removeSelected(Row::Smi);
}

void CentralWidget::RemoveSmiEnabled(const QItemSelection &selection)
{
    sfiTab->enableRemove(Row::Smi, selection);
}

void CentralWidget::DisplaySmiInfo(const QItemSelection &selection)
{
    sfiTab->display(Row::Smi, selection);
}

void CentralWidget::OpenAreaK_SFI()
{
    sfiTab->chooseOwnPath(Row::KeyArea);
}

void CentralWidget::OpenSfiSsfi()
{
    sfiTab->chooseOwnPath(Row::Ssfi);
}

void CentralWidget::OpenH5Modules()
{
    sfiTab->chooseOwnPath(Row::Modules);
}

void CentralWidget::SfiFolder()
{
    sfiTab->chooseOutputFolder();
}

void CentralWidget::GenerateSfiEnabled()
{
    sfiTab->updateGenerate();
}

void CentralWidget::GenerateSfi()
{
    sfiTab->generate();
}

void CentralWidget::OpenSfiFile()
{
    if (sfiTab->chooseImage()) {
        parseSfiFile(QStringLiteral("sfi"), true);
    }
}

void CentralWidget::parseSfiFile(const QString &kind, bool fromUser)
{
    const bool isSfix = kind.compare(QLatin1String("sfix"), Qt::CaseInsensitive) == 0;
    (isSfix ? sfixTab : sfiTab)->parse(fromUser);
}

void CentralWidget::OpenSfiKey()
{
    fillFields("key", workbench::chooseFile(this, lastFolder, tr("Binary files (*.bin)")));
}

void CentralWidget::OpenSfiNonce()
{
    fillFields("nonce", workbench::chooseFile(this, lastFolder, tr("Binary files (*.bin)")));
}

void CentralWidget::OpenOb()
{
    fillFields("optionBytes", workbench::chooseFile(this, lastFolder, tr("Option bytes (*.csv)")));
}

void CentralWidget::GenerateEncryptionKey()
{
    generateRandomFile("key", kKeyBytes, tr("Encrytpion Key file successfully created"),
                       tr("Encrytpion Key File Generation Failed !!"));
}

void CentralWidget::GenerateNonceKey()
{
    generateRandomFile("nonce", kNonceBytes, tr("Nonce file successfully created"),
                       tr("Nonce File Generation Failed !!"));
}

void CentralWidget::fillFields(const char *row, const QString &path)
{
    if (path.isEmpty()) {
        return;
    }
    for (const char *tab : {"sfi", "sfix", "hsm", "ssp"}) {
        const QString name =
            QStringLiteral("%1_%2_edit").arg(QLatin1String(tab), QLatin1String(row));
        if (auto *edit = findChild<QLineEdit *>(name)) {
            edit->setText(path);
        }
    }
}

void CentralWidget::generateRandomFile(const char *row, int bytes, const QString &success,
                                       const QString &failure)
{
    const QString path = QFileDialog::getSaveFileName(this, tr("Select file name"),
                                                      lastOutputFolder, tr("bin files (*.bin)"));
    if (path.isEmpty()) {
        return;
    }
    if (Crypto().generateEncryptionandNonce(path, bytes) != 0) {
        workbench::showBox(this, workbench::BoxKind::Error, failure);
        return;
    }
    lastOutputFolder = QFileInfo(path).absolutePath();
    fillFields(row, path);
    workbench::showBox(this, workbench::BoxKind::Success, success);
}
