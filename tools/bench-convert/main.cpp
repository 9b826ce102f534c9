#include "files/FileManager.h"
#include "report/DisplayMng.h"
#include "tools/console/Program.h"

#include <QFile>

namespace
{

void printMessage(int level, const wchar_t *text)
{
    if (level == 4 || level == 5) {
        console::complain(0, QString::fromWCharArray(text).toStdString());
    }
}

bool holdsSegments(const FileType &record)
{
    switch (record.type) {
    case file_type::kBinary:
    case file_type::kIntelHex:
    case file_type::kSRecord:
    case file_type::kElf:
        return true;
    default:
        return false;
    }
}

/// Writes in the format that the target's ending names; raw binary for all others.
bool save(FileManager &manager, FileData *image, const QString &target)
{
    const std::wstring path = target.toStdWString();
    if (target.endsWith(QLatin1String(".hex"), Qt::CaseInsensitive)) {
        return manager.SaveHexFile(image, path);
    }
    if (target.endsWith(QLatin1String(".srec"), Qt::CaseInsensitive) ||
        target.endsWith(QLatin1String(".s19"), Qt::CaseInsensitive)) {
        return manager.SaveSrecFile(image, path);
    }
    return manager.SaveFile(image, path) >= 0;
}

int convert(const QString &source, const QString &target)
{
    FileManager manager;
    manager.setDisplayCallback(&printMessage);
    FileType *opened = nullptr;
    if (!manager.Open(source.toStdWString(), &opened, 0xFF, 0, 0)) {
        return console::kNotReadable;
    }
    // The process ends with the record: freeing a million segments one by one would be measured,
    // too.
    static FileType *const record = opened;
    if (!holdsSegments(*record)) {
        return console::complain(console::kNotReadable, "the input is no firmware file");
    }
    return save(manager, static_cast<FileData *>(record), target) ? console::kFine
                                                                  : console::kOutputFailed;
}

}  // namespace

/// Opens a firmware file and writes it in another format, with the program's own reader and writer,
/// to compare their speed and memory with those of other tools.
int main(int argc, char **argv)
{
    const auto takesTwo = [](const console::Arguments &files) -> files::Result<void> {
        if (files.size() != 2) {
            return files::fail(files::ErrorCode::BadValue, "two files have to be named");
        }
        return {};
    };
    return console::runProgram(
        argc, argv,
        {.name = "bench-convert",
         .help =
             "Usage: bench-convert IN OUT\n"
             "OUT is written as Intel HEX (.hex), S-records (.srec, .s19) or else raw binary.\n",
         .check = takesTwo,
         .run = [](const console::Arguments &files) {
             return convert(QFile::decodeName(files[0].c_str()),
                            QFile::decodeName(files[1].c_str()));
         }});
}
