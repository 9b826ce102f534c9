#include "workbench/tabs/sfi/TwinTab.h"

#include "crypto/service/Crypto.h"
#include "workbench/tabs/sfi/ExtFirAddInfoDialog.h"
#include "workbench/tabs/sfi/SfiInspection.h"
#include "workbench/widgets/AddressDialog.h"
#include "workbench/widgets/Boxes.h"
#include "workbench/widgets/FileChoice.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QVBoxLayout>

#include <algorithm>

namespace workbench
{

namespace
{

constexpr Row kListRows[] = {Row::Firmware, Row::External, Row::Smi, Row::Obk};

constexpr int kKeyBytes = 16;
constexpr int kNonceBytes = 12;

std::optional<SharedField> sharedField(Row row)
{
    switch (row) {
    case Row::Key:
        return SharedField::Key;
    case Row::Nonce:
        return SharedField::Nonce;
    case Row::OptionBytes:
        return SharedField::OptionBytes;
    default:
        return std::nullopt;
    }
}

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

TwinTab::TwinTab(const TwinTraits &twin, const TabName &name, QWidget *page, FormContext &context)
    : Tab(name, page, context), m_twin(twin), m_form(new TwinForm(twin, page))
{
    auto *layout = new QVBoxLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_form);
    connectLists();
    connectFields();
}

TwinTab *TwinTab::twin(const char *key) const
{
    return qobject_cast<TwinTab *>(context().tab(QLatin1String(key)));
}

void TwinTab::connectFields()
{
    const auto onButton = [this](Row row, const char *role, void (TwinTab::*action)(Row)) {
        connect(m_form->field(row)->button(QLatin1String(role)), &QPushButton::clicked, this,
                [this, row, action] { (this->*action)(row); });
    };
    for (const Row row :
         {Row::Key, Row::Nonce, Row::OptionBytes, Row::KeyArea, Row::Ssfi, Row::Modules}) {
        onButton(row, "open", &TwinTab::choosePath);
    }
    onButton(Row::Key, "generate", &TwinTab::makeRandomFile);
    onButton(Row::Nonce, "generate", &TwinTab::makeRandomFile);
    connect(m_form->field(Row::Output)->button(QStringLiteral("folder")), &QPushButton::clicked,
            this, &TwinTab::chooseOutputFolder);
    for (const Row row : {Row::Key, Row::Nonce, Row::OptionBytes, Row::Output}) {
        connect(m_form->field(row), &FileField::pathChanged, this, &TwinTab::updateGenerate);
    }
    connect(m_form->mcuBox(), qOverload<int>(&QComboBox::currentIndexChanged), this,
            &TwinTab::changeMcu);
    connect(m_form->generateButton(), &QPushButton::clicked, this, &TwinTab::generate);
    connect(m_form->parsePane(), &ParsePane::browseRequested, this, &TwinTab::chooseImage);
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
        connect(list, &FileList::addRequested, this, [this, row] { chooseFiles(row); });
        connect(list, &FileList::removeRequested, this, [this, row] { removeSelected(row); });
        connect(list, &FileList::selectionChanged, this,
                [this, row](const QItemSelection &selection) {
                    enableRemove(row, selection);
                    display(row, selection);
                });
        // A click shows the file again when another list's file was shown meanwhile.
        connect(list->view(), &QListView::clicked, this, [this, row] { pickFile(row); });
    }
    connect(m_form->firmwareInfo()->map(), &MemoryMap::groupChosen, this, &TwinTab::pickSegment);
}

const McuRow &TwinTab::mcu() const
{
    return m_twin.mcus[static_cast<std::size_t>(m_form->mcuBox()->currentIndex())];
}

void TwinTab::changeMcu(int index)
{
    if (m_form->mcuBox()->currentIndex() != index) {
        m_form->mcuBox()->setCurrentIndex(index);  // and comes here again
        return;
    }
    m_form->applyMcu(mcu());
    updateGenerate();
}

void TwinTab::lockDevice(bool lock)
{
    const auto locked = std::ranges::find_if(m_twin.mcus, &McuRow::ofH5Panel);
    m_lock.set(m_form->mcuBox(), static_cast<int>(locked - m_twin.mcus.begin()), lock);
}

void TwinTab::updateGenerate()
{
    const bool hasFirmware = !m_form->list(Row::Firmware)->rows().isEmpty();
    m_form->generateButton()->setEnabled(mayGenerate(m_twin, m_form->values(), hasFirmware));
}

void TwinTab::chooseFiles(Row row)
{
    const QString filter = QLatin1String(m_twin.find(row)->filter);
    addFiles(row, workbench::chooseFiles(context().boxParent, context().lastFolder, filter));
}

void TwinTab::choosePath(Row row)
{
    const QString filter = QLatin1String(m_twin.find(row)->filter);
    const QString path = chooseFile(context().boxParent, context().lastFolder, filter);
    if (!path.isEmpty()) {
        setPath(row, path);
    }
}

void TwinTab::setPath(Row row, const QString &path)
{
    if (const auto shared = sharedField(row)) {
        context().share(*shared, path);
    } else {
        m_form->field(row)->setPath(path);
    }
}

void TwinTab::takeShared(SharedField field, const QString &path)
{
    for (const Row row : {Row::Key, Row::Nonce, Row::OptionBytes}) {
        if (sharedField(row) == field) {
            m_form->field(row)->setPath(path);
        }
    }
}

void TwinTab::makeRandomFile(Row row)
{
    const bool isKey = row == Row::Key;
    const QString path =
        QFileDialog::getSaveFileName(context().boxParent, tr("Select file name"),
                                     context().lastOutputFolder, tr("bin files (*.bin)"));
    if (path.isEmpty()) {
        return;
    }
    if (Crypto().generateEncryptionandNonce(path, isKey ? kKeyBytes : kNonceBytes) != 0) {
        showBox(context().boxParent, BoxKind::Error,
                isKey ? tr("Encrytpion Key File Generation Failed !!")
                      : tr("Nonce File Generation Failed !!"));
        return;
    }
    context().lastOutputFolder = QFileInfo(path).absolutePath();
    setPath(row, path);
    showBox(context().boxParent, BoxKind::Success,
            isKey ? tr("Encrytpion Key file successfully created")
                  : tr("Nonce file successfully created"));
}

void TwinTab::chooseOutputFolder()
{
    const QString folder = QFileDialog::getExistingDirectory(
        context().boxParent, QStringLiteral("Select folder"), context().lastOutputFolder);
    if (!folder.isEmpty()) {
        context().lastOutputFolder = folder;
        m_form->field(Row::Output)->setPath(folder + '/' + QLatin1String(m_twin.defaultName));
    }
}

void TwinTab::addFiles(Row row, const QStringList &paths)
{
    if (paths.isEmpty()) {
        return;
    }
    context().lastFolder = paths.last();
    for (const QString &path : paths) {
        addFile(row, path);
    }
    if (m_shownRow == row) {
        showFile(row);  // its map has all files of the list
    }
    updateGenerate();
}

files::RecordOwner<FileData> TwinTab::openFor(Row row, const QString &path)
{
    auto opened = openRecord(context().fileManager, path);
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
    AddressDialog dialog(QFileInfo(path).fileName(), context().boxParent);
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
    ExtFirAddInfoDialog dialog(QFileInfo(path).fileName(), start, context().boxParent);
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

void TwinTab::pickSegment(int file, int number)
{
    if (m_shownRow) {
        QListView *view = m_form->list(*m_shownRow)->view();
        view->setCurrentIndex(view->model()->index(file, 0));
        m_form->firmwareInfo()->selectRow(number - 1);
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

void TwinTab::clearPanes()
{
    m_form->parsePane()->info()->reset();
}

void TwinTab::clear()
{
    m_form->clear();
    extBinInfos.clear();
    m_shownRow.reset();
}

}  // namespace workbench
