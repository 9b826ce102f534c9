// What the SFI and SFIx tabs keep from one run to the next, and how it comes back.
#include "workbench/tabs/sfi/SfiTab.h"
#include "workbench/widgets/Boxes.h"

#include <QFileInfo>

#include <algorithm>

namespace workbench
{

namespace
{

// Keys of the settings file; the spelling of the last text is the one that all versions have.
const FormTab::SavedText kSavedTexts[] = {
    {"Encryption key file", sfi_row::kKey},       {"Nonce file", sfi_row::kNonce},
    {"Option bytes file", sfi_row::kOptionBytes}, {"Available RAM size", sfi_row::kRam},
    {"Continuation Token", sfi_row::kToken},      {"ouput SFI file", sfi_row::kOutput},
};
const QLatin1String kVersionKey("Image version");
const QLatin1String kSmiKey("smi files");
const QLatin1String kKeyAreaKey("Area byte file");

std::uint32_t firstAddress(const FileData &record)
{
    return record.segments.empty() ? 0 : record.segments.front().address;
}

/// External files that the user was asked about; only they have entries in the saved lists.
bool hasRegion(std::uint32_t type)
{
    return type == file_type::kBinary || type == file_type::kIntelHex;
}

/// The same for a file that is gone, as far as its name tells.
bool soundsLikeRegion(const QString &path)
{
    static const QStringList others{"srec", "s19", "elf", "axf", "o", "so", "out"};
    return !others.contains(QFileInfo(path).suffix().toLower());
}

bool holds(const SavedNumbers &saved, int at)
{
    return at < std::min({saved.addresses.size(), saved.modes.size(), saved.numbers.size(),
                          saved.keyAddresses.size()});
}

}  // namespace

void SfiTab::save(SavedGroup &group) const
{
    const FileRows &firmware = form()->list(m_variant.firmwareRow)->rows();
    QList<QVariant> addresses;
    for (const FileData *record : firmware.records()) {
        addresses << firstAddress(*record);
    }
    group.set(QLatin1String(m_variant.savedFirmware), firmware.paths());
    group.set(QLatin1String(m_variant.savedAddresses), addresses);
    if (form()->list(sfi_row::kExternal) != nullptr) {
        saveExternal(group);
    }
    saveTexts(group, kSavedTexts);
    group.set(kVersionKey, form()->number(sfi_row::kVersion)->value());
    if (const FileList *smi = form()->list(sfi_row::kSmi)) {
        group.set(kSmiKey, smi->rows().paths());
    }
}

void SfiTab::saveExternal(SavedGroup &group) const
{
    const FileRows &external = form()->list(sfi_row::kExternal)->rows();
    SavedNumbers saved;
    for (int row = 0; row < external.count(); ++row) {
        if (hasRegion(external.record(row).type)) {
            const auto region = external.note(row).value<ExtBinInfo>();
            saved.addresses << firstAddress(external.record(row));
            saved.modes << region.regionMode;
            saved.numbers << region.regionNumber;
            saved.keyAddresses << region.keyAddress;
        }
    }
    group.set(QStringLiteral("external firmware files"), external.paths());
    group.set(QStringLiteral("External addresses"), saved.addresses);
    group.set(QStringLiteral("Mode"), saved.modes);
    group.set(QStringLiteral("Number"), saved.numbers);
    group.set(QStringLiteral("Key addresses"), saved.keyAddresses);
    group.set(kKeyAreaKey, form()->text(sfi_row::kKeyArea));
}

void SfiTab::restore(const SavedGroup &group)
{
    restoreTexts(group, kSavedTexts);
    if (m_variant.needsExternal) {
        form()->setText(sfi_row::kKeyArea, group.text(kKeyAreaKey));
    }
    form()->number(sfi_row::kVersion)->setValue(group.number(kVersionKey));
}

void SfiTab::restoreFiles(const SavedGroup &group)
{
    if (form()->list(sfi_row::kSmi) != nullptr) {
        restoreList(sfi_row::kSmi, group.texts(kSmiKey), {});
    }
    restoreList(m_variant.firmwareRow, group.texts(QLatin1String(m_variant.savedFirmware)),
                {group.numbers(QLatin1String(m_variant.savedAddresses)), {}, {}, {}});
    if (form()->list(sfi_row::kExternal) != nullptr) {
        restoreList(sfi_row::kExternal, group.texts(QStringLiteral("external firmware files")),
                    {group.numbers(QStringLiteral("External addresses")),
                     group.numbers(QStringLiteral("Mode")), group.numbers(QStringLiteral("Number")),
                     group.numbers(QStringLiteral("Key addresses"))});
    }
}

void SfiTab::restoreList(const QString &row, const QStringList &paths, const SavedNumbers &saved)
{
    int next = 0;  // entry of the saved numbers
    for (const QString &path : paths) {
        if (path.isEmpty()) {
            ++next;  // nothing to report, but its numbers are not the next file's
            continue;
        }
        auto record = openFor(row, path);
        const bool hasEntry = row != sfi_row::kExternal ||
                              (record ? hasRegion(record->type) : soundsLikeRegion(path));
        const int entry = hasEntry ? next++ : next;
        if (!record) {
            continue;
        }
        std::optional<ExtBinInfo> region;
        if (!restoreNumbers(row, *record, saved, entry, region)) {
            showBox(context().boxParent, BoxKind::Error, QStringLiteral("Corrupted settings file"));
            break;
        }
        appendFile(row, path, std::move(record), region);
    }
}

bool SfiTab::restoreNumbers(const QString &row, FileData &record, const SavedNumbers &saved, int at,
                            std::optional<ExtBinInfo> &region)
{
    const bool isBinary = record.type == file_type::kBinary;
    if (row == sfi_row::kExternal && hasRegion(record.type)) {
        if (!holds(saved, at)) {
            return false;
        }
        region = ExtBinInfo{saved.addresses[at].toUInt(), saved.numbers[at].toUInt(),
                            saved.modes[at].toUInt(), saved.keyAddresses[at].toUInt()};
    }
    if (isBinary && !record.segments.empty()) {
        if (at >= saved.addresses.size()) {
            return false;
        }
        record.segments.front().address = saved.addresses[at].toUInt();
    }
    return true;
}

}  // namespace workbench
