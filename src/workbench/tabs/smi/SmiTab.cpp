#include "workbench/tabs/smi/SmiTab.h"

#include "crypto/service/RandomFiles.h"
#include "files/FileManager.h"
#include "files/base/SameFile.h"
#include "workbench/forms/PackageForm.h"
#include "workbench/tabs/smi/SmiSections.h"
#include "workbench/tabs/smi/SmiTabs.h"
#include "workbench/widgets/Boxes.h"
#include "workbench/widgets/LongWork.h"

#include <QFileDialog>
#include <QFileInfo>

#include <algorithm>
#include <cstdlib>

namespace workbench
{

namespace
{

const QString kElf = QStringLiteral("elf");
const QString kKey = QStringLiteral("key");
const QString kNonce = QStringLiteral("nonce");
const QString kVersion = QStringLiteral("securityVersion");
const QString kSection = QStringLiteral("section");
const QString kPlacement = QStringLiteral("placement");
const QString kHash = QStringLiteral("hash");
const QString kOutput = QStringLiteral("output");
const QString kClearElf = QStringLiteral("clearElf");

constexpr int kKeyBytes = 16;
constexpr int kNonceBytes = 12;
constexpr int kVersionBytes = 16;

const FormTab::SavedText kSaved[] = {{"ELF file", kElf},
                                     {"Encryption key file", kKey},
                                     {"Nonce file", kNonce},
                                     {"Security version file", kVersion}};

QList<FormRow> rowsOf()
{
    const auto tr = [](const char *text) { return SmiTab::tr(text); };
    const QString binary = tr("Binary files (*.bin)");
    const RowButton make{QStringLiteral("generate"), tr("Generate"), {}};
    FormRow key = inputRow("key", tr("Encryption &key file"), tr("encryption key"), binary,
                           tr("Select an encryption key file.\nbin file with a size of 16 bytes"));
    key.buttons.append(make);
    key.randomFile = RandomFile::Key;
    FormRow nonce = inputRow("nonce", tr("&Nonce file"), tr("nonce"), binary,
                             tr("Select a nonce file.\nbin file with a size of 12 bytes"));
    nonce.buttons.append(make);
    nonce.randomFile = RandomFile::Nonce;
    FormRow version =
        inputRow("securityVersion", tr("Security &version file"), tr("security version"), binary,
                 tr("Select a security version file.\nbin file with a size of 16 bytes"));
    version.buttons.append(make);
    FormRow section;
    section.name = kSection;
    section.kind = RowKind::Choice;
    section.label = tr("&Section to encrypt");
    section.noun = tr("a section");
    section.toolTip = tr("The section that becomes the module");
    FormRow placement;
    placement.name = kPlacement;
    placement.kind = RowKind::Note;
    FormRow hash;
    hash.name = kHash;
    hash.kind = RowKind::Check;
    hash.label = tr("Generate &Hash");
    hash.toolTip = tr("Adds a check block that shows damage without a key");
    return {inputRow("elf", tr("E&LF file"), tr("ELF file"),
                     tr("ELF files (*.elf *.axf *.o *.so *.out)"),
                     tr("Select an ELF file.\nelf, axf, o, so or out file")),
            key,
            nonce,
            version,
            section,
            placement,
            hash,
            outputRow("output", tr("O&utput SMI file"), tr("output SMI file"),
                      QStringLiteral("out.smi"), tr("Where the module goes.\nsmi file")),
            outputRow("clearElf", tr("Output &clear ELF file"), tr("output clear ELF file"),
                      QStringLiteral("clear.elf"),
                      tr("Where the ELF file without the module goes, to link against or to "
                         "flash.\nELF file"))};
}

}  // namespace

Tab *makeSmiTab(const TabName &name, QWidget *page, FormContext &context)
{
    return new SmiTab(name, page, context);
}

SmiTab::SmiTab(const TabName &name, QWidget *page, FormContext &context)
    : FormTab(name, page, context)
{
    form()->addRows(rowsOf());
    form()->addGenerate(tr("Generate S&MI"));
    m_panes.build(key(), page, form(),
                  {QStringLiteral("elfInfo"), tr("ELF information"), emptyElf()},
                  {QStringLiteral("imageInfo"), tr("SMI information"), emptyModule()});
    form()->setMissing([this] {
        QList<MissingInput> missing;
        for (const QString &row : {kElf, kKey, kNonce, kVersion, kSection, kOutput, kClearElf}) {
            // Sections come with the ELF file; without one nobody can choose any.
            const bool isMissing = row == kSection ? form()->choice(row)->currentIndex() < 0 &&
                                                         !form()->text(kElf).isEmpty()
                                                   : form()->text(row).isEmpty();
            if (isMissing) {
                missing.append({row, true});
            }
        }
        return missing;
    });
    connect(form(), &RowForm::edited, this, [this](const QString &row) {
        if (row == kSection) {
            showPlacement();
        }
    });
    whenPathSettles(kElf, [this](const QString &path) {
        if (path.isEmpty()) {
            forgetElf();
        } else {
            readElf();
        }
    });
    connect(form()->generateButton(), &QPushButton::clicked, this, &SmiTab::generate);
}

void SmiTab::press(const QString &row, const QString &role)
{
    if (row == kVersion && role == QLatin1String("generate")) {
        makeVersionFile();
    } else {
        FormTab::press(row, role);
    }
}

void SmiTab::makeVersionFile()
{
    const QString path =
        QFileDialog::getSaveFileName(context().boxParent, tr("Select file name"),
                                     context().lastOutputFolder, tr("bin files (*.bin)"));
    if (path.isEmpty()) {
        return;
    }
    if (const auto made = crypto::makeRandomFile(path, kVersionBytes); !made) {
        showBox(context().boxParent, BoxKind::Error,
                QStringLiteral("Security version file can't be made") + '\n' +
                    QString::fromStdString(made.error().text));
        return;
    }
    context().lastOutputFolder = QFileInfo(path).absolutePath();
    form()->choosePath(kVersion, path);
    showBox(context().boxParent, BoxKind::Success,
            QStringLiteral("Security version file successfully created"));
}

void SmiTab::forgetElf()
{
    m_elf.reset();
    const QSignalBlocker blocker(form()->choice(kSection));
    form()->choice(kSection)->clear();
    m_panes.resetInput();
    form()->setText(kPlacement, {});
    form()->updateGenerate();
}

void SmiTab::readElf()
{
    if (!whileBusy(context().boxParent, [this] { parseElf(); })) {
        forgetElf();  // or it would be another file than the field's
    }
}

void SmiTab::parseElf(bool isRequest)
{
    const QString chosen = form()->text(kSection);
    const QString path = form()->text(kElf);
    files::RecordOwner<FileType> record;
    if (!path.isEmpty()) {
        record =
            openPackageInput(context().fileManager, path);  // what is cancelled changes nothing
    }
    forgetElf();
    if (path.isEmpty()) {
        return;
    }
    const auto refuse = [this](const QString &text) {
        showBox(context().boxParent, BoxKind::Error, text);
        const QSignalBlocker blocker(form()->edit(kElf));
        form()->setText(kElf, {});
        form()->updateGenerate();
    };
    if (!record) {
        refuse(QStringLiteral("Failure to open ELF file"));
        return;
    }
    if (record->type != file_type::kElf) {
        refuse(QStringLiteral("SMI images can only be created from ELF format"));
        return;
    }
    m_elf.reset(static_cast<FileELF *>(record.release()));
    m_panes.showInput(describeElf(path, *m_elf));
    offerSections(chosen, isRequest);
}

void SmiTab::offerSections(const QString &chosen, bool isRequest)
{
    QComboBox *box = form()->choice(kSection);
    {
        const QSignalBlocker blocker(box);
        box->addItems(offeredSections(*m_elf));
        const int index = box->findText(chosen);
        if (index >= 0 || isRequest) {
            box->setCurrentIndex(index);
        }
    }
    showPlacement();
    form()->updateGenerate();
}

void SmiTab::showPlacement()
{
    const bool isChosen = m_elf && form()->choice(kSection)->currentIndex() >= 0;
    form()->setText(kPlacement,
                    isChosen ? placementText(*m_elf, form()->text(kSection)) : QString());
}

QStringList SmiTab::inputs() const
{
    return {form()->text(kElf), form()->text(kKey), form()->text(kNonce), form()->text(kVersion)};
}

bool SmiTab::mayStart() const
{
    const QString output = form()->text(kOutput);
    const QString clearElf = form()->text(kClearElf);
    QString refusal;
    if (!output.endsWith(QLatin1String(".smi"))) {
        refusal = QStringLiteral("SMI file must have the .smi extension");
    } else if (files::isSameFile(output, clearElf)) {
        refusal = QStringLiteral("The SMI file and the clear ELF file can't be the same file");
    } else if (const QString both = outputOverInput({output, clearElf}, inputs());
               !both.isEmpty()) {
        refusal = QStringLiteral("The output file %1 is one of the inputs")
                      .arg(QFileInfo(both).fileName());
    }
    if (!refusal.isEmpty()) {
        showBox(context().boxParent, BoxKind::Error, refusal);
    }
    return refusal.isEmpty();
}

void SmiTab::generate()
{
    if (!mayStart()) {
        return;
    }
    const QString section = form()->text(kSection);
    const auto make = [&] {
        parseElf(true);
        if (m_elf && build(section)) {
            showBox(context().boxParent, BoxKind::Information,
                    QStringLiteral("SMI successfully created"));
        }
    };
    whileBusy(context().boxParent, make, form()->text(kOutput));
}

bool SmiTab::build(const QString &section)
{
    QWidget *parent = context().boxParent;
    KeyInput key;
    KeyInput nonce;
    KeyInput version;
    if (!key.read(parent, form()->text(kKey), kKeyBytes) ||
        !nonce.read(parent, form()->text(kNonce), kNonceBytes) ||
        !version.read(parent, form()->text(kVersion), kVersionBytes)) {
        return false;
    }
    const std::string path = form()->text(kElf).toStdString();
    const std::string name = section.toStdString();
    unsigned char *raw = nullptr;
    const int length = context().fileManager.GetDataFromSection(path, name, &raw);
    const files::MallocArray<unsigned char> bytes(raw);
    const files::WipeAtEnd wiped(bytes.get(), static_cast<std::size_t>(std::max(length, 0)));
    if (length <= 0) {
        if (length < 0 || raw != nullptr) {
            showBox(parent, BoxKind::Error,
                    length < 0 ? QStringLiteral("Error while extracting section data")
                               : QStringLiteral("The section %1 has no bytes").arg(section));
        }
        return false;
    }
    Preparation &builder = context().preparation;
    const QList<QByteArray> modules = builder.SMIPreparation(
        path, m_elf.get(), bytes.get(), form()->check(kHash)->isChecked(),
        static_cast<unsigned>(length), name, key.bytes(), nonce.bytes(), version.bytes());
    if (modules.isEmpty()) {
        m_panes.package()->clearContents();
        showBox(parent, BoxKind::Error,
                QStringLiteral("Error occured when preparing an SMI image"));
        return false;
    }
    const PlacementFindings findings = findingsOf(builder);
    for (const QString &warning : findings.warnings) {
        showBox(parent, BoxKind::Warning, warning);
    }
    if (!findings.error.isEmpty()) {
        showBox(parent, BoxKind::Error, findings.error);
        return false;
    }
    if (!writeModules(modules) || !writeClearElf()) {
        return false;
    }
    const QString output = form()->text(kOutput);
    m_panes.showPackage(describeResult(output, builder.smiAddress, modules.size(), modules.last()),
                        output);
    return true;
}

bool SmiTab::writeModules(const QList<QByteArray> &modules)
{
    const QStringList names =
        moduleNames(form()->text(kOutput), modules.size(), inputs() << form()->text(kClearElf));
    for (int i = 0; i < modules.size(); ++i) {
        if (!confirmOverwrite(context().boxParent, names[i])) {
            return false;
        }
        if (!writePackage(context().boxParent, names[i], modules[i],
                          "Failure to create SMI file")) {
            return false;
        }
    }
    return true;
}

/// A refused clear ELF file doesn't take the module back.
bool SmiTab::writeClearElf()
{
    const QString path = form()->text(kClearElf);
    if (!confirmOverwrite(context().boxParent, path)) {
        showBox(context().boxParent, BoxKind::Warning,
                QStringLiteral("Clear ELF file not created"));
        return true;
    }
    return writePackage(context().boxParent, path, context().preparation.clearElf,
                        "Failure to create ELF file");
}

QString SmiTab::refuseModule(const QString &path) const
{
    const QString name = QFileInfo(path).fileName();
    const auto record = openPackageInput(context().fileManager, path);
    if (!record) {
        return QStringLiteral("Failure to open SMI file : ") + name;
    }
    return record->type == file_type::kSmi ? QString()
                                           : name + QStringLiteral(" : is not an SMI file");
}

bool SmiTab::showChecked(const QString &path, const FileType &record)
{
    if (record.type == file_type::kSmi) {
        m_panes.showPackage(describeSmi(path, static_cast<const FileData &>(record)), {});
    } else if (record.type == file_type::kSmu) {
        m_panes.showPackage(describeSmu(path, static_cast<const FileSMU &>(record)), {});
    } else {
        return false;
    }
    return true;
}

void SmiTab::clear()
{
    FormTab::clear();
    forgetElf();
    m_panes.resetPackage();
}

void SmiTab::clearPanes()
{
    m_panes.resetPackage();
}

void SmiTab::save(SavedGroup &group) const
{
    saveTexts(group, kSaved);
}

void SmiTab::restore(const SavedGroup &group)
{
    restoreTexts(group, kSaved);
}

void SmiTab::restoreFiles(const SavedGroup &)
{
    // One that has gone keeps its name; Generate says what is wrong.
    if (QFileInfo(form()->text(kElf)).isFile()) {
        readElf();
    }
}

}  // namespace workbench
