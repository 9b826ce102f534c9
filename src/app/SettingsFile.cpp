#include "app/SettingsFile.h"

#include "files/base/FileReader.h"
#include "files/base/SafeWriter.h"

#include <QFileInfo>
#include <QSettings>
#include <QTemporaryDir>

namespace app
{

namespace
{

using files::ErrorCode;
using files::Result;
using workbench::SavedForm;

constexpr std::uint64_t kLargest = 4 * 1024 * 1024;

struct TextKey {
    const char *name;
    QString SavedForm::*member;
};

// The spelling of the last key is the one that the files of all versions have.
const TextKey kTexts[] = {
    {"Encryption key file", &SavedForm::key},       {"Nonce file", &SavedForm::nonce},
    {"Option bytes file", &SavedForm::optionBytes}, {"Available RAM size", &SavedForm::ram},
    {"Continuation Token", &SavedForm::token},      {"ouput SFI file", &SavedForm::output},
};

/// QSettings on a copy of the file: it would open whatever lies there, hang on a FIFO, and write
/// back with faults unseen. The copy's folder can be entered by its owner only.
class IniCopy
{
public:
    Result<void> fill(std::span<const std::uint8_t> bytes) const
    {
        return files::writeWhole(path(), bytes, files::Secrecy::Secret);
    }
    [[nodiscard]] QString path() const { return m_folder.filePath(QStringLiteral("Settings.ini")); }

private:
    QTemporaryDir m_folder;
};

Result<files::ByteBuffer> readBytes(const QString &path)
{
    QFile file;
    if (auto opened = files::openForReading(file, path); !opened) {
        return tl::unexpected<files::Error>(opened.error());
    }
    return files::readAll(file, kLargest);
}

/// Groups of the file nest: all others lie inside "Window".
QString keyOf(const char *group, const char *name)
{
    return QStringLiteral("Window/") + QLatin1String(group) + '/' + QLatin1String(name);
}

class Group
{
public:
    Group(QSettings &ini, const char *name) : m_ini(ini), m_name(name) {}

    [[nodiscard]] QString text(const char *key) const { return value(key).toString(); }

    /// QVariant would take any text but "0" and "false" for true.
    [[nodiscard]] bool flag(const char *key, bool otherwise) const
    {
        const QVariant found = value(key, otherwise);
        if (found.type() != QVariant::String) {
            return found.toBool();
        }
        const QString text = found.toString().toLower();
        return text == QLatin1String("true") || text.toInt() != 0;
    }

    /// An emptied list reads as one empty text. Others keep theirs: they count in the lists beside.
    [[nodiscard]] QStringList texts(const char *key) const
    {
        const QStringList all = value(key).toStringList();
        return all == QStringList(QString()) ? QStringList() : all;
    }
    /// A list of one number that was typed into the file reads as a plain text.
    [[nodiscard]] QList<QVariant> numbers(const char *key) const
    {
        const QVariant found = value(key);
        if (found.type() == QVariant::String && !found.toString().isEmpty()) {
            return {found};
        }
        return found.toList();
    }
    [[nodiscard]] QVariant value(const char *key, const QVariant &otherwise = {}) const
    {
        return m_ini.value(keyOf(m_name, key), otherwise);
    }
    void set(const char *key, const QVariant &value) { m_ini.setValue(keyOf(m_name, key), value); }

private:
    QSettings &m_ini;
    const char *m_name;
};

void loadFields(const Group &group, SavedForm &form)
{
    for (const TextKey &key : kTexts) {
        form.*key.member = group.text(key.name);
    }
    form.imageVersion = group.value("Image version").toInt();
}

void storeFields(Group &group, const SavedForm &form)
{
    for (const TextKey &key : kTexts) {
        group.set(key.name, form.*key.member);
    }
    group.set("Image version", form.imageVersion);
}

SavedState load(QSettings &ini)
{
    SavedState state;
    state.windowSize = ini.value(QStringLiteral("Window/size")).toSize();
    state.lastFolder = ini.value(QStringLiteral("Window/path")).toString();
    const Group settings(ini, "Settings");
    state.paddingFF = settings.flag("Pad", state.paddingFF);
    state.generateSettingsFile = settings.flag("SetCheck", state.generateSettingsFile);
    state.generateLogFile = settings.flag("logCheck", state.generateLogFile);
    state.logFilePath = settings.text("logLine");

    const Group sfi(ini, "SFI");
    loadFields(sfi, state.sfi);
    state.sfi.firmware = sfi.texts("firmware files");
    state.sfi.firmwarePlaces.addresses = sfi.numbers("Addresses");
    state.sfi.smi = sfi.texts("smi files");

    const Group sfix(ini, "SFIx");
    loadFields(sfix, state.sfix);
    state.sfix.firmware = sfix.texts("internal firmware files");
    state.sfix.firmwarePlaces.addresses = sfix.numbers("Internal addresses");
    state.sfix.external = sfix.texts("external firmware files");
    state.sfix.externalPlaces.addresses = sfix.numbers("External addresses");
    state.sfix.externalPlaces.modes = sfix.numbers("Mode");
    state.sfix.externalPlaces.numbers = sfix.numbers("Number");
    state.sfix.externalPlaces.keyAddresses = sfix.numbers("Key addresses");
    state.sfix.keyArea = sfix.text("Area byte file");
    return state;
}

void store(QSettings &ini, const SavedState &state)
{
    ini.setValue(QStringLiteral("Window/Size"), state.windowSize);
    ini.setValue(QStringLiteral("Window/path"), state.lastFolder);
    Group settings(ini, "Settings");
    settings.set("Pad", state.paddingFF);
    settings.set("SetCheck", state.generateSettingsFile);
    settings.set("logCheck", state.generateLogFile);
    settings.set("logLine", state.logFilePath);

    Group sfi(ini, "SFI");
    sfi.set("firmware files", state.sfi.firmware);
    sfi.set("Addresses", state.sfi.firmwarePlaces.addresses);
    storeFields(sfi, state.sfi);
    sfi.set("smi files", state.sfi.smi);

    Group sfix(ini, "SFIx");
    sfix.set("internal firmware files", state.sfix.firmware);
    sfix.set("Internal addresses", state.sfix.firmwarePlaces.addresses);
    sfix.set("external firmware files", state.sfix.external);
    sfix.set("External addresses", state.sfix.externalPlaces.addresses);
    sfix.set("Mode", state.sfix.externalPlaces.modes);
    sfix.set("Number", state.sfix.externalPlaces.numbers);
    sfix.set("Key addresses", state.sfix.externalPlaces.keyAddresses);
    sfix.set("Area byte file", state.sfix.keyArea);
    storeFields(sfix, state.sfix);
}

}  // namespace

Result<SavedState> readSettings(const QString &path)
{
    const auto bytes = readBytes(path);
    if (!bytes) {
        return tl::unexpected<files::Error>(bytes.error());
    }
    const IniCopy copy;
    if (auto filled = copy.fill(bytes->span()); !filled) {
        return tl::unexpected<files::Error>(filled.error());
    }
    QSettings ini(copy.path(), QSettings::IniFormat);
    return load(ini);
}

Result<void> writeSettings(const QString &path, const SavedState &state)
{
    const QFileInfo old(path);
    if (old.exists() && !old.isWritable()) {
        return files::fail(ErrorCode::CannotOpen, "the settings file is locked");
    }
    const IniCopy copy;
    if (const auto bytes = readBytes(path)) {
        if (auto filled = copy.fill(bytes->span()); !filled) {
            return filled;
        }
    } else if (bytes.error().code != ErrorCode::NotFound) {
        return tl::unexpected<files::Error>(bytes.error());
    }
    {
        QSettings ini(copy.path(), QSettings::IniFormat);
        store(ini, state);
        ini.sync();
        if (ini.status() == QSettings::AccessError) {
            return files::fail(ErrorCode::WriteFailed,
                               "the settings can't be prepared in " + copy.path().toStdString());
        }
    }
    const auto bytes = readBytes(copy.path());
    if (!bytes) {
        return tl::unexpected<files::Error>(bytes.error());
    }
    return files::writeWhole(path, bytes->span(), files::Secrecy::Secret);
}

}  // namespace app
