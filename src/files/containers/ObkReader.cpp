#include "files/containers/ObkReader.h"

#include "files/base/FileReader.h"
#include "files/containers/SfiFormat.h"

#include <array>
#include <new>

namespace files
{

Result<RecordOwner<FileOBK>> readObk(QFile &file)
{
    RecordOwner<FileOBK> record(new (std::nothrow) FileOBK);
    if (!record) {
        return fail(ErrorCode::NoMemory, "OBK Out of memory");
    }
    record->type = file_type::kObk;
    const qint64 size = file.size() - static_cast<qint64>(kObkHeadBytes);
    std::array<std::uint8_t, kObkHeadBytes> head = {};
    // A file shorter than its head is reported like a rest of absurd size: `readBlock` says so.
    if (size >= 0 && !readExactly(file, head)) {
        return fail(ErrorCode::ReadFailed, "Error while reading the file");
    }
    ByteCursor in(head);
    record->obkAddress = in.u32le();
    record->obkSize = in.u32le();
    record->obkWord3 = in.u32le();
    auto block = readBlock(file, kObkHeadBytes, size);
    if (!block) {
        return tl::unexpected<Error>(block.error());
    }
    storeOnlySegment(*record, std::move(*block), static_cast<std::uint32_t>(size));
    return record;
}

}  // namespace files
