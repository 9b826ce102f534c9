#include "FuzzWords.h"

#include "files/FileManager.h"
#include "files/tables/ModulesReader.h"
#include "support/ScratchFolder.h"

#include <algorithm>
#include <cstring>

namespace
{

/// The files that good lists name.
const ScratchFolder &moduleFolder()
{
    static const ScratchFolder made;
    static const bool isFilled = [] {
        made.file("m.bin", "module");
        made.file("m.smu", "signed");
        made.file("l.lic", "licence");
        made.file("m.hex", ":020000040800F2\n:020000001122CB\n:01003000339C\n");
        return true;
    }();
    require(isFilled);
    return made;
}

std::vector<std::uint8_t> bytesOf(std::string_view text)
{
    return {text.begin(), text.end()};
}

void requireWholeModules(const FileMCSV &list)
{
    require(list.moduleCount == list.modules.size());
    require(list.moduleCount >= 1 && list.moduleCount <= 8);
    for (const SegmentDataMCSV &module : list.modules) {
        require(std::strlen(module.moduleName) != 0);
        require(module.hsmFwIdSize <= 15);
        require(module.licenceIsFile == 0 || module.hsmFwIdSize == 0);
        // Touches every byte, so that a size that lies is seen by the sanitizer.
        require(std::count(module.module, module.module + module.moduleSize, 0) >= 0);
    }
}

}  // namespace

std::vector<std::vector<std::uint8_t>> fuzzSeeds()
{
    return {bytesOf("# modules\n./m.bin,./l.lic,0x08000000\n\n./m.smu , HSM id , 8010000\n"
                    "./m.hex,none,none\n./m.bin,./gone.lic,0\n"),
            bytesOf("./m.hex,./l.lic,0x08000004\n"),
            bytesOf("./m.bin,,1\n./m.bin,,2\n./m.bin,,3\n./m.bin,,4\n./m.bin,,5\n./m.bin,,6\n"
                    "./m.bin,,7\n./m.bin,,8\n./m.bin,,9\n")};
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    bool openFailed = false;
    int warnings = 0;
    files::ModuleServices services;
    services.openHex = [&openFailed](const QString &path) {
        FileType *opened = nullptr;
        openFailed = !FileManager().Open(path.toStdWString(), &opened, 0xFF, 0, 0);
        return files::RecordOwner<FileData>(static_cast<FileData *>(opened));
    };
    services.warn = [&warnings](const std::string &text) {
        require(text.starts_with("Module hex file : "));
        ++warnings;
    };
    const QString path = moduleFolder().path("list.mcsv");
    const auto list =
        files::readModules({reinterpret_cast<const char *>(data), size}, path, services);
    if (list) {
        require(warnings <= 8 && !openFailed);
        requireWholeModules(**list);
        return 0;
    }
    using files::ErrorCode;
    const std::string invalid = path.toStdString() + " is an invalid mcsv file";
    const std::string notConform = "mcsv file " + path.toStdString() + " is not conform";
    const std::string badValue = invalid + "\n";
    const std::string noModule = invalid + "\nNo module is mentioned !";
    require(openFailed == (list.error().code == ErrorCode::Reported));
    requireWords(list.error(), {{ErrorCode::BadCount, invalid},
                                {ErrorCode::BadCount, notConform},
                                {ErrorCode::BadValue, badValue},
                                {ErrorCode::BadValue, "Module file : "},
                                {ErrorCode::NotFound, "License file : "},
                                {ErrorCode::NotFound, "Module file : "},
                                {ErrorCode::CannotOpen, "Unable to open the file: "},
                                {ErrorCode::ReadFailed, "Error while reading the file"},
                                {ErrorCode::TooLarge, "Module hex file : "},
                                {ErrorCode::Missing, noModule},
                                {ErrorCode::NoMemory, "Unable to allocate memory"},
                                {ErrorCode::Reported, ""}});
    return 0;
}
