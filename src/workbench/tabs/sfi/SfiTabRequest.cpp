// The request and the parse pane of the SFI and SFIx tabs: what runs when "Generate" or "Browse"
// is pressed.
#include "report/DisplayMng.h"
#include "workbench/forms/PackageForm.h"
#include "workbench/tabs/sfi/SfiInspection.h"
#include "workbench/tabs/sfi/SfiTab.h"
#include "workbench/widgets/Boxes.h"
#include "workbench/widgets/FileChoice.h"
#include "workbench/widgets/FileMap.h"
#include "workbench/widgets/LongWork.h"

#include <QFileInfo>

namespace workbench
{

void SfiTab::generate()
{
    const SfiFormValues values = this->values();
    if (!passes(checkStart(m_variant, values, countOf(sfi_row::kExternal) > 0))) {
        return;
    }
    whileBusy(
        context().boxParent, [&] { make(values); }, values.outputPath);
}

void SfiTab::make(const SfiFormValues &values)
{
    SfiInputs inputs;
    if (!reloadAll(inputs) ||
        !passes(readInputs(context().fileManager, m_variant, values, inputs)) ||
        !readExtras(values, inputs)) {
        return;
    }
    const QByteArray image =
        buildImage(context().preparation, device(), values, listInputs(), inputs);
    if (image.isEmpty()) {
        m_parse->info()->clearContents();
        showBox(context().boxParent, BoxKind::Error,
                QStringLiteral("Error occured when preparing an SFI image"));
        return;
    }
    if (!writeImage(values.outputPath, image)) {
        return;
    }
    parse(false);
    m_parse->showMade(values.outputPath);
    showBox(context().boxParent, BoxKind::Success, QLatin1String(m_variant.created));
}

bool SfiTab::reloadAll(SfiInputs &inputs)
{
    if (!reloadFirmware(m_variant.firmwareRow, m_variant.needsFirmware, inputs.firmware) ||
        !reloadFirmware(sfi_row::kExternal, true, inputs.external)) {
        return false;
    }
    if (device().provisioned && !reload(sfi_row::kObk, KeepAddress::No, true)) {
        return false;
    }
    return !device().combined || reload(sfi_row::kSmi, KeepAddress::InsteadOfZero, false);
}

bool SfiTab::reloadFirmware(const QString &row, bool disablesWhenEmpty,
                            files::RecordView<FileData> &merged)
{
    FileList *list = form()->list(row);
    return list == nullptr || (reload(row, KeepAddress::OfBinaries, disablesWhenEmpty) &&
                               passes(mergeList(context().fileManager, list->rows(), merged)));
}

bool SfiTab::reload(const QString &row, KeepAddress keep, bool disablesWhenEmpty)
{
    FileList *list = form()->list(row);
    if (list == nullptr) {
        return true;
    }
    const auto failed =
        reloadList(context().fileManager, list->rows(), keep, [this, row, list](int replaced) {
            if (replaced == list->selectedRow()) {
                showFile(row);
            }
        });
    if (!failed) {
        return true;
    }
    if (row == sfi_row::kSmi) {
        showBox(context().boxParent, BoxKind::Error,
                QStringLiteral("Failure to open SMI file : ") + list->rows().path(*failed));
    }
    dropFile(row, *failed);
    if (disablesWhenEmpty && list->rows().isEmpty()) {
        form()->holdGenerate(row);
    }
    return false;
}

bool SfiTab::readExtras(const SfiFormValues &values, SfiInputs &inputs)
{
    if (!device().provisioned) {
        return true;
    }
    if (form()->list(sfi_row::kObk)->rows().isEmpty() &&
        !askYesNo(
            context().boxParent, BoxKind::Warning, QStringLiteral("Warning"),
            QStringLiteral("OBKey field is empty !\nNo regression is possible if the SFI "
                           "file does not contain OBKey for DA.\nDo you want to contiue ?"))) {
        return false;
    }
    return passes(readProvisioning(context().fileManager, values, inputs));
}

bool SfiTab::passes(const std::optional<Refusal> &refusal)
{
    if (!refusal) {
        return true;
    }
    if (refusal->kind != Refusal::Kind::Silent) {
        const bool isWarning = refusal->kind == Refusal::Kind::Warning;
        showBox(context().boxParent, isWarning ? BoxKind::Warning : BoxKind::Error, refusal->text);
    }
    form()->setText(refusal->empties, {});
    return false;
}

ListInputs SfiTab::listInputs() const
{
    ListInputs lists;
    // Both questions are the SFI tab's, also for the other image; only its own image leaves the
    // files out for other devices.
    const SfiTab *sfi = other("sfi");
    lists.combined = sfi->device().combined;
    if (lists.combined || sfi != this) {
        lists.smiFiles = sfi->form()->list(sfi_row::kSmi)->rows().records();
    }
    lists.externalInfos = extBinInfos();
    if (device().provisioned) {
        const QList<FileData *> records = form()->list(sfi_row::kObk)->rows().records();
        for (FileData *record : records) {
            lists.obkFiles.append(static_cast<FileOBK *>(record));
        }
    }
    return lists;
}

bool SfiTab::writeImage(const QString &path, const QByteArray &image)
{
    if (!confirmOverwrite(context().boxParent, path)) {
        return false;
    }
    return writePackage(context().boxParent, path, image, m_variant.createFailed);
}

void SfiTab::chooseImage()
{
    const QString path = chooseFile(context().boxParent, context().lastFolder,
                                    tr("SFI files (*.sfi ; *.ssfi ; *.mcsv)"));
    if (!path.isEmpty()) {
        m_parse->field()->choose(path);
        parse(true);
    }
}

void SfiTab::parse(bool fromUser)
{
    const QString path = fromUser ? m_parse->field()->path() : form()->text(sfi_row::kOutput);
    if (!QFileInfo::exists(path)) {
        showBox(context().boxParent, BoxKind::Error,
                QStringLiteral("Failure to parse SFI/SFIx/SSFI/MCSV file, image doesn't exist."));
        return;
    }
    m_panes->setCurrentIndex(InfoTabs::kSecond);
    whileBusy(
        context().boxParent, [&] { parseFile(path); }, path);
}

void SfiTab::parseFile(const QString &path)
{
    if (path.endsWith(QLatin1String(".mcsv"), Qt::CaseInsensitive)) {
        parseModules(path);
        return;
    }
    if (SfiTab *sfix = other("sfix")) {
        sfix->dropFirmwareSelections();
    }
    const auto record = openPackageInput(context().fileManager, path);
    if (record == nullptr ||
        (record->type != file_type::kSfi && record->type != file_type::kSsfi)) {
        for (const char *key : {"sfi", "sfix"}) {
            other(key)->clearPanes();
        }
        DisplayMng::getInstance().logMessage(5, L"Cannot parse SFI/SFIx image");
        return;
    }
    const auto &image = static_cast<const FileSFI &>(*record);
    showImage(path, image, QString::number(image.version));
}

void SfiTab::parseModules(const QString &path)
{
    const auto record = openPackageInput(context().fileManager, path);
    if (record == nullptr || record->type != file_type::kMcsv) {
        m_parse->info()->reset();
        return;
    }
    m_parse->info()->show(describeModules(path, static_cast<std::uint64_t>(QFileInfo(path).size()),
                                          static_cast<const FileMCSV &>(*record)));
}

void SfiTab::showImage(const QString &path, const FileSFI &image, const QString &version)
{
    m_parse->info()->show(
        describeImage(path, static_cast<std::uint64_t>(QFileInfo(path).size()), image, version));
}

bool SfiTab::showChecked(const QString &path, const FileType &record)
{
    // The SFI tab shows the images of both.
    if (other("sfi") != this ||
        (record.type != file_type::kSfi && record.type != file_type::kSsfi)) {
        return false;
    }
    m_panes->setCurrentIndex(InfoTabs::kSecond);
    showImage(path, static_cast<const FileSFI &>(record), QStringLiteral("01"));
    return true;
}

void SfiTab::showFile(const QString &row)
{
    const FileList *list = form()->list(row);
    const int selected = list->selectedRow();
    if (selected < 0) {
        return;
    }
    m_shownRow = row;
    const FileRows &rows = list->rows();
    const QString path = rows.path(selected);
    const FileData &record = rows.record(selected);
    PaneContents contents = describeFirmware(path, record);
    if (row == sfi_row::kExternal) {
        const QVariant note = rows.note(selected);
        const auto region = note.value<ExtBinInfo>();
        contents = describeExternal(path, record, note.isValid() ? &region : nullptr);
    }
    contents.map = mapOfFiles(rows.paths(), rows.records(), selected);
    m_firmwareInfo->show(contents);
}

}  // namespace workbench
