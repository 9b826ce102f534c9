#include "workbench/tabs/sfi/TwinTab.h"

#include "workbench/tabs/sfi/ExtFirAddInfoDialog.h"
#include "workbench/tabs/sfi/SfiInspection.h"
#include "workbench/widgets/AddressDialog.h"
#include "workbench/widgets/Boxes.h"
#include "workbench/widgets/FileChoice.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QVBoxLayout>

namespace workbench
{

namespace
{

constexpr Row kListRows[] = {Row::Firmware, Row::External, Row::Smi, Row::Obk};

bool accepts(Row row, std::uint32_t type)
{
    if (row == Row::Smi) {
        return type == file_type::kSmi;
    }
    if (row == Row::Obk) {
        return type == file_type::kObk;
    }
    return type == file_type::kBinary || type == file_type::kIntelHex ||
           type == file_type::kSRecord || type == file_type::kElf;
}

}  // namespace

TwinTab::TwinTab(const TwinTraits &twin, QWidget *page, TwinSurroundings surroundings)
    : QObject(page), m_twin(twin), m_near(std::move(surroundings)), m_form(new TwinForm(twin, page))
{
    auto *layout = new QVBoxLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_form);
    connectLists();
}

void TwinTab::connectLists()
{
    for (const Row row : kListRows) {
        FileList *list = m_form->list(row);
        if (list == nullptr) {
            continue;
        }
        connect(list, &FileList::filesDropped, this,
                [this, row](const QStringList &paths) { addFiles(row, paths); });
        // A click shows the file again when another list's file was shown meanwhile.
        connect(list->view(), &QListView::clicked, this, [this, row] { pickFile(row); });
    }
}

const McuRow &TwinTab::mcu() const
{
    return m_twin.mcus[static_cast<std::size_t>(m_deviceIndex)];
}

void TwinTab::changeMcu(int index)
{
    m_form->applyMcu(m_twin.mcus[static_cast<std::size_t>(index)]);
    m_deviceIndex = index;
    updateGenerate();
}

void TwinTab::updateGenerate()
{
    const bool hasFirmware = !m_form->list(Row::Firmware)->rows().isEmpty();
    m_form->generateButton()->setEnabled(mayGenerate(m_twin, m_form->values(), hasFirmware));
}

void TwinTab::chooseFiles(Row row)
{
    const QString filter = QLatin1String(m_twin.find(row)->filter);
    addFiles(row, workbench::chooseFiles(m_near.form, *m_near.lastFolder, filter));
}

void TwinTab::chooseOwnPath(Row row)
{
    const QString filter = QLatin1String(m_twin.find(row)->filter);
    const QString path = chooseFile(m_near.form, *m_near.lastFolder, filter);
    if (!path.isEmpty()) {
        m_form->field(row)->setPath(path);
    }
}

void TwinTab::chooseOutputFolder()
{
    const QString folder = QFileDialog::getExistingDirectory(
        m_near.form, QStringLiteral("Select folder"), *m_near.lastOutputFolder);
    if (!folder.isEmpty()) {
        *m_near.lastOutputFolder = folder;
        m_form->field(Row::Output)->setPath(folder + '/' + QLatin1String(m_twin.defaultName));
    }
}

void TwinTab::addFiles(Row row, const QStringList &paths)
{
    if (paths.isEmpty()) {
        return;
    }
    *m_near.lastFolder = paths.last();
    for (const QString &path : paths) {
        addFile(row, path);
    }
    updateGenerate();
}

files::RecordOwner<FileData> TwinTab::openFor(Row row, const QString &path)
{
    auto opened = openRecord(*m_near.fileManager, path);
    if (opened == nullptr) {
        return nullptr;
    }
    if (!accepts(row, opened->type)) {
        showBox(m_near.form, BoxKind::Error,
                QStringLiteral("Unable to create an SFI image from the format of : ") +
                    QFileInfo(path).fileName());
        return nullptr;
    }
    return files::RecordOwner<FileData>(static_cast<FileData *>(opened.release()));
}

void TwinTab::appendFile(Row row, const QString &path, files::RecordOwner<FileData> record)
{
    FileList *list = m_form->list(row);
    list->rows().append(path, std::move(record));
    if (row == Row::External) {
        list->removeButton()->setEnabled(true);
    }
}

void TwinTab::addFile(Row row, const QString &path)
{
    auto record = openFor(row, path);
    if (record == nullptr) {
        return;
    }
    const bool placed =
        row == Row::External ? askExternalPlace(path, *record) : askPlace(row, path, *record);
    if (placed) {
        appendFile(row, path, std::move(record));
    }
}

bool TwinTab::askPlace(Row row, const QString &path, FileData &record)
{
    if (row != Row::Firmware || record.type != file_type::kBinary) {
        return true;
    }
    AddressDialog dialog(QFileInfo(path).fileName(), m_near.form);
    if (dialog.exec() != QDialog::Accepted) {
        return false;
    }
    record.segments.front().address = dialog.address();
    return true;
}

bool TwinTab::askExternalPlace(const QString &path, FileData &record)
{
    const bool isBinary = record.type == file_type::kBinary;
    if ((!isBinary && record.type != file_type::kIntelHex) || record.segments.empty()) {
        return true;  // their files tell the address, and nobody asks for the rest
    }
    SegmentData &first = record.segments.front();
    const QString start =
        isBinary ? QStringLiteral("-1") : QStringLiteral("0x") + QString::number(first.address, 16);
    ExtFirAddInfoDialog dialog(QFileInfo(path).fileName(), start, m_near.form);
    if (mcu().provisioned) {
        dialog.setRegionModeRange(1, 2);
        dialog.setRegionNumberRange(0, 3);
    } else {
        dialog.setRegionModeRange(0, 3);
        dialog.setRegionNumberRange(0, 7);
    }
    if (dialog.exec() != QDialog::Accepted) {
        return false;
    }
    first.address = dialog.startAddress();
    extBinInfos.append(
        {dialog.startAddress(), dialog.regionNumber(), dialog.regionMode(), dialog.keyAddress()});
    return true;
}

void TwinTab::removeSelected(Row row)
{
    FileList *list = m_form->list(row);
    const int selected = list->selectedRow();
    if (selected < 0) {
        return;
    }
    if (row == Row::External && selected < extBinInfos.size()) {
        extBinInfos.removeAt(selected);
    }
    dropFile(row, selected);
    updateGenerate();
}

void TwinTab::dropFile(Row row, int at)
{
    FileList *list = m_form->list(row);
    list->removeRow(at);
    if (m_shownRow == row && list->selectedRow() < 0) {
        m_form->firmwareInfo()->reset();  // or it would go on showing a file that left the list
        m_shownRow.reset();
    }
}

void TwinTab::enableRemove(Row row, const QItemSelection &selection)
{
    m_form->list(row)->removeButton()->setEnabled(!selection.isEmpty());
}

void TwinTab::display(Row row, const QItemSelection &selection)
{
    if (!selection.isEmpty()) {
        pickFile(row);
    }
}

void TwinTab::pickFile(Row row)
{
    if (m_form->list(row)->selectedRow() >= 0) {
        m_form->showFirmwarePane();
        showFile(row);
    }
}

void TwinTab::dropFirmwareSelections()
{
    for (const Row row : {Row::Firmware, Row::External}) {
        if (FileList *list = m_form->list(row)) {
            list->clearSelection();
            list->removeButton()->setEnabled(false);
        }
    }
}

void TwinTab::clear()
{
    m_form->clear();
    extBinInfos.clear();
    m_shownRow.reset();
}

}  // namespace workbench
