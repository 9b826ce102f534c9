#include "files/WholeFile.h"

#include "files/base/FileReader.h"
#include "report/DisplayMng.h"

namespace files
{

std::optional<ByteBuffer> readWholeFile(QFile &file)
{
    auto bytes = readAll(file);
    if (bytes) {
        return std::move(*bytes);
    }
    const bool isShort = bytes.error().code == ErrorCode::ReadFailed;
    DisplayMng::getInstance().logMessage(
        5, L"%ls", isShort ? L"Error while reading the file" : L"Unable to allocate memory");
    return std::nullopt;
}

}  // namespace files
