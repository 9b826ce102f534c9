#include "workbench/tabs/sign/SignTab.h"

#include "files/FileManager.h"
#include "files/base/PageBlock.h"
#include "files/base/SizeText.h"
#include "preparation/Preparation.h"
#include "preparation/sign/SignVerifier.h"
#include "report/DisplayMng.h"
#include "workbench/forms/PackageForm.h"
#include "workbench/tabs/sign/SignFooter.h"
#include "workbench/tabs/sign/SignTabs.h"
#include "workbench/widgets/Boxes.h"
#include "workbench/widgets/LongWork.h"
#include "workbench/widgets/NumberText.h"
#include "workbench/widgets/TypedSpinBox.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace workbench
{

namespace
{

const QString kInput = QStringLiteral("input");
const QString kKey = QStringLiteral("key");
const QString kVersion = QStringLiteral("version");
const QString kPhrase = QStringLiteral("passPhrase");
const QString kOutput = QStringLiteral("output");

constexpr int kMostVersion = 0xFF;

const FormTab::SavedText kSaved[] = {{"signed image file", kInput},
                                     {"EC private key file", kKey},
                                     {"pass info", kPhrase},
                                     {"output signed file", kOutput}};
const QString kSavedVersion = QStringLiteral("signed image version");

QList<FormRow> rowsOf()
{
    const auto tr = [](const char *text) { return SignTab::tr(text); };
    FormRow version;
    version.name = kVersion;
    version.kind = RowKind::Number;
    version.label = tr("Signed image &version");
    version.toolTip = tr("Image version between 0 and 255, decimal or 0x and hexadecimal");
    version.most = kMostVersion;
    version.takesAnyText = true;
    FormRow phrase;
    phrase.name = kPhrase;
    phrase.label = tr("PEM pass &phrase (Optional)");
    phrase.hint = tr("Not used in this version");
    phrase.toolTip = tr("Keys behind a pass phrase can't be used in this version");
    FormRow key = inputRow("key", tr("EC private &key file"), tr("EC private key"),
                           tr("PEM files (*.pem)"), tr("EC Private key file Path"));
    key.hint = tr("PEM file, P-256 or brainpoolP256t1, without a pass phrase");
    return {inputRow("input", tr("I&nput image file"), tr("input image"),
                     tr("Firmware files (*.bin *.hex *.srec *.s19 *.elf *.axf *.out)"),
                     tr("Select the image to sign.\nbin, hex, srec or elf file")),
            key, version, phrase,
            outputRow("output", tr("O&utput SIGN file"), tr("output file"),
                      QStringLiteral("signed.bin"), tr("The image with its signature.\nbin file"))};
}

PaneContents emptyImage()
{
    return {
        {Qt::Vertical, {QObject::tr("File name"), QObject::tr("Type"), QObject::tr("Size")}, {}},
        {QObject::tr("Signature"), {QObject::tr("Field"), QObject::tr("Value")}, {}}};
}

QString hexText(std::span<const std::uint8_t> bytes)
{
    const QByteArray raw(reinterpret_cast<const char *>(bytes.data()),
                         static_cast<int>(bytes.size()));
    return QString::fromLatin1(raw.toHex());
}

std::span<const std::uint8_t> viewOf(const QByteArray &bytes)
{
    return {reinterpret_cast<const std::uint8_t *>(bytes.constData()),
            static_cast<std::size_t>(bytes.size())};
}

std::vector<DetailRow> signatureRows(const preparation::SignTrailer &trailer)
{
    const auto curve = static_cast<crypto::Curve>(trailer.curve);
    const std::pair<QString, QString> fields[] = {
        {SignTab::tr("Image version"), QString::number(trailer.imageVersion)},
        {SignTab::tr("Curve"), QString::fromLatin1(crypto::curveName(curve))},
        {SignTab::tr("Key identifier"), hexText(trailer.keyIdentifier)},
        {SignTab::tr("Signed size"), files::sizeText(trailer.signedSize)},
        {SignTab::tr("Not signed"), files::sizeText(trailer.fileSize - trailer.signedSize)},
        {SignTab::tr("Signature"), SignTab::tr("verified")},
    };
    std::vector<DetailRow> rows;
    for (const auto &[name, value] : fields) {
        DetailRow &row = rows.emplace_back();
        row.cells = QStringList{name, value};
        row.why = value;  // the cell cuts a long identifier
    }
    return rows;
}

}  // namespace

Tab *makeSignTab(const TabName &name, QWidget *page, FormContext &context)
{
    return new SignTab(name, page, context);
}

SignTab::SignTab(const TabName &name, QWidget *page, FormContext &context)
    : FormTab(name, page, context)
{
    form()->addRows(rowsOf());
    form()->addGenerate(tr("&Generate SIGN"));
    hidePassword(form()->edit(kPhrase), tr("PEM pass phrase"));
    m_panes.build(key(), page, form(),
                  {QStringLiteral("firmwareInfo"), tr("Firmware information"), emptyInput()},
                  {QStringLiteral("imageInfo"), tr("SIGN information"), emptyImage()});
    whenPathSettles(kInput, [this](const QString &path) { displayInput(path); });
    connect(form()->generateButton(), &QPushButton::clicked, this, &SignTab::generate);
}

void SignTab::displayInput(const QString &path)
{
    m_panes.resetInput();
    if (path.isEmpty()) {
        return;
    }
    files::RecordOwner<FileType> record;
    whileBusy(context().boxParent, [&] { record = openPackageInput(context().fileManager, path); });
    if (const FileData *firmware = asFirmware(record.get())) {
        m_panes.showInput(describeInput(path, *firmware));
    } else if (record) {
        FileData other;
        other.type = record->type;
        m_panes.input()->show(describeInput(path, other));
    }
}

bool SignTab::checkVersion()
{
    const auto version = unsignedFromText(form()->number(kVersion)->text());
    if (!version || *version > kMostVersion) {
        showBox(context().boxParent, BoxKind::Error,
                version ? QStringLiteral("Image version must be between 0 and 255")
                        : QStringLiteral("Invalid Image version"));
        return false;
    }
    m_version = *version;
    return true;
}

void SignTab::generate()
{
    whileBusy(
        context().boxParent, [this] { make(); }, form()->text(kOutput));
}

void SignTab::make()
{
    QWidget *parent = context().boxParent;
    const auto record = openPackageInput(context().fileManager, form()->text(kInput));
    if (!record) {
        form()->holdGenerate(kInput);
        return;
    }
    QByteArray image;
    KeyInput key;
    if (!readWholeFile(parent, form()->text(kInput), image)) {
        showBox(parent, BoxKind::Error, QStringLiteral("Cannot open the input image file"));
        return;
    }
    if (!key.read(parent, form()->text(kKey), 0)) {
        showBox(parent, BoxKind::Error, QStringLiteral("Cannot open EC private key"));
        return;
    }
    if (!checkVersion()) {
        return;
    }
    // A record of another kind has no segments that could be signed.
    const FileData none;
    const FileData *input = asFirmware(record.get());
    if (!sign(input == nullptr ? none : *input, key.bytes())) {
        return;
    }
    showBox(parent, BoxKind::Success, QStringLiteral("signature successfully created"));
}

bool SignTab::sign(const FileData &input, const QByteArray &keyPem)
{
    QWidget *parent = context().boxParent;
    SignedImage image;
    SignedImage *imageAddress = &image;
    image.setSigSize(m_sizeKind);
    image.setSigImgVer(m_version);
    image.setSigImgFooter();
    FileData shared = input;  // its segments stay the record's
    FileData *inputAddress = &shared;
    FileData *cut = nullptr;
    const bool isCut = cutImage(&inputAddress, &imageAddress, &cut);
    const files::RecordOwner<FileData> owner(cut);
    if (!isCut) {
        showBox(parent, BoxKind::Error,
                QStringLiteral("failed to extract Image and footer for signature!"));
        return false;
    }
    // The pass phrase of the form goes nowhere: a key that needs one gets none.
    QByteArray keyPath = QFile::encodeName(form()->text(kKey));
    if (!context().preparation.signECDSA(reinterpret_cast<unsigned char *>(keyPath.data()),
                                         &imageAddress, true, nullptr)) {
        showBox(parent, BoxKind::Error, QStringLiteral("occured when signing the binary image"));
        return false;
    }
    const QString output = form()->text(kOutput);
    if (!confirmOverwrite(parent, output)) {
        return false;
    }
    const SegmentData &whole = input.segments.front();
    if (!image.createSignedImage(output, QByteArray(reinterpret_cast<const char *>(whole.data),
                                                    static_cast<int>(whole.size)))) {
        showBox(parent, BoxKind::Error,
                QStringLiteral("an error occured while preparing signed image\n"));
        return false;
    }
    return showResult(keyPem);
}

bool SignTab::cutImage(FileData **input, SignedImage **image, FileData **out)
{
    QWidget *parent = context().boxParent;
    const FileData &file = **input;
    const bool hasBytes = !file.segments.empty() && file.segments.front().size >= 2;
    const std::span<const std::uint8_t> bytes =
        hasBytes
            ? std::span<const std::uint8_t>(file.segments.front().data, file.segments.front().size)
            : std::span<const std::uint8_t>();
    const auto footer = findFooter(bytes);
    const auto size = footer ? footer->imageBytes() : std::nullopt;
    if (footer && !size) {
        DisplayMng::getInstance().logMessage(
            4, L"The footer stands at byte %u, 28 bytes must stand before it",
            static_cast<unsigned>(footer->at));
    }
    if (!size) {
        showBox(parent, BoxKind::CriticalInformation,
                QStringLiteral("Input image is of type : Unknown VD image\n"));
        return false;
    }
    if (footer->kind != FooterKind::First) {
        showBox(parent, BoxKind::Information,
                footer->kind == FooterKind::Limited
                    ? QStringLiteral(
                          "This signature will work only when updating from FUS v0.5.3 to v1.0.1\n")
                    : QStringLiteral("Input image is of type : other VD image\n"));
    }
    auto block = files::allocateBlock(*size + 1);
    if (!block) {
        showBox(parent, BoxKind::Error, QStringLiteral("Failed to allocate memory"));
        return false;
    }
    std::copy_n(bytes.begin(), *size, block.get());
    files::RecordOwner<FileData> record(new FileData);
    files::storeOnlySegment(*record, std::move(block), static_cast<std::uint32_t>(*size));
    *out = record.release();
    (*image)->setSigImgBin(out);
    return true;
}

/// Shows what stands in the file that was written.
bool SignTab::showResult(const QByteArray &keyPem)
{
    QWidget *parent = context().boxParent;
    const QString output = form()->text(kOutput);
    QByteArray written;
    const auto key = crypto::EcKey::readPrivate(viewOf(keyPem), nullptr);
    const bool isRead = readWholeFile(parent, output, written);
    const auto opened = preparation::openSigned(viewOf(written), key ? &*key : nullptr);
    if (!isRead || !opened || opened->verdict != preparation::SignVerdict::Authentic) {
        QFile::remove(output);
        showBox(parent, BoxKind::Error,
                QStringLiteral("Error occured when preparing an SIGN image"));
        return false;
    }
    PaneContents contents = emptyImage();
    contents.overview.values =
        QStringList{QFileInfo(output).fileName(), QStringLiteral("sign"),
                    files::sizeText(static_cast<std::uint64_t>(written.size()))};
    contents.details.rows = signatureRows(opened->trailer);
    m_panes.showPackage(contents, output);
    return true;
}

void SignTab::clear()
{
    FormTab::clear();
    static_cast<TypedSpinBox *>(form()->number(kVersion))->reset(0);
    m_panes.reset();
}

void SignTab::clearPanes()
{
    m_panes.resetPackage();
}

void SignTab::save(SavedGroup &group) const
{
    for (const auto &[key, row] : kSaved) {
        if (row == kOutput) {
            group.set(kSavedVersion, form()->number(kVersion)->text());
        }
        group.set(QLatin1String(key), form()->text(row));
    }
}

void SignTab::restore(const SavedGroup &group)
{
    restoreTexts(group, kSaved);
    const auto version = unsignedFromText(group.text(kSavedVersion));
    static_cast<TypedSpinBox *>(form()->number(kVersion))
        ->reset(version && *version <= kMostVersion ? static_cast<int>(*version) : 0);
}

void SignTab::restoreFiles(const SavedGroup &)
{
    if (QFileInfo(form()->text(kInput)).isFile()) {
        displayInput(form()->text(kInput));
    }
}

}  // namespace workbench
