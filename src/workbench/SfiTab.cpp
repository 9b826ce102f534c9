#include "crypto/Crypto.h"
#include "workbench/CentralWidget.h"
#include "workbench/FileChoice.h"
#include "workbench/TwinTab.h"
#include "workbench/widgets/Boxes.h"

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
    connectTwin(sfiTab);
    connect(sfiTab->form()->generateButton(), &QPushButton::clicked, this,
            &CentralWidget::GenerateSfi);
    connect(sfiTab->form()->parsePane(), &workbench::ParsePane::browseRequested, this,
            &CentralWidget::OpenSfiFile);
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

void CentralWidget::connectTwin(workbench::TwinTab *tab)
{
    const auto onButton = [this, tab](Row row, const char *role, void (CentralWidget::*slot)()) {
        connect(tab->form()->field(row)->button(QLatin1String(role)), &QPushButton::clicked, this,
                slot);
    };
    onButton(Row::Key, "open", &CentralWidget::OpenSfiKey);
    onButton(Row::Key, "generate", &CentralWidget::GenerateEncryptionKey);
    onButton(Row::Nonce, "open", &CentralWidget::OpenSfiNonce);
    onButton(Row::Nonce, "generate", &CentralWidget::GenerateNonceKey);
    onButton(Row::OptionBytes, "open", &CentralWidget::OpenOb);
}

void CentralWidget::clearSfiForm()
{
    sfiTab->clear();
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
