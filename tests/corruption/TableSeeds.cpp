// Texts in lines: option bytes, key areas, modules lists, layouts, descriptions of certificates,
// settings.
#include "corruption/Harness.h"

#include "app/SettingsFile.h"
#include "certif/Description.h"
#include "files/FileManager.h"
#include "files/tables/CsvReader.h"
#include "files/tables/LayoutReader.h"
#include "files/tables/ModulesReader.h"
#include "support/ScratchFolder.h"

#include <cctype>
#include <cstring>
#include <string_view>

namespace corruption
{

namespace
{

using View = std::span<const std::uint8_t>;

std::string_view textOf(View file)
{
    return {reinterpret_cast<const char *>(file.data()), file.size()};
}

/// A text whose numbers behind "0x" are content of so many digits; the letters around them may be
/// anything that the reader takes.
Seed textSeed(const std::string &name, const std::string &text,
              std::optional<std::string> (*read)(View), unsigned around = kAny)
{
    Seed seed{name, {text.begin(), text.end()}, read};
    std::size_t at = 0;
    for (std::size_t found = 0; (found = text.find("0x", at)) != std::string::npos;) {
        std::size_t end = found + 2;
        while (end < text.size() && std::isxdigit(static_cast<unsigned char>(text[end])) != 0) {
            ++end;
        }
        seed.fields.push_back({at, found + 2 - at, "letters", around});
        seed.fields.push_back({found + 2, end - found - 2, "number", around & ~kSame, Form::Hex});
        at = end;
    }
    seed.fields.push_back({at, text.size() - at, "letters", around});
    seed.prefix = [around](std::size_t) { return around; };
    return seed;
}

template <files::ValueTable Table>
std::optional<std::string> readValues(View file)
{
    const auto values = files::readValues(textOf(file), Table);
    if (!values) {
        return std::nullopt;
    }
    const SegmentData &segment = (*values)->segments.at(0);
    return Content().add(View(segment.data, segment.size)).done();
}

std::optional<std::string> readLayout(View file)
{
    const auto layout = files::readLayout(textOf(file));
    if (!layout) {
        return std::nullopt;
    }
    Content content;
    for (const partition &row : layout->record->partitions) {
        for (const char *text : {row.opt, row.name, row.partitionType, row.ip, row.offset}) {
            content.add(std::string(text));
        }
        content.add(row.id).add(QString::fromWCharArray(row.binary).toStdString());
    }
    return content.done();
}

std::optional<std::string> readModules(View file)
{
    static const ScratchFolder folder;
    static const bool isFilled = !folder.file("m.bin", "module").isEmpty() &&
                                 !folder.file("m.smu", "signed").isEmpty() &&
                                 !folder.file("l.lic", "licence").isEmpty();
    files::ModuleServices services;
    services.openHex = [](const QString &) { return files::RecordOwner<FileData>(); };
    services.warn = [](const std::string &) {};
    const auto list = files::readModules(textOf(file), folder.path("list.mcsv"), services);
    if (!list || !isFilled) {
        return std::nullopt;
    }
    Content content;
    for (const SegmentDataMCSV &module : (*list)->modules) {
        content.add(std::string(module.moduleName)).add(module.address).add(module.licenceIsFile);
        content.add(View(module.module, module.moduleSize));
        content.add(View(module.licence, module.licenceSize));
        content.add(View(module.hsmFwId, module.hsmFwIdSize));
    }
    return content.done();
}

std::optional<std::string> readDescription(View file)
{
    const auto request =
        certif::parseDescription(QByteArray(textOf(file).data(), static_cast<int>(file.size())));
    if (!request) {
        return std::nullopt;
    }
    return Content()
        .add(certif::encode(request->certificate))
        .add((request->name + request->issuerKey + request->subjectKey).toStdString())
        .done();
}

std::optional<std::string> readSettings(View file)
{
    static const ScratchFolder folder;
    const auto state = app::readSettings(folder.file("Settings.ini", textOf(file)));
    if (!state) {
        return std::nullopt;
    }
    Content content;
    content.add(state->window.lastFolder.toStdString()).add(state->window.paddingFF ? 1 : 0);
    content.add(state->window.logFilePath.toStdString());
    for (const auto &[name, group] : state->groups) {
        content.add(name.toStdString());
        for (const auto &entry : group.entries()) {
            content.add((entry.key + entry.value.toStringList().join(';')).toStdString());
        }
    }
    return content.done();
}

}  // namespace

std::vector<Seed> tableSeeds()
{
    constexpr auto readPairs = &readValues<files::ValueTable::Pairs>;
    constexpr auto readBare = &readValues<files::ValueTable::BareValues>;
    const unsigned taken = kTaken;
    return {
        textSeed("CSV", "OPTR, 0x1FEFF8AA\nSECBOOTADD,0x0C000000\r\nWRP,0x000000FF\n", readPairs),
        textSeed("CSV, one line", "A,0x00000001,B,0x80000000", readPairs),
        textSeed("KCSV", "0x1A2B3C4D,0xFFFFFFFF\n0x10203040,0xdeadbeef\n", readBare),
        textSeed("MCSV", "# modules\n./m.bin,./l.lic,0x08000000\n./m.smu,HSM id,0x08010000\n",
                 readModules),
        textSeed("MCSV without licences", "./m.bin,none,0x08000000\n./m.bin,none,0x08010000\n",
                 readModules),
        textSeed("TSV", "#Opt\tId\n-\t0x01\tfsbl\tBinary\tnone\t0x00000000\ta.bin\r\n", readLayout),
        textSeed("TSV, two rows", "P\t0x10\tn\tt\ti\tboot1\tb\nPE\t0x11\tm\tt\ti\t0x1000\tc\n",
                 readLayout),
        textSeed("description",
                 "name: a\nissuer-key: k\nsubject-key: k\nrole: 1\nusage: 1\nlifecycle: 0x30\n"
                 "oem_constraint: 0x0102\nsoc_class: 0x5\nsoc_id: 0x1\n"
                 "permissions_mask: 0x0000_0001\n",
                 readDescription),
        // No file is refused: a value that makes no sense counts as missing.
        textSeed("settings",
                 "[Window]\nSize=@Size(800 600)\npath=/home/a\nSettings\\Pad=false\n"
                 "SFI\\list=a, \"b,c\", d\nSFI\\edit=\"x;\\x1f600\\n\"\n",
                 readSettings, taken),
        textSeed("settings of another kind",
                 "[General]\nsize=3\n[Window]\nsize=@Invalid()\nSettings\\Pad=@ByteArray(\\0a)\n",
                 readSettings, taken)};
}

}  // namespace corruption
