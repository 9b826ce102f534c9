#include "workbench/tabs/sfi/SfiTab.h"

#include "workbench/forms/PackageForm.h"
#include "workbench/tabs/sfi/ExtFirAddInfoDialog.h"
#include "workbench/tabs/sfi/SfiInspection.h"
#include "workbench/widgets/AddressDialog.h"
#include "workbench/widgets/Boxes.h"
#include "workbench/widgets/FileChoice.h"
#include "workbench/widgets/LongWork.h"
#include "workbench/widgets/SeriesChoice.h"

#include <QFileInfo>

#include <algorithm>

namespace workbench
{

namespace
{

const QLatin1String kListRows[] = {sfi_row::kFirmware, sfi_row::kInternal, sfi_row::kExternal,
                                   sfi_row::kSmi, sfi_row::kObk};

bool accepts(const QString &row, std::uint32_t type)
{
    if (row == sfi_row::kSmi) {
        return type == file_type::kSmi;
    }
    if (row == sfi_row::kObk) {
        return type == file_type::kObk;
    }
    return type == file_type::kBinary || type == file_type::kIntelHex ||
           type == file_type::kSRecord || type == file_type::kElf;
}

/// "-1" leaves the start address to the user.
QString startTextOf(const FileData &record)
{
    return record.type == file_type::kBinary
               ? QStringLiteral("-1")
               : QStringLiteral("0x") + QString::number(record.segments.front().address, 16);
}

ExtBinInfo toldBy(const ExtFirAddInfoDialog &dialog)
{
    return {dialog.startAddress(), dialog.regionNumber(), dialog.regionMode(), dialog.keyAddress()};
}

}  // namespace

struct SfiTab::Series {
    int left = 0;  ///< files that follow
    bool cancelled = false;
    std::optional<ExtBinInfo> same;  ///< for the raw binaries that follow; the regions' or just
                                     ///< the start address

    /// Takes over what the user chose for the files that follow.
    void note(const SeriesChoice *choice, bool accepted, const ExtBinInfo &told)
    {
        cancelled = choice != nullptr && choice->cancelsAll();
        if (accepted && choice != nullptr && choice->isSameForAll()) {
            same = told;
        }
    }
};

SfiTab::SfiTab(const SfiVariant &variant, const TabName &name, QWidget *page, FormContext &context)
    : FormTab(name, page, context), m_variant(variant)
{
    form()->addRows(variant.rows());
    form()->addGenerate(tr(variant.generateCaption));
    buildPanes();
    layFormPage(page, form(), m_panes);
    applyDevice();
    form()->setMissing([this] {
        return missingInputs(m_variant, values(),
                             {countOf(m_variant.firmwareRow), countOf(sfi_row::kExternal)});
    });
    connectLists();
    connect(form()->choice(sfi_row::kDevice), qOverload<int>(&QComboBox::currentIndexChanged), this,
            &SfiTab::changeDevice);
    connect(form(), &RowForm::edited, this, [this](const QString &row) {
        SfiTab *sfix = other("sfix");
        if (sfix != nullptr && (row == sfi_row::kDevice || row == sfi_row::kSmi)) {
            sfix->countSmiFiles();
        }
    });
    connect(form()->generateButton(), &QPushButton::clicked, this, &SfiTab::generate);
    connect(m_parse, &ParsePane::browseRequested, this, &SfiTab::chooseImage);
}

void SfiTab::buildPanes()
{
    const QString firmwareTitle = tr("Firmware information");
    const QString imageTitle = tr(m_variant.imageTitle);
    m_panes = new InfoTabs(key() + QStringLiteral("_info_tabs"), form()->parentWidget());
    m_firmwareInfo = new InfoPane(key() + QStringLiteral("_firmwareInfo"), firmwareTitle,
                                  emptyFirmwarePane(), m_panes->room());
    m_parse = new ParsePane(key(), imageTitle, emptyImagePane(), m_panes->room());
    m_parse->field()->edit()->setPlaceholderText(tr("Image or modules list"));
    m_parse->field()->edit()->setToolTip(
        tr("An image or a modules list to look into.\nsfi, sfix, ssfi or mcsv file"));
    m_panes->addPanes(m_firmwareInfo, firmwareTitle, m_parse, imageTitle);
}

void SfiTab::connectLists()
{
    for (const QString row : kListRows) {
        FileList *list = form()->list(row);
        if (list == nullptr) {
            continue;
        }
        connect(list, &FileList::filesDropped, this,
                [this, row](const QStringList &paths) { addFiles(row, paths); });
        connect(list, &FileList::addRequested, this, [this, row] { chooseFiles(row); });
        connect(list, &FileList::removeRequested, this, [this, row] { removeSelected(row); });
        connect(list, &FileList::selectionChanged, this,
                [this, row](const QItemSelection &selection) {
                    enableRemove(row, selection);
                    display(row, selection);
                });
        list->setEditable([list](int at) {
            const FileData &record = list->rows().record(at);
            const bool isAsked =
                record.type == file_type::kBinary || list->rows().note(at).isValid();
            return isAsked && !record.segments.empty();
        });
        connect(list, &FileList::editRequested, this,
                [this, row](int at) { editAddress(row, at); });
        // A click shows the file again when another list's file was shown meanwhile.
        connect(list->view(), &QListView::clicked, this, [this, row] { pickFile(row); });
    }
    connect(m_firmwareInfo->map(), &MemoryMap::groupChosen, this, &SfiTab::pickSegment);
}

SfiTab *SfiTab::other(const char *key) const
{
    return qobject_cast<SfiTab *>(context().tab(QLatin1String(key)));
}

int SfiTab::countOf(const QString &row) const
{
    const FileList *list = form()->list(row);
    return list == nullptr ? 0 : list->rows().count();
}

SfiFormValues SfiTab::values() const
{
    SfiFormValues values;
    values.deviceIndex = form()->choice(sfi_row::kDevice)->currentIndex();
    values.keyPath = form()->text(sfi_row::kKey);
    values.noncePath = form()->text(sfi_row::kNonce);
    values.optionBytesPath = form()->text(sfi_row::kOptionBytes);
    values.keyAreaPath = form()->text(sfi_row::kKeyArea);
    values.ssfiPath = form()->text(sfi_row::kSsfi);
    values.modulesPath = form()->text(sfi_row::kModules);
    values.ramText = form()->text(sfi_row::kRam);
    values.tokenText = form()->text(sfi_row::kToken);
    values.outputPath = form()->text(sfi_row::kOutput);
    values.imageVersion = static_cast<std::uint8_t>(form()->number(sfi_row::kVersion)->value());
    values.hash = form()->check(sfi_row::kHash)->isChecked();
    return values;
}

const SfiDevice &SfiTab::device() const
{
    const int index = form()->choice(sfi_row::kDevice)->currentIndex();
    return m_variant.devices[static_cast<std::size_t>(index)];
}

void SfiTab::changeDevice(int index)
{
    QComboBox *box = form()->choice(sfi_row::kDevice);
    if (index < 0 || index >= box->count()) {
        return;
    }
    if (box->currentIndex() != index) {
        box->setCurrentIndex(index);  // and comes here again
        return;
    }
    applyDevice();
}

/// Hidden fields keep their text, but for the one that the device's entry says to empty.
void SfiTab::applyDevice()
{
    const SfiDevice &entry = device();
    RowForm *rows = form();
    rows->setRowEnabled(sfi_row::kRam, entry.ramEnabled, tr("This device takes no RAM size"));
    rows->setText(sfi_row::kRam, QLatin1String(entry.ramText));
    rows->setRowEnabled(sfi_row::kToken, entry.token == TokenField::Enabled,
                        tr("This device takes no continuation token"));
    if (entry.token == TokenField::DisabledAndEmptied) {
        rows->setText(sfi_row::kToken, {});
    }
    rows->check(sfi_row::kHash)->setChecked(entry.hashChecked);
    rows->setRowEnabled(sfi_row::kHash, !entry.hashLocked, tr("Images of this device always do"));
    rows->setRowVisible(sfi_row::kSmi, entry.smiRow);
    rows->setSeparatorVisible(sfi_row::kSmi, entry.smiLine);
    rows->setRowVisible(sfi_row::kKeyArea, entry.keyAreaRow);
    rows->setSeparatorVisible(sfi_row::kKeyArea, entry.keyAreaLine);
    for (const QLatin1String row : {sfi_row::kObk, sfi_row::kSsfi, sfi_row::kModules}) {
        rows->setRowVisible(row, entry.provisioningRows);
    }
    rows->setSeparatorVisible(sfi_row::kRam, entry.ramLine);
    if (entry.emptiesSsfi) {
        rows->setText(sfi_row::kSsfi, {});
    }
    rows->updateGenerate();
}

void SfiTab::countSmiFiles()
{
    const SfiTab *sfi = other("sfi");
    const int count = sfi != nullptr && sfi->device().combined ? sfi->countOf(sfi_row::kSmi) : 0;
    form()->setText(
        sfi_row::kSmiNote,
        count == 0 ? QString()
                   : tr("SMI files of the SFI tab that go into this image, too: %1").arg(count));
}

void SfiTab::lockDevice(bool lock)
{
    const auto locked = std::ranges::find_if(m_variant.devices, &SfiDevice::ofH5Panel);
    m_lock.set(form()->choice(sfi_row::kDevice),
               static_cast<int>(locked - m_variant.devices.begin()), lock);
}

void SfiTab::chooseFiles(const QString &row)
{
    addFiles(row, workbench::chooseFiles(context().boxParent, context().lastFolder,
                                         form()->row(row)->filter));
}

void SfiTab::addFiles(const QString &row, const QStringList &paths)
{
    if (paths.isEmpty()) {
        return;
    }
    context().lastFolder = paths.last();
    Series series{paths.size(), false, std::nullopt};
    FileRows &files = form()->list(row)->rows();
    const int before = files.count();
    const auto add = [&] {
        for (const QString &path : paths) {
            --series.left;
            addFile(row, path, series);
            if (series.cancelled) {
                break;
            }
        }
    };
    if (!whileBusy(context().boxParent, add)) {
        while (files.count() > before) {
            dropFile(row, files.count() - 1);
        }
    }
    if (m_shownRow == row) {
        showFile(row);  // its map has all files of the list
    }
}

files::RecordOwner<FileData> SfiTab::openFor(const QString &row, const QString &path)
{
    auto opened = openPackageInput(context().fileManager, path);
    if (opened == nullptr) {
        return nullptr;
    }
    if (!accepts(row, opened->type)) {
        showBox(context().boxParent, BoxKind::Error,
                QStringLiteral("Unable to create an SFI image from the format of : ") +
                    QFileInfo(path).fileName());
        return nullptr;
    }
    return files::RecordOwner<FileData>(static_cast<FileData *>(opened.release()));
}

void SfiTab::appendFile(const QString &row, const QString &path,
                        files::RecordOwner<FileData> record,
                        const std::optional<ExtBinInfo> &region)
{
    FileList *list = form()->list(row);
    list->rows().append(path, std::move(record));
    if (region) {
        list->rows().setNote(list->rows().count() - 1, QVariant::fromValue(*region));
    }
    if (row == sfi_row::kExternal) {
        list->removeButton()->setEnabled(true);
    }
}

void SfiTab::addFile(const QString &row, const QString &path, Series &series)
{
    auto record = openFor(row, path);
    if (record == nullptr) {
        return;
    }
    std::optional<ExtBinInfo> region;
    bool isTold = true;
    if (row == sfi_row::kExternal) {
        isTold = askRegion(path, *record, series, region);
    } else if (row == m_variant.firmwareRow) {
        isTold = askAddress(path, *record, series);
    }
    if (isTold) {
        appendFile(row, path, std::move(record), region);
    }
}

bool SfiTab::askAddress(const QString &path, FileData &record, Series &series)
{
    if (record.type != file_type::kBinary || record.segments.empty()) {
        return true;
    }
    SegmentData &first = record.segments.front();
    const FileRows &present = form()->list(m_variant.firmwareRow)->rows();
    if (series.same) {
        if (const auto free = nextFreeAddress(present, series.same->startAddress, first.size)) {
            first.address = *free;
            return true;
        }
    }
    AddressDialog dialog(QFileInfo(path).fileName(), context().boxParent);
    const SeriesChoice *choice = series.left > 0 ? dialog.addSeries() : nullptr;
    const bool accepted = dialog.exec() == QDialog::Accepted;
    series.note(choice, accepted, {dialog.address(), 0, 0, 0});
    if (accepted) {
        first.address = dialog.address();
    }
    return accepted;
}

bool SfiTab::askRegion(const QString &path, FileData &record, Series &series,
                       std::optional<ExtBinInfo> &region)
{
    const bool isBinary = record.type == file_type::kBinary;
    if ((!isBinary && record.type != file_type::kIntelHex) || record.segments.empty()) {
        return true;  // their files tell the address, and nobody asks for the rest
    }
    SegmentData &first = record.segments.front();
    if (isBinary && series.same) {
        const FileRows &present = form()->list(sfi_row::kExternal)->rows();
        if (const auto free = nextFreeAddress(present, series.same->startAddress, first.size)) {
            first.address = *free;
            region = series.same;
            region->startAddress = *free;
            return true;
        }
    }
    ExtFirAddInfoDialog dialog(QFileInfo(path).fileName(), startTextOf(record),
                               context().boxParent);
    setRegionRanges(dialog);
    const SeriesChoice *choice = series.left > 0 ? dialog.addSeries() : nullptr;
    const bool accepted = dialog.exec() == QDialog::Accepted;
    const ExtBinInfo told = toldBy(dialog);
    series.note(choice, accepted, told);
    if (!accepted) {
        return false;
    }
    first.address = told.startAddress;
    region = told;
    return true;
}

void SfiTab::setRegionRanges(ExtFirAddInfoDialog &dialog) const
{
    const bool isNarrow = device().provisioned;
    dialog.setRegionModeRange(isNarrow ? 1 : 0, isNarrow ? 2 : 3);
    dialog.setRegionNumberRange(0, isNarrow ? 3 : 7);
}

QVector<ExtBinInfo> SfiTab::extBinInfos() const
{
    QVector<ExtBinInfo> regions;
    for (int row = 0; row < countOf(sfi_row::kExternal); ++row) {
        const QVariant note = form()->list(sfi_row::kExternal)->rows().note(row);
        if (note.isValid()) {
            regions.append(note.value<ExtBinInfo>());
        }
    }
    return regions;
}

void SfiTab::removeSelected(const QString &row)
{
    const QList<int> selected = form()->list(row)->selectedRows();  // the last one first
    for (const int at : selected) {
        dropFile(row, at);
    }
}

void SfiTab::editAddress(const QString &row, int at)
{
    FileRows &files = form()->list(row)->rows();
    if (files.note(at).isValid()) {
        editRegion(at);
    } else {
        AddressDialog dialog(QFileInfo(files.path(at)).fileName(), context().boxParent);
        dialog.proposeAddress(files.record(at).segments.front().address);
        if (dialog.exec() == QDialog::Accepted) {
            files.setAddress(at, dialog.address());
        }
    }
    if (m_shownRow == row) {
        showFile(row);
    }
}

void SfiTab::editRegion(int at)
{
    FileRows &files = form()->list(sfi_row::kExternal)->rows();
    const auto present = files.note(at).value<ExtBinInfo>();
    ExtFirAddInfoDialog dialog(QFileInfo(files.path(at)).fileName(), startTextOf(files.record(at)),
                               context().boxParent);
    setRegionRanges(dialog);
    dialog.propose(files.record(at).segments.front().address, present.regionNumber,
                   present.regionMode, present.keyAddress);
    if (dialog.exec() == QDialog::Accepted) {
        files.setAddress(at, dialog.startAddress());
        files.setNote(at, QVariant::fromValue(toldBy(dialog)));
    }
}

void SfiTab::dropFile(const QString &row, int at)
{
    FileList *list = form()->list(row);
    list->removeRow(at);
    if (m_shownRow == row && list->selectedRow() < 0) {
        m_firmwareInfo->reset();  // or it would go on showing a file that left the list
        m_shownRow.clear();
    }
}

void SfiTab::enableRemove(const QString &row, const QItemSelection &selection)
{
    form()->list(row)->removeButton()->setEnabled(!selection.isEmpty());
}

void SfiTab::display(const QString &row, const QItemSelection &selection)
{
    if (!selection.isEmpty()) {
        pickFile(row);
    }
}

void SfiTab::pickFile(const QString &row)
{
    if (form()->list(row)->selectedRow() >= 0) {
        m_panes->setCurrentIndex(InfoTabs::kFirst);
        showFile(row);
    }
}

void SfiTab::pickSegment(int file, int number)
{
    if (!m_shownRow.isEmpty()) {
        QListView *view = form()->list(m_shownRow)->view();
        view->setCurrentIndex(view->model()->index(file, 0));
        m_firmwareInfo->selectRow(number - 1);
    }
}

void SfiTab::dropFirmwareSelections()
{
    for (const QString row : {sfi_row::kInternal, sfi_row::kExternal}) {
        if (FileList *list = form()->list(row)) {
            list->clearSelection();
            list->removeButton()->setEnabled(false);
        }
    }
}

void SfiTab::clearPanes()
{
    m_parse->info()->reset();
}

void SfiTab::clear()
{
    FormTab::clear();
    m_firmwareInfo->reset();
    m_parse->field()->edit()->clear();
    m_parse->info()->reset();
    m_shownRow.clear();
}

}  // namespace workbench
