#include "Commands.h"

#include "ChangeTable.h"
#include "files/FileManager.h"
#include "files/PostProcessing.h"
#include "files/base/FileReader.h"
#include "report/DisplayMng.h"

#include <QFile>
#include <QFileInfo>

namespace elf_tool
{

using console::complain;
using files::ErrorCode;
using files::Result;

namespace
{

int statusOf(ErrorCode code)
{
    switch (code) {
    case ErrorCode::Refused:
    case ErrorCode::Overlap:
    case ErrorCode::TooLarge:
        return console::kNotAuthentic;
    case ErrorCode::WriteFailed:
    case ErrorCode::NoMemory:
        return console::kOutputFailed;
    default:
        return console::kNotReadable;
    }
}

/// One line on standard error, unless the reason stands there already.
int give(const files::Error &error, int status)
{
    return error.code == ErrorCode::Reported ? status : complain(status, error.text);
}

QString pathOf(const std::string &word)
{
    return QFile::decodeName(word.c_str());
}

std::wstring wide(const std::string &word)
{
    return pathOf(word).toStdWString();
}

int show(const std::string &table)
{
    return console::print(table)
               ? static_cast<int>(console::kFine)
               : complain(console::kOutputFailed, "standard output can't be written");
}

/// The file's own words don't name it.
std::string named(const std::string &path, const files::Error &error)
{
    const bool isNamed =
        error.code != ErrorCode::CannotOpen && error.code != ErrorCode::WriteFailed;
    return isNamed ? error.text : path + ": " + error.text;
}

/// The common end of the commands that only know ELF files.
/// @param done  what is said of a file that was written
int finish(const Result<files::ElfRewrite> &rewrite, const Options &options,
           const std::string &path, const char *done)
{
    if (!rewrite) {
        const files::Error &error = rewrite.error();
        return give({error.code, named(path, error)}, statusOf(error.code));
    }
    for (const auto &fault : {overlapOf(*rewrite), shrunkMemory(*rewrite)}) {
        if (fault) {
            return complain(console::kNotAuthentic, *fault);
        }
    }
    if (options.isDryRun) {
        return show(changeTable(*rewrite));
    }
    if (const auto written = files::write(*rewrite, pathOf(path)); !written) {
        return complain(console::kOutputFailed, named(path, written.error()));
    }
    return complain(console::kFine, done);
}

int runCrc(const Options &options, const std::string &path)
{
    if (*options.flashEnd < *options.flashStart) {
        return complain(console::kUsage, "the flash range ends below its start");
    }
    FileManager manager;
    const files::CrcRange range = {*options.flashStart, *options.flashEnd, *options.slice};
    const auto padding = static_cast<std::uint8_t>(options.padding.value_or(0));
    auto rewrite = files::planCrc(manager, wide(path), range, padding);
    if (!rewrite) {
        return give(rewrite.error(), statusOf(rewrite.error().code));
    }
    if (rewrite->area.blocks.empty()) {
        return complain(console::kFine, files::kNothingInRange);
    }
    if (rewrite->area.meetsSkipped) {
        return complain(console::kNotAuthentic,
                        "a segment outside the range would share addresses with the CRCs area (the "
                        "table of an earlier run? Take the file as it was linked)");
    }
    if (rewrite->elf) {
        if (const auto fault = foreignSum(*rewrite)) {
            return complain(console::kNotAuthentic, *fault);
        }
        return finish(std::move(*rewrite->elf), options, path, "CRCs area injected successfully");
    }
    if (options.isDryRun) {
        const bool isBinary = rewrite->record->type == file_type::kBinary;
        return show(changeTable(
            *rewrite, isBinary ? static_cast<std::uint64_t>(QFileInfo(pathOf(path)).size()) : 0));
    }
    if (const auto written = files::writeCrc(manager, *rewrite, wide(path)); !written) {
        return give(written.error(), console::kOutputFailed);
    }
    return console::kFine;
}

int addSegment(const Options &options, const std::string &path)
{
    QFile file;
    const auto data = files::openForReading(file, pathOf(*options.data)).and_then([&file] {
        return files::readAll(file, UINT32_MAX);
    });
    if (!data) {
        return complain(console::kNotReadable, *options.data + ": " + data.error().text);
    }
    if (data->size() == 0) {
        return complain(console::kNotReadable, *options.data + " is empty");
    }
    return finish(files::planAddition(pathOf(path), data->span(), *options.address, *options.name,
                                      static_cast<std::uint8_t>(options.padding.value_or(0))),
                  options, path, "segment added");
}

int mergeSecure(const Options &options, const std::string &path)
{
    FileManager manager;
    return finish(
        files::planMerge(manager, wide(path), wide(*options.header), wide(*options.secure)),
        options, path, "ELF file modified successfully");
}

/// Messages of the readers and writers.
void tell(int level, const wchar_t *text)
{
    constexpr int kSuccess = 2;
    constexpr int kWarning = 4;
    constexpr int kError = 5;
    constexpr int kNotice = 7;
    if (level == kSuccess || level == kWarning || level == kError || level == kNotice) {
        complain(0, QString::fromWCharArray(text).trimmed().toStdString());
    }
}

}  // namespace

int run(const Options &options, const console::Arguments &words)
{
    DisplayMng::getInstance().displayCallback = tell;
    const std::string &command = words.at(0);
    const std::string &path = words.at(1);
    if (command == "crc") {
        return runCrc(options, path);
    }
    return command == "add-segment" ? addSegment(options, path) : mergeSecure(options, path);
}

}  // namespace elf_tool
