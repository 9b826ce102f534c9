// The request and the parse pane of the SFI and SFIx tabs: what runs when "Generate" or "Browse"
// is pressed.
#include "files/base/SafeWriter.h"
#include "report/DisplayMng.h"
#include "workbench/tabs/sfi/SfiInspection.h"
#include "workbench/tabs/sfi/SfiMap.h"
#include "workbench/tabs/sfi/TwinTab.h"
#include "workbench/widgets/Boxes.h"
#include "workbench/widgets/BusyCursor.h"
#include "workbench/widgets/FileChoice.h"

#include <QFileInfo>

namespace workbench
{

void TwinTab::generate()
{
    const TwinValues values = m_form->values();
    const FileList *external = m_form->list(Row::External);
    if (!passes(checkStart(m_twin, values, external != nullptr && !external->rows().isEmpty()))) {
        return;
    }
    const BusyCursor busy;
    TwinInputs inputs;
    if (!reloadAll(inputs) || !passes(readInputs(context().fileManager, m_twin, values, inputs)) ||
        !readExtras(values, inputs)) {
        return;
    }
    const QByteArray image = buildImage(context().preparation, mcu(), values, listInputs(), inputs);
    if (image.isEmpty()) {
        m_form->parsePane()->info()->clearContents();
        showBox(context().boxParent, BoxKind::Error,
                QStringLiteral("Error occured when preparing an SFI image"));
        return;
    }
    if (!writeImage(values.outputPath, image)) {
        return;
    }
    parse(false);
    m_form->parsePane()->field()->setPath(values.outputPath);
    showBox(context().boxParent, BoxKind::Success, QLatin1String(m_twin.created));
}

bool TwinTab::reloadAll(TwinInputs &inputs)
{
    if (!reloadFirmware(Row::Firmware, m_twin.needsFirmware, inputs.firmware) ||
        !reloadFirmware(Row::External, true, inputs.external)) {
        return false;
    }
    if (mcu().provisioned && !reload(Row::Obk, KeepAddress::No, true)) {
        return false;
    }
    return !mcu().combined || reload(Row::Smi, KeepAddress::InsteadOfZero, false);
}

bool TwinTab::reloadFirmware(Row row, bool disablesWhenEmpty, files::RecordView<FileData> &merged)
{
    FileList *list = m_form->list(row);
    return list == nullptr || (reload(row, KeepAddress::OfBinaries, disablesWhenEmpty) &&
                               passes(mergeRows(context().fileManager, list->rows(), merged)));
}

bool TwinTab::reload(Row row, KeepAddress keep, bool disablesWhenEmpty)
{
    FileList *list = m_form->list(row);
    if (list == nullptr) {
        return true;
    }
    const auto failed =
        reloadRows(context().fileManager, list->rows(), keep, [this, row, list](int replaced) {
            if (replaced == list->selectedRow()) {
                showFile(row);
            }
        });
    if (!failed) {
        return true;
    }
    if (row == Row::Smi) {
        showBox(context().boxParent, BoxKind::Error,
                QStringLiteral("Failure to open SMI file : ") + list->rows().path(*failed));
    }
    dropFile(row, *failed);
    if (disablesWhenEmpty && list->rows().isEmpty()) {
        m_form->generateButton()->setEnabled(false);
    }
    return false;
}

bool TwinTab::readExtras(const TwinValues &values, TwinInputs &inputs)
{
    if (!mcu().provisioned) {
        return true;
    }
    if (m_form->list(Row::Obk)->rows().isEmpty() &&
        !askYesNo(
            context().boxParent, BoxKind::Warning, QStringLiteral("Warning"),
            QStringLiteral("OBKey field is empty !\nNo regression is possible if the SFI "
                           "file does not contain OBKey for DA.\nDo you want to contiue ?"))) {
        return false;
    }
    return passes(readProvisioning(context().fileManager, values, inputs));
}

bool TwinTab::passes(const std::optional<Refusal> &refusal)
{
    if (!refusal) {
        return true;
    }
    if (refusal->kind != Refusal::Kind::Silent) {
        const bool isWarning = refusal->kind == Refusal::Kind::Warning;
        showBox(context().boxParent, isWarning ? BoxKind::Warning : BoxKind::Error, refusal->text);
    }
    if (refusal->empties) {
        m_form->field(*refusal->empties)->edit()->clear();
    }
    return false;
}

ListInputs TwinTab::listInputs() const
{
    ListInputs lists;
    // Both questions are the SFI tab's, also for the other image; only its own image leaves the
    // files out for other devices.
    const TwinTab *sfi = twin("sfi");
    lists.combined = sfi->mcu().combined;
    if (lists.combined || sfi != this) {
        lists.smiFiles = sfi->m_form->list(Row::Smi)->rows().records();
    }
    lists.externalInfos = extBinInfos;
    if (mcu().provisioned) {
        const QList<FileData *> records = m_form->list(Row::Obk)->rows().records();
        for (FileData *record : records) {
            lists.obkFiles.append(static_cast<FileOBK *>(record));
        }
    }
    return lists;
}

bool TwinTab::writeImage(const QString &path, const QByteArray &image)
{
    if (!confirmOverwrite(context().boxParent, path)) {
        return false;
    }
    const auto *bytes = reinterpret_cast<const std::uint8_t *>(image.constData());
    if (!files::writeWhole(path, {bytes, static_cast<std::size_t>(image.size())})) {
        showBox(context().boxParent, BoxKind::Error, QLatin1String(m_twin.createFailed));
        return false;
    }
    return true;
}

void TwinTab::chooseImage()
{
    const QString path = chooseFile(context().boxParent, context().lastFolder,
                                    QStringLiteral("SFI files (*.sfi ; *.ssfi ; *.mcsv)"));
    if (!path.isEmpty()) {
        m_form->parsePane()->field()->setPath(path);
        parse(true);
    }
}

void TwinTab::parse(bool fromUser)
{
    const QString path =
        fromUser ? m_form->parsePane()->field()->path() : m_form->field(Row::Output)->path();
    if (!QFileInfo::exists(path)) {
        showBox(context().boxParent, BoxKind::Error,
                QStringLiteral("Failure to parse SFI/SFIx/SSFI/MCSV file, image doesn't exist."));
        return;
    }
    const BusyCursor busy;
    m_form->showImagePane();
    if (path.endsWith(QLatin1String(".mcsv"), Qt::CaseInsensitive)) {
        parseModules(path);
        return;
    }
    if (TwinTab *sfix = twin("sfix")) {
        sfix->dropFirmwareSelections();
    }
    const auto record = openRecord(context().fileManager, path);
    if (record == nullptr ||
        (record->type != file_type::kSfi && record->type != file_type::kSsfi)) {
        for (const char *key : {"sfi", "sfix"}) {
            twin(key)->clearPanes();
        }
        DisplayMng::getInstance().logMessage(5, L"Cannot parse SFI/SFIx image");
        return;
    }
    const auto &image = static_cast<const FileSFI &>(*record);
    showImage(path, image, QString::number(image.version));
}

void TwinTab::parseModules(const QString &path)
{
    const auto record = openRecord(context().fileManager, path);
    if (record == nullptr || record->type != file_type::kMcsv) {
        m_form->parsePane()->info()->reset();
        return;
    }
    m_form->parsePane()->info()->show(
        describeModules(path, static_cast<std::uint64_t>(QFileInfo(path).size()),
                        static_cast<const FileMCSV &>(*record)));
}

void TwinTab::showImage(const QString &path, const FileSFI &image, const QString &version)
{
    m_form->parsePane()->info()->show(
        describeImage(path, static_cast<std::uint64_t>(QFileInfo(path).size()), image, version));
}

bool TwinTab::showChecked(const QString &path, const FileType &record)
{
    // The SFI tab shows the images of both.
    if (twin("sfi") != this ||
        (record.type != file_type::kSfi && record.type != file_type::kSsfi)) {
        return false;
    }
    m_form->showImagePane();
    showImage(path, static_cast<const FileSFI &>(record), QStringLiteral("01"));
    return true;
}

void TwinTab::showFile(Row row)
{
    const FileList *list = m_form->list(row);
    const int selected = list->selectedRow();
    if (selected < 0) {
        return;
    }
    m_shownRow = row;
    const FileRows &rows = list->rows();
    const QString path = rows.path(selected);
    const FileData &record = rows.record(selected);
    PaneContents contents = describeFirmware(path, record);
    if (row == Row::External) {
        // The two lists may be out of step, so a file may have no entry.
        const ExtBinInfo *info =
            selected < extBinInfos.size() ? &extBinInfos.at(selected) : nullptr;
        contents = describeExternal(path, record, info);
    }
    contents.map = mapOfFiles(rows.paths(), rows.records(), selected);
    m_form->firmwareInfo()->show(contents);
}

}  // namespace workbench
