#include "FuzzFile.h"
#include "FuzzSupport.h"

#include "files/FileManager.h"
#include "files/base/LittleEndian.h"

namespace
{

std::vector<std::uint8_t> seed(std::uint16_t protectedBytes)
{
    std::vector<std::uint8_t> bytes(8);
    files::appendU16le(bytes, 32);
    files::appendU16le(bytes, protectedBytes);
    files::appendU32le(bytes, 8);
    bytes.resize(32 + 8);
    for (const std::uint16_t magic : {0x6908, 0x6907}) {
        files::appendU16le(bytes, magic);
        files::appendU16le(bytes, 4 + 6 + 4);
        files::appendU16le(bytes, 0xA0);
        files::appendU16le(bytes, 2);
        bytes.insert(bytes.end(), {1, 2});
        files::appendU32le(bytes, 0x7777);
    }
    return bytes;
}

}  // namespace

std::vector<std::vector<std::uint8_t>> fuzzSeeds()
{
    return {seed(14), seed(0), std::vector<std::uint8_t>(28, 0)};
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    FuzzFile file("a.smu", {data, size});
    FuzzReports reports;
    const files::RecordOwner<FileSMU> record(new FileSMU);
    require(FileManager().SMU_Parsing(&file, static_cast<long long>(size), record.get()));
    require(record->segments.at(0).size == size);
    require(reports.levels().size() <= 1);
    // Whole values only, so all of them together fit the file; reading them finds a short block.
    std::size_t bytes = 0;
    unsigned sum = 0;
    for (const auto *list : {&record->protectedTlvs, &record->tlvs}) {
        require(list->size() <= 65536);
        for (const TLV &entry : *list) {
            require(entry.name != nullptr);
            bytes += 4 + std::size_t{entry.length};
            for (std::uint16_t i = 0; i < entry.length; ++i) {
                sum += entry.value[i];
            }
        }
    }
    require(bytes <= size);
    return sum == 0xFFFFFFFF ? -1 : 0;
}
