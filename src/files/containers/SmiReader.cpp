#include "files/containers/SmiReader.h"

#include "files/base/FileReader.h"
#include "files/containers/SfiFormat.h"

#include <algorithm>
#include <array>

namespace files
{

Result<RecordOwner<FileData>> readSmi(QFile &file)
{
    std::array<std::uint8_t, kMagicBytes> magic = {};
    if (!readExactly(file, magic)) {
        return fail(ErrorCode::Truncated, "Error while reading SMI magic header");
    }
    if (!std::ranges::equal(magic, kSmiMagic)) {
        return fail(ErrorCode::BadMagic, "it does not begin with SMIMAGIC");
    }
    RecordOwner<FileData> record(new FileData);
    record->type = file_type::kSmi;
    const qint64 size = file.size();
    auto block = readBlock(file, 0, size);
    if (!block) {
        const bool isShort = block.error().code == ErrorCode::ReadFailed;
        return fail(block.error().code,
                    isShort ? "Error while reading SMI data segment" : block.error().text);
    }
    storeOnlySegment(*record, std::move(*block), static_cast<std::uint32_t>(size));
    return record;
}

}  // namespace files
