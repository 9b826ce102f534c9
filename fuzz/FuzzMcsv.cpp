#include "FuzzFile.h"
#include "FuzzSupport.h"

#include "files/FileManager.h"
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
    FuzzFile file(moduleFolder().path("list.mcsv"), {data, size});
    FuzzReports reports;
    FileManager manager;
    const files::RecordOwner<FileMCSV> list(new FileMCSV);
    const bool accepted = manager.extract_mcsv_config(&file, list.get());
    const auto &levels = reports.levels();
    require(accepted == (std::count(levels.begin(), levels.end(), 5) == 0));
    if (accepted) {
        requireWholeModules(*list);
    }
    return 0;
}
