#include "workbench/tabs/sfi/SfiRequest.h"

#include "files/base/Wipe.h"
#include "report/DisplayMng.h"
#include "workbench/forms/PackageForm.h"
#include "workbench/widgets/KeyFileInput.h"

#include <QFileInfo>

#include <utility>

namespace workbench
{

namespace
{

constexpr unsigned char kKeyBytes = 16;
constexpr unsigned char kNonceBytes = 12;
constexpr unsigned int kProfileProvisioned = 0x484;
constexpr unsigned int kProfileOther = 0xFF;

template <typename Record>
files::RecordOwner<Record> ownAs(files::RecordOwner<FileType> record)
{
    return files::RecordOwner<Record>(static_cast<Record *>(record.release()));
}

/// Opens a file that must turn out as one type.
template <typename Record>
files::RecordOwner<Record> openAs(FileManager &manager, const QString &path, std::uint32_t type)
{
    auto record = openPackageInput(manager, path);
    if (record == nullptr || record->type != type) {
        return nullptr;
    }
    return ownAs<Record>(std::move(record));
}

std::optional<Refusal> readKey(const QString &path, unsigned char size, QLatin1String row,
                               QByteArray &out)
{
    auto bytes = readKeyInput(path, size);
    if (!bytes) {
        return Refusal::error(QString::fromStdString(bytes.error().text), row);
    }
    out = std::move(*bytes);
    return std::nullopt;
}

/// A table of values: the CSV and KCSV inputs, refused in two different sentences.
std::optional<Refusal> readCsv(FileManager &manager, const QString &path, QLatin1String row,
                               const char *unreadable, const char *wrongType,
                               files::RecordOwner<FileData> &out)
{
    auto record = openPackageInput(manager, path);
    if (record == nullptr) {
        return Refusal::error(QLatin1String(unreadable), row);
    }
    if (record->type != file_type::kCsv) {
        return Refusal::error(QLatin1String(wrongType), row);
    }
    out = ownAs<FileData>(std::move(record));
    return std::nullopt;
}

void keepAddress(KeepAddress keep, const FileData &old, FileData &fresh)
{
    if (old.segments.empty() || fresh.segments.empty()) {
        return;
    }
    const bool wanted = (keep == KeepAddress::OfBinaries && fresh.type == file_type::kBinary) ||
                        (keep == KeepAddress::InsteadOfZero && fresh.segments.front().address == 0);
    if (wanted) {
        fresh.segments.front().address = old.segments.front().address;
    }
}

/// Lets an SSFI record be read as a firmware image, too; the bytes stay those of its areas.
void listAreasAsSegments(FileSFI &image)
{
    for (const SegmentSFI &area : image.areas) {
        image.segments.push_back({area.address, area.size, area.data});
    }
    image.segmentCount = static_cast<std::uint32_t>(image.areas.size());
}

}  // namespace

SfiInputs::~SfiInputs()
{
    files::wipe(key);
    files::wipe(nonce);
}

std::optional<int> reloadList(FileManager &manager, FileRows &rows, KeepAddress keep,
                              const std::function<void(int)> &replaced)
{
    for (int row = 0; row < rows.count(); ++row) {
        auto fresh = ownAs<FileData>(openPackageInput(manager, rows.path(row)));
        if (fresh == nullptr) {
            return row;
        }
        keepAddress(keep, rows.record(row), *fresh);
        rows.replace(row, std::move(fresh));
        replaced(row);
    }
    return std::nullopt;
}

std::optional<Refusal> mergeList(FileManager &manager, const FileRows &rows,
                                 files::RecordView<FileData> &out)
{
    if (rows.isEmpty()) {
        return std::nullopt;
    }
    const QList<FileData *> records = rows.records();
    FileData *merged = nullptr;
    if (!manager.MergeFiles({records.begin(), records.end()}, &merged)) {
        return Refusal::error(
            QStringLiteral("Overlap between segments, Unable to merge firmware files"));
    }
    out.reset(merged);
    return std::nullopt;
}

std::optional<Refusal> readInputs(FileManager &manager, const SfiVariant &variant,
                                  const SfiFormValues &values, SfiInputs &inputs)
{
    if (auto refusal = readKey(values.keyPath, kKeyBytes, sfi_row::kKey, inputs.key)) {
        return refusal;
    }
    if (auto refusal = readKey(values.noncePath, kNonceBytes, sfi_row::kNonce, inputs.nonce)) {
        return refusal;
    }
    if (values.optionBytesPath.isEmpty()) {
        return Refusal::warning(QLatin1String(variant.noOptionBytes));
    }
    if (auto refusal = readCsv(manager, values.optionBytesPath, sfi_row::kOptionBytes,
                               "Failure to open Option bytes file",
                               "Option bytes file is not in a csv format", inputs.optionBytes)) {
        return refusal;
    }
    const SfiDevice &device = variant.devices[static_cast<std::size_t>(values.deviceIndex)];
    if (!values.keyAreaPath.isEmpty() && !device.ignoresKeyArea) {
        if (auto refusal =
                readCsv(manager, values.keyAreaPath, sfi_row::kKeyArea, variant.keyAreaUnreadable,
                        variant.keyAreaWrongType, inputs.keyArea)) {
            return refusal;
        }
    }
    const auto numbers = checkNumbers(variant, values);
    if (!numbers) {
        return Refusal::error(QString::fromStdString(numbers.error().text));
    }
    inputs.numbers = *numbers;
    return std::nullopt;
}

std::optional<Refusal> readProvisioning(FileManager &manager, const SfiFormValues &values,
                                        SfiInputs &inputs)
{
    if (!values.ssfiPath.isEmpty()) {
        inputs.ssfi = openAs<FileSFI>(manager, values.ssfiPath, file_type::kSsfi);
        if (inputs.ssfi == nullptr) {
            return Refusal::error(QStringLiteral("Cannot read SSFI file"));
        }
        listAreasAsSegments(*inputs.ssfi);
    }
    if (!values.modulesPath.isEmpty()) {
        auto record = openPackageInput(manager, values.modulesPath);
        if (record != nullptr && record->type != file_type::kMcsv) {
            // Only a refused file has been reported; one of another kind would end in silence.
            DisplayMng::getInstance().logMessage(5, L"%ls is an invalid mcsv file",
                                                 values.modulesPath.toStdWString().c_str());
            record.reset();
        }
        if (record == nullptr) {
            return Refusal::silent();
        }
        inputs.modules = ownAs<FileMCSV>(std::move(record));
    }
    return std::nullopt;
}

QByteArray buildImage(Preparation &preparation, const SfiDevice &device,
                      const SfiFormValues &values, const ListInputs &lists, SfiInputs &inputs)
{
    return preparation.SFIPreparation(
        inputs.firmware.get(), lists.combined, lists.obkFiles, inputs.optionBytes.get(), inputs.key,
        inputs.nonce, values.imageVersion, values.hash, lists.smiFiles, inputs.numbers.ramSize,
        inputs.numbers.tokenAddress, inputs.ssfi.get(), inputs.modules.get(),
        device.provisioned ? kProfileProvisioned : kProfileOther, inputs.external.get(),
        inputs.keyArea.get(), lists.externalInfos);
}

}  // namespace workbench
