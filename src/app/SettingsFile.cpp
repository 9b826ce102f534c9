#include "app/SettingsFile.h"

#include "files/base/FileReader.h"
#include "files/base/SafeWriter.h"

#include <QFileInfo>
#include <QSettings>
#include <QTemporaryDir>

#include <algorithm>
#include <optional>
#include <string_view>

namespace app
{

namespace
{

using files::ErrorCode;
using files::Result;
using workbench::SavedGroup;

constexpr std::uint64_t kLargest = std::uint64_t{4} * 1024 * 1024;

/// QSettings on a copy of the file: it would open whatever lies there, hang on a FIFO, and write
/// back with faults unseen. The copy's folder can be entered by its owner only.
class IniCopy
{
public:
    IniCopy() = default;
    // Removed twice where the first call fails: Qt's own destructor gives up at once.
    ~IniCopy() { m_folder.remove(); }
    Q_DISABLE_COPY_MOVE(IniCopy)

    Result<void> fill(std::span<const std::uint8_t> bytes) const
    {
        return files::writeWhole(path(), bytes, files::Secrecy::Secret);
    }
    [[nodiscard]] QString path() const { return m_folder.filePath(QStringLiteral("Settings.ini")); }

private:
    QTemporaryDir m_folder;
};

/// The number of an escape, which ends before what is no digit of its base. What doesn't fit into
/// 16 bits is lost.
std::uint16_t escapedNumber(std::string_view &text, unsigned base)
{
    const std::string_view digits = "0123456789abcdef";
    unsigned value = 0;
    while (!text.empty()) {
        const auto digit =
            digits.find(static_cast<char>(QChar::fromLatin1(text.front()).toLower().unicode()));
        if (digit >= base) {
            break;
        }
        value = (value * base + static_cast<unsigned>(digit)) & UINT16_MAX;
        text.remove_prefix(1);
    }
    return static_cast<std::uint16_t>(value);
}

/// One step through the file's text: the character that QSettings makes of an escape or a plain
/// byte; none for a quote and a line that goes on.
std::optional<std::uint16_t> nextCharacter(std::string_view &text)
{
    const auto take = [&text] {
        const char byte = text.front();
        text.remove_prefix(1);
        return byte;
    };
    const char byte = take();
    if (byte == '"') {
        return std::nullopt;
    }
    if (byte != '\\' || text.empty()) {
        return static_cast<std::uint8_t>(byte);
    }
    if (text.front() >= '0' && text.front() <= '7') {
        return escapedNumber(text, 8);
    }
    const char letter = take();
    if (letter == 'x') {
        return escapedNumber(text, 16);
    }
    constexpr std::string_view kLetters = "abfnrtv\"?'\\";
    const std::size_t known = kLetters.find(letter);
    return known == std::string_view::npos
               ? std::nullopt
               : std::optional<std::uint16_t>("\a\b\f\n\r\t\v\"?'\\"[known]);
}

/// Whether a stream of Qt, from its first byte on, is a list of one number or text: what QSettings
/// makes of such a list.
bool isListOfOne(std::string_view text)
{
    constexpr std::uint8_t kHead[] = {0, 0, 0, QVariant::List, 0, 0, 0, 1, 0, 0, 0};
    std::vector<std::uint16_t> bytes;
    while (bytes.size() <= std::size(kHead) && !text.empty()) {
        if (const auto character = nextCharacter(text)) {
            bytes.push_back(*character);
        }
    }
    const std::uint16_t type = bytes.size() > std::size(kHead) ? bytes.back() : 0;
    return std::equal(std::begin(kHead), std::end(kHead), bytes.begin(),
                      bytes.begin() +
                          static_cast<std::ptrdiff_t>(std::min(bytes.size(), std::size(kHead)))) &&
           ((type >= QVariant::Bool && type <= QVariant::Double) || type == QVariant::String);
}

/// Whether a value may be another stream of Qt. This program writes none, and reading one allocates
/// as much as the file says.
bool holdsForeignStream(std::span<const std::uint8_t> bytes)
{
    constexpr std::string_view kStream = "@Variant(";
    std::string_view text(reinterpret_cast<const char *>(bytes.data()), bytes.size());
    std::uint16_t last = 0;  // that was no blank
    for (std::size_t found = 0; !text.empty();) {
        const auto character = nextCharacter(text);
        if (!character) {
            continue;
        }
        // Only in front of a value or of a list's entry; a text that begins so has another "@".
        const bool isStart = *character == kStream[0] && (last == '=' || last == ',');
        found = found != 0 && *character == kStream[found] ? found + 1 : isStart ? 1 : 0;
        if (found == kStream.size()) {
            if (!isListOfOne(text)) {
                return true;
            }
            found = 0;
        }
        last = QChar::isSpace(*character) ? last : *character;
    }
    return false;
}

Result<files::ByteBuffer> readBytes(const QString &path)
{
    QFile file;
    if (auto opened = files::openForReading(file, path); !opened) {
        return tl::unexpected<files::Error>(opened.error());
    }
    return files::readAll(file, kLargest);
}

Result<files::ByteBuffer> readIni(const QString &path)
{
    auto bytes = readBytes(path);
    if (bytes && holdsForeignStream(bytes->span())) {
        return files::fail(ErrorCode::BadValue, "the settings file holds a value of a kind that "
                                                "this program never writes");
    }
    return bytes;
}

// Groups of the file nest: all others lie inside "Window".
const QLatin1String kSizeRead("Window/size");
const QLatin1String kSizeWritten("Window/Size");
const QLatin1String kFolder("Window/path");
const QLatin1String kOuter("Window");
const QString kSettings = QStringLiteral("Settings");

SavedState load(QSettings &ini)
{
    SavedState state;
    SavedWindow &window = state.window;
    window.size = ini.value(kSizeRead).toSize();
    window.lastFolder = ini.value(kFolder).toString();
    ini.beginGroup(kOuter);
    const QStringList names = ini.childGroups();
    for (const QString &name : names) {
        ini.beginGroup(name);
        SavedGroup group;
        const QStringList keys = ini.allKeys();
        for (const QString &key : keys) {
            group.set(key, ini.value(key));
        }
        ini.endGroup();
        state.groups.push_back({name, group});
    }
    ini.endGroup();
    const SavedGroup settings = state.group(kSettings);
    window.paddingFF = settings.flag("Pad", window.paddingFF);
    window.generateSettingsFile = settings.flag("SetCheck", window.generateSettingsFile);
    window.generateLogFile = settings.flag("logCheck", window.generateLogFile);
    window.logFilePath = settings.text("logLine");
    return state;
}

void storeGroup(QSettings &ini, const QString &name, const SavedGroup &group)
{
    ini.beginGroup(kOuter);
    ini.beginGroup(name);
    for (const SavedGroup::Entry &entry : group.entries()) {
        ini.setValue(entry.key, entry.value);
    }
    ini.endGroup();
    ini.endGroup();
}

/// Whether a value came back from a file as what it was written as; a file knows texts and lists of
/// texts only.
bool isSame(const QVariant &written, QVariant read)
{
    if (written.type() == QVariant::List || written.type() == QVariant::StringList) {
        return written.toStringList() == read.toStringList();
    }
    return read == written || (read.convert(written.userType()) && read == written);
}

/// QSettings reports nothing when the disk under its file is full: what it wrote is read again.
bool holdsAll(std::span<const std::uint8_t> bytes, const QSettings &written)
{
    const IniCopy copy;  // of another name, since QSettings keeps what it knows of a file
    if (!copy.fill(bytes)) {
        return false;
    }
    const QSettings read(copy.path(), QSettings::IniFormat);
    const QStringList keys = written.allKeys();
    return read.allKeys().size() == keys.size() &&
           std::ranges::all_of(keys, [&](const QString &key) {
               return isSame(written.value(key), read.value(key));
           });
}

void store(QSettings &ini, const SavedState &state)
{
    const SavedWindow &window = state.window;
    ini.setValue(kSizeWritten, window.size);
    ini.setValue(kFolder, window.lastFolder);
    SavedGroup settings;
    settings.set("Pad", window.paddingFF);
    settings.set("SetCheck", window.generateSettingsFile);
    settings.set("logCheck", window.generateLogFile);
    settings.set("logLine", window.logFilePath);
    storeGroup(ini, kSettings, settings);
    for (const auto &[name, group] : state.groups) {
        storeGroup(ini, name, group);
    }
}

}  // namespace

SavedGroup SavedState::group(const QString &name) const
{
    const auto hit = std::ranges::find(groups, name, &Named::name);
    return hit == groups.end() ? SavedGroup() : hit->group;
}

Result<SavedState> readSettings(const QString &path)
{
    const auto bytes = readIni(path);
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
    if (const auto bytes = readIni(path)) {
        if (auto filled = copy.fill(bytes->span()); !filled) {
            return filled;
        }
    } else if (bytes.error().code != ErrorCode::NotFound &&
               bytes.error().code != ErrorCode::BadValue) {
        return tl::unexpected<files::Error>(bytes.error());
    }
    QSettings ini(copy.path(), QSettings::IniFormat);
    store(ini, state);
    ini.sync();
    const auto bytes = readBytes(copy.path());
    if (ini.status() == QSettings::AccessError || !bytes || !holdsAll(bytes->span(), ini)) {
        return files::fail(ErrorCode::WriteFailed,
                           "the settings can't be prepared in " + copy.path().toStdString());
    }
    return files::writeWhole(path, bytes->span(), files::Secrecy::Secret);
}

}  // namespace app
