// What the SFI and SFIx tabs keep from one run to the next, and how it comes back.
#include "workbench/tabs/sfi/TwinTab.h"
#include "workbench/widgets/Boxes.h"

#include <QFileInfo>

#include <algorithm>

namespace workbench
{

namespace
{

// Keys of the settings file; the spelling of the last text is the one that all versions have.
struct SavedText {
    const char *key;
    QString TwinValues::*value;
};
const SavedText kSavedTexts[] = {
    {"Encryption key file", &TwinValues::keyPath},
    {"Nonce file", &TwinValues::noncePath},
    {"Option bytes file", &TwinValues::optionBytesPath},
    {"Available RAM size", &TwinValues::ramText},
    {"Continuation Token", &TwinValues::tokenText},
    {"ouput SFI file", &TwinValues::outputPath},
};
const QLatin1String kVersionKey("Image version");
const QLatin1String kSmiKey("smi files");
const QLatin1String kKeyAreaKey("Area byte file");

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

QString TwinTab::settingsGroup() const
{
    return QLatin1String(m_twin.settingsGroup);
}

void TwinTab::save(SavedGroup &group) const
{
    const FileRows &firmware = m_form->list(Row::Firmware)->rows();
    QList<QVariant> addresses;
    for (const FileData *record : firmware.records()) {
        addresses << firstAddress(*record);
    }
    group.set(QLatin1String(m_twin.savedFirmware), firmware.paths());
    group.set(QLatin1String(m_twin.savedAddresses), addresses);
    if (m_form->list(Row::External) != nullptr) {
        saveExternal(group);
    }
    for (const SavedText &text : kSavedTexts) {
        group.set(QLatin1String(text.key), m_form->values().*text.value);
    }
    group.set(kVersionKey, m_form->values().imageVersion);
    if (const FileList *smi = m_form->list(Row::Smi)) {
        group.set(kSmiKey, smi->rows().paths());
    }
}

void TwinTab::saveExternal(SavedGroup &group) const
{
    const FileRows &external = m_form->list(Row::External)->rows();
    QList<QVariant> addresses;
    for (const FileData *record : external.records()) {
        if (isPlaced(record->type)) {
            addresses << firstAddress(*record);
        }
    }
    QList<QVariant> modes;
    QList<QVariant> numbers;
    QList<QVariant> keyAddresses;
    for (const ExtBinInfo &info : extBinInfos) {
        modes << info.regionMode;
        numbers << info.regionNumber;
        keyAddresses << info.keyAddress;
    }
    group.set(QStringLiteral("external firmware files"), external.paths());
    group.set(QStringLiteral("External addresses"), addresses);
    group.set(QStringLiteral("Mode"), modes);
    group.set(QStringLiteral("Number"), numbers);
    group.set(QStringLiteral("Key addresses"), keyAddresses);
    group.set(kKeyAreaKey, m_form->field(Row::KeyArea)->path());
}

void TwinTab::restore(const SavedGroup &group)
{
    const auto path = [&group](const char *key) { return group.text(QLatin1String(key)); };
    m_form->field(Row::Key)->setPath(path("Encryption key file"));
    m_form->field(Row::Nonce)->setPath(path("Nonce file"));
    m_form->field(Row::OptionBytes)->setPath(path("Option bytes file"));
    m_form->field(Row::Output)->setPath(path("ouput SFI file"));
    if (m_form->list(Row::External) != nullptr) {
        m_form->field(Row::KeyArea)->setPath(group.text(kKeyAreaKey));
    }
    m_form->setRamText(path("Available RAM size"));
    m_form->setTokenText(path("Continuation Token"));
    m_form->setImageVersion(group.number(kVersionKey));
}

void TwinTab::restoreFiles(const SavedGroup &group)
{
    if (m_form->list(Row::Smi) != nullptr) {
        restoreList(Row::Smi, group.texts(kSmiKey), {});
    }
    restoreList(Row::Firmware, group.texts(QLatin1String(m_twin.savedFirmware)),
                {group.numbers(QLatin1String(m_twin.savedAddresses)), {}, {}, {}});
    if (m_form->list(Row::External) != nullptr) {
        restoreList(Row::External, group.texts(QStringLiteral("external firmware files")),
                    {group.numbers(QStringLiteral("External addresses")),
                     group.numbers(QStringLiteral("Mode")), group.numbers(QStringLiteral("Number")),
                     group.numbers(QStringLiteral("Key addresses"))});
    }
}

void TwinTab::restoreList(Row row, const QStringList &paths, const SavedPlaces &places)
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
            showBox(context().boxParent, BoxKind::Error, QStringLiteral("Corrupted settings file"));
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
