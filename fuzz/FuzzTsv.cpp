#include "FuzzFile.h"
#include "FuzzSupport.h"

#include "files/FileManager.h"

#include <cstring>
#include <cwchar>
#include <string_view>

std::vector<std::vector<std::uint8_t>> fuzzSeeds()
{
    std::vector<std::vector<std::uint8_t>> seeds;
    for (const std::string_view text :
         {"#Opt\tId\n-\t0x01\tfsbl\tBinary\tnone\t0x0\ta.bin b\r\n", "P\t1\tn\tt\ti\tboot1\tb",
          "P\t\t1\tn\tt\ti\t0xZZ\tb\n\n"}) {
        seeds.emplace_back(text.begin(), text.end());
    }
    return seeds;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    FuzzFile file("a.tsv", {data, size});
    FuzzReports reports;
    const files::RecordOwner<FileTSV> layout(new FileTSV);
    const bool accepted = FileManager().filter_tsv_file(&file, layout.get());
    require(reports.levels() == (accepted ? std::vector<int>{} : std::vector<int>{5}));
    require(accepted == (layout->text != nullptr) && accepted != layout->partitions.empty());
    if (!accepted) {
        return 0;
    }
    // The filtered text is the rows, written again.
    std::string text;
    for (const partition &row : layout->partitions) {
        const char *const middle[] = {row.name, row.partitionType, row.ip, row.offset};
        const std::size_t begin = text.size();
        text += std::string(row.opt) + "\t";
        // The number's text isn't kept.
        const char *const id = layout->text + 256 + text.size();
        text.append(id, std::strcspn(id, "\t"));
        for (const char *column : middle) {
            text += std::string("\t") + column;
        }
        text += "\n";
        require(text.size() - begin <= layout->textSize);
        require(std::wcscspn(row.binary, L"\r\n ") == std::wcslen(row.binary));
    }
    require(layout->textSize == 256 + text.size() && layout->text[layout->textSize] == '\0');
    require(std::memcmp(layout->text + 256, text.data(), text.size()) == 0);
    return 0;
}
