#include "files/FileManager.h"
#include "report/DisplayMng.h"

#include <QFile>

#include <cstdio>
#include <exception>

namespace
{

constexpr int kUsage = 3;

void printMessage(int level, const wchar_t *text)
{
    if (level == 4 || level == 5) {
        std::fprintf(stderr, "bench-convert: %s\n", QString::fromWCharArray(text).toUtf8().data());
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
        return 1;
    }
    // The process ends with the record: freeing a million segments one by one would be measured,
    // too.
    static FileType *const record = opened;
    if (!holdsSegments(*record)) {
        std::fprintf(stderr, "bench-convert: the input is no firmware file\n");
        return 1;
    }
    return save(manager, static_cast<FileData *>(record), target) ? 0 : 1;
}

}  // namespace

/// Opens a firmware file and writes it in another format, with the program's own reader and writer,
/// to compare their speed and memory with those of other tools.
int main(int count, char **arguments)
{
    if (count != 3) {
        std::fprintf(stderr, "Usage: bench-convert IN OUT\n"
                             "OUT is written as Intel HEX (.hex), S-records (.srec, .s19) or else "
                             "raw binary.\n");
        return kUsage;
    }
    try {
        return convert(QFile::decodeName(arguments[1]), QFile::decodeName(arguments[2]));
    } catch (const std::exception &fault) {
        std::fprintf(stderr, "bench-convert: %s\n", fault.what());
        return 1;
    }
}
