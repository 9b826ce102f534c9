// What the SFI and SFIx tabs keep from one run to the next, and how it comes back.
#include "workbench/tabs/sfi/TwinTab.h"
#include "workbench/widgets/Boxes.h"

#include <QFileInfo>

#include <algorithm>

namespace workbench
{

namespace
{

std::uint32_t firstAddress(const FileData &record)
{
    return record.segments.empty() ? 0 : record.segments.front().address;
}

/// External files that the user was asked about; only they have entries in the saved lists.
bool isPlaced(std::uint32_t type)
{
    return type == file_type::kBinary || type == file_type::kIntelHex;
}

/// The same for a file that is gone, as far as its name tells.
bool soundsPlaced(const QString &path)
{
    static const QStringList others{"srec", "s19", "elf", "axf", "o", "so", "out"};
    return !others.contains(QFileInfo(path).suffix().toLower());
}

bool holds(const SavedPlaces &places, int at)
{
    return at < std::min({places.addresses.size(), places.modes.size(), places.numbers.size(),
                          places.keyAddresses.size()});
}

}  // namespace

SavedForm TwinTab::saved() const
{
    const TwinValues values = m_form->values();
    SavedForm form;
    form.key = values.keyPath;
    form.nonce = values.noncePath;
    form.optionBytes = values.optionBytesPath;
    form.keyArea = values.keyAreaPath;
    form.ram = values.ramText;
    form.token = values.tokenText;
    form.output = values.outputPath;
    form.imageVersion = values.imageVersion;

    const FileRows &firmware = m_form->list(Row::Firmware)->rows();
    form.firmware = firmware.paths();
    for (const FileData *record : firmware.records()) {
        form.firmwarePlaces.addresses << firstAddress(*record);
    }
    if (const FileList *smi = m_form->list(Row::Smi)) {
        form.smi = smi->rows().paths();
    }
    if (const FileList *external = m_form->list(Row::External)) {
        form.external = external->rows().paths();
        for (const FileData *record : external->rows().records()) {
            if (isPlaced(record->type)) {
                form.externalPlaces.addresses << firstAddress(*record);
            }
        }
    }
    for (const ExtBinInfo &info : extBinInfos) {
        form.externalPlaces.modes << info.regionMode;
        form.externalPlaces.numbers << info.regionNumber;
        form.externalPlaces.keyAddresses << info.keyAddress;
    }
    return form;
}

void TwinTab::restoreFields(const SavedForm &form)
{
    m_form->field(Row::Key)->setPath(form.key);
    m_form->field(Row::Nonce)->setPath(form.nonce);
    m_form->field(Row::OptionBytes)->setPath(form.optionBytes);
    m_form->field(Row::Output)->setPath(form.output);
    m_form->field(Row::KeyArea)->setPath(form.keyArea);
    m_form->setRamText(form.ram);
    m_form->setTokenText(form.token);
    m_form->setImageVersion(form.imageVersion);
}

void TwinTab::restoreFiles(Row row, const QStringList &paths, const SavedPlaces &places)
{
    int next = 0;
    for (const QString &path : paths) {
        if (path.isEmpty()) {
            ++next;  // nothing to report, but its place is not the next file's
            continue;
        }
        auto record = openFor(row, path);
        const bool hasEntry =
            row != Row::External || (record ? isPlaced(record->type) : soundsPlaced(path));
        const int entry = hasEntry ? next++ : next;
        if (!record) {
            continue;
        }
        if (!restorePlace(row, *record, places, entry)) {
            showBox(m_near.form, BoxKind::Error, QStringLiteral("Corrupted settings file"));
            break;
        }
        appendFile(row, path, std::move(record));
    }
    updateGenerate();
}

bool TwinTab::restorePlace(Row row, FileData &record, const SavedPlaces &places, int at)
{
    const bool isBinary = record.type == file_type::kBinary;
    if (row == Row::External && isPlaced(record.type)) {
        if (!holds(places, at)) {
            return false;
        }
        extBinInfos.append({places.addresses[at].toUInt(), places.numbers[at].toUInt(),
                            places.modes[at].toUInt(), places.keyAddresses[at].toUInt()});
    }
    if (isBinary && !record.segments.empty()) {
        if (at >= places.addresses.size()) {
            return false;
        }
        record.segments.front().address = places.addresses[at].toUInt();
    }
    return true;
}

}  // namespace workbench
