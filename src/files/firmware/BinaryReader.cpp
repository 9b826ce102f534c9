#include "files/firmware/BinaryReader.h"

#include "files/base/FileReader.h"

namespace files
{

Result<RecordOwner<FileData>> readBinary(QFile &file, std::uint32_t position, std::uint32_t size)
{
    RecordOwner<FileData> record(new FileData);
    record->type = file_type::kBinary;
    const qint64 wanted = size != 0 ? size : file.size();
    auto block = readBlock(file, position, wanted);
    if (!block) {
        return tl::unexpected<Error>(block.error());
    }
    storeOnlySegment(*record, std::move(*block), static_cast<std::uint32_t>(wanted));
    return record;
}

}  // namespace files
