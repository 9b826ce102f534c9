#include "workbench/tabs/ssp/SspTab.h"

#include "crypto/service/Crypto.h"
#include "files/FileManager.h"
#include "files/base/LittleEndian.h"
#include "files/base/SizeText.h"
#include "preparation/Preparation.h"
#include "workbench/forms/PackageForm.h"
#include "workbench/tabs/ssp/SspCheck.h"
#include "workbench/tabs/ssp/SspTabs.h"
#include "workbench/widgets/Boxes.h"
#include "workbench/widgets/FieldNames.h"
#include "workbench/widgets/FileChoice.h"
#include "workbench/widgets/LongWork.h"

#include <QFile>
#include <QFileInfo>

int sspDeviceIndex = 0;

namespace workbench
{

namespace
{

const QString kDevice = QStringLiteral("device");
const QString kUnlock = QStringLiteral("rmaUnlock");
const QString kRelock = QStringLiteral("rmaRelock");
const QString kSecrets = QStringLiteral("secrets");
const QString kKey = QStringLiteral("key");
const QString kOemKey = QStringLiteral("oemKey");
const QString kNonce = QStringLiteral("nonce");
const QString kOutput = QStringLiteral("output");

constexpr unsigned char kSecretsBytes = 148;
constexpr unsigned char kKeyBytes = 16;
constexpr unsigned char kNonceBytes = 16;
constexpr unsigned int kPayloadBytes = 152;

// The spelling of the last key is the one that all versions have.
const FormTab::SavedText kSaved[] = {{"rmaLock", kUnlock},
                                     {"rmaRelock", kRelock},
                                     {"blob file", kSecrets},
                                     {"Encryption key file", kKey},
                                     {"Encryption public key file", kOemKey},
                                     {"Nonce file", kNonce},
                                     {"ouput SFI file", kOutput}};

QString keyLabel(int device)
{
    return SspTab::tr(sspLook(device).keyLabel)
        .replace(QLatin1String("OEM"), QLatin1String("OE&M"));
}

QList<FormRow> rowsOf()
{
    const auto tr = [](const char *text) { return SspTab::tr(text); };
    FormRow device;
    device.name = kDevice;
    device.kind = RowKind::Choice;
    device.label = tr("De&vice :");
    device.choices =
        QStringList{QLatin1String(sspLook(kMp15).name), QLatin1String(sspLook(kMp13).name)};
    device.toolTip = tr("The device that the image is made for");
    device.width = 200;
    FormRow unlock;
    unlock.name = kUnlock;
    unlock.label = tr("Password : RMA &Unlock");
    FormRow relock;
    relock.name = kRelock;
    relock.label = tr("Password : RMA Re&lock");
    relock.toolTip = relock.hint = tr("RMA Password relock, hex value < 0x7FFF");
    FormRow key = inputRow(
        "key", tr("Encryption &key file"), tr("encryption key"), tr("Binary files (*.bin)"),
        tr("Select an encryption key file.\nA bin file with a size of 16 bytes"));
    key.buttons.append({QStringLiteral("generate"), tr("Generate"), {}});
    key.shared = SharedField::Key;
    FormRow nonce = inputRow("nonce", tr("&Nonce file"), tr("nonce"), tr("Binary files (*.bin)"),
                             tr("Select a nonce file.\nA bin file with a size of 16 bytes"));
    nonce.buttons.append({QStringLiteral("generate"), tr("Generate"), {}});
    nonce.shared = SharedField::Nonce;
    return {device,
            unlock,
            relock,
            inputRow("secrets", tr("&Secrets file"), tr("secrets file"), tr("Binary files (*.bin)"),
                     tr("Select a secrets file.\nbin file with a size of 148 bytes")),
            key,
            inputRow("oemKey", keyLabel(kMp15), tr("OEM key"), tr("Key files (*.pem *.bin)"),
                     tr(sspLook(kMp15).keyHint)),
            nonce,
            outputRow("output", tr("Ou&tput SSP file"), tr("output SSP file"),
                      QStringLiteral("out.ssp"), tr("Where the image goes.\nssp file"))};
}

}  // namespace

Tab *makeSspTab(const TabName &name, QWidget *page, FormContext &context)
{
    return new SspTab(name, page, context);
}

SspTab::SspTab(const TabName &name, QWidget *page, FormContext &context)
    : FormTab(name, page, context)
{
    form()->addRows(rowsOf());
    form()->addGenerate(tr("&Generate SSP"));
    hidePassword(form()->edit(kUnlock), tr("RMA Unlock"));
    hidePassword(form()->edit(kRelock), tr("RMA Relock"));
    m_panes.build(key(), page, form(),
                  {QStringLiteral("secretsInfo"), tr("Secrets file information"), emptyInput()},
                  {QStringLiteral("imageInfo"), tr("SSP information"), emptyInput()});
    connect(form()->choice(kDevice), qOverload<int>(&QComboBox::currentIndexChanged), this,
            &SspTab::changeDevice);
    whenPathSettles(kSecrets, [this](const QString &path) { displaySecrets(path); });
    connect(form()->generateButton(), &QPushButton::clicked, this, &SspTab::generate);
    changeDevice(sspDeviceIndex);
}

void SspTab::changeDevice(int index)
{
    sspDeviceIndex = index;
    if (index != kMp15 && index != kMp13) {
        return;
    }
    const SspLook &look = sspLook(index);
    {
        const QSignalBlocker blocker(form()->choice(kDevice));
        form()->choice(kDevice)->setCurrentIndex(index);
    }
    const auto setHint = [this](const QString &row, const char *hint) {
        form()->edit(row)->setPlaceholderText(tr(hint).replace('\n', ' '));
        form()->edit(row)->setToolTip(plainToolTip(tr(hint)));
    };
    if (auto *label = page()->findChild<QLabel *>(QStringLiteral("ssp_oemKey_label"))) {
        label->setText(keyLabel(index));
    }
    form()->edit(kOemKey)->setAccessibleName(tr(look.keyLabel));
    setHint(kOemKey, look.keyHint);
    setHint(kUnlock, look.unlockHint);
    form()->setRowVisible(kRelock, look.hasRelock);
}

void SspTab::press(const QString &row, const QString &role)
{
    if (role == QLatin1String("generate")) {
        row == kKey ? makeKey() : makeNonce();
    } else if (role == QLatin1String("open")) {
        // The nonce has another size than those of the other tabs, so nothing is shared from here.
        const QString path =
            chooseFile(context().boxParent, context().lastFolder, form()->row(row)->filter);
        if (!path.isEmpty()) {
            form()->choosePath(row, path);
        }
    } else {
        FormTab::press(row, role);
    }
}

void SspTab::makeKey()
{
    makeFile(kKey, "SSP key file must have the .bin extension",
             "SSP encryption key successfully created");
}

void SspTab::makeNonce()
{
    makeFile(kNonce, "SSP nonce file must have the .bin extension",
             "SSP encryption nonce successfully created");
}

void SspTab::makeFile(const QString &row, const char *refusal, const char *success)
{
    const QString path = form()->text(row);
    if (!path.endsWith(QLatin1String(".bin"))) {
        showBox(context().boxParent, BoxKind::Error, QLatin1String(refusal));
        return;
    }
    // The path is typed, and an old key would be lost.
    if (confirmOverwrite(context().boxParent, path) && Crypto().generateSspKey(path) == 0) {
        showBox(context().boxParent, BoxKind::Success, QLatin1String(success));
    }
}

void SspTab::displaySecrets(const QString &path)
{
    m_panes.resetInput();
    if (path.isEmpty()) {
        return;
    }
    const auto record = openPackageInput(context().fileManager, path);
    if (!record) {
        return;
    }
    FileData other;
    other.type = record->type;
    const FileData *firmware = asFirmware(record.get());
    m_panes.showInput(describeInput(path, firmware == nullptr ? other : *firmware));
    wipeSegments(record.get());
}

bool SspTab::passwordWord(std::uint32_t *out)
{
    RmaWord rma = checkRma(sspDeviceIndex, form()->text(kUnlock), form()->text(kRelock));
    if (!rma.refusal.isEmpty()) {
        showBox(context().boxParent, BoxKind::Error, rma.refusal);
        return false;
    }
    *out = rma.word;
    return rma.unlock.isEmpty() ||
           context().preparation.rmaPasswordAdjustment(rma.unlock, rma.relock, out);
}

bool SspTab::readPayload(std::uint32_t word, QByteArray &payload)
{
    auto record = openPackageInput(context().fileManager, form()->text(kSecrets));
    if (!record) {
        form()->holdGenerate(kSecrets);
        return false;
    }
    wipeSegments(record.get());
    KeyInput secrets;
    if (!secrets.read(context().boxParent, form()->text(kSecrets), kSecretsBytes)) {
        return false;
    }
    payload.reserve(static_cast<int>(kPayloadBytes));  // or growing would leave a copy behind
    files::appendU32le(payload, word);
    payload.append(secrets.bytes());
    return true;
}

void SspTab::generate()
{
    QWidget *parent = context().boxParent;
    if (!form()->text(kOutput).endsWith(QLatin1String(".ssp"))) {
        showBox(parent, BoxKind::Error, QStringLiteral("SSP file must have the .ssp extension"));
        return;
    }
    whileBusy(
        parent, [this] { make(); }, form()->text(kOutput));
}

void SspTab::make()
{
    QWidget *parent = context().boxParent;
    struct Secrets {
        std::uint32_t word = 0;
        QByteArray payload;
        ~Secrets()
        {
            files::wipe(&word, sizeof word);
            files::wipe(payload);
        }
    } secrets;
    if (!passwordWord(&secrets.word)) {
        return;
    }
    KeyInput key;
    KeyInput oemKey;
    KeyInput nonce;
    if (!readPayload(secrets.word, secrets.payload) ||
        !key.read(parent, form()->text(kKey), kKeyBytes) ||
        !oemKey.read(parent, form()->text(kOemKey), sspLook(sspDeviceIndex).oemBytes) ||
        !nonce.read(parent, form()->text(kNonce), kNonceBytes)) {
        return;
    }
    QByteArray oemPath = QFile::encodeName(form()->text(kOemKey));
    const QByteArray image = context().preparation.SSPPayloadPreparation(
        secrets.payload, key.bytes(), nonce.bytes(),
        reinterpret_cast<unsigned char *>(oemPath.data()), kPayloadBytes);
    if (image.isEmpty()) {
        showBox(parent, BoxKind::Error,
                QStringLiteral("Error occured when preparing an SSP image"));
        return;
    }
    if (write(image)) {
        showBox(parent, BoxKind::Success, QStringLiteral("SSP successfully created"));
    }
}

bool SspTab::write(const QByteArray &image)
{
    QWidget *parent = context().boxParent;
    const QString output = form()->text(kOutput);
    if (!confirmOverwrite(parent, output)) {
        return false;
    }
    if (!writePackage(parent, output, image, "Failure to create SSP file")) {
        return false;
    }
    QByteArray written;
    if (!readWholeFile(parent, output, written)) {
        showBox(parent, BoxKind::Error, QStringLiteral("Failure to open SSP file"));
        return false;
    }
    PaneContents contents = emptyInput();
    contents.overview.values =
        QStringList{QFileInfo(output).fileName(), QStringLiteral("SSP"),
                    files::sizeText(static_cast<std::uint64_t>(written.size()))};
    m_panes.showPackage(contents, output);
    return true;
}

void SspTab::clear()
{
    FormTab::clear();
    m_panes.reset();
}

void SspTab::clearPanes()
{
    m_panes.resetPackage();
}

void SspTab::save(SavedGroup &group) const
{
    saveTexts(group, kSaved);
}

void SspTab::restore(const SavedGroup &group)
{
    restoreTexts(group, kSaved);
}

void SspTab::restoreFiles(const SavedGroup &)
{
    if (QFileInfo(form()->text(kSecrets)).isFile()) {
        displaySecrets(form()->text(kSecrets));
    }
}

}  // namespace workbench
