#include "files/base/KeyFile.h"

#include "files/base/FileReader.h"

namespace files
{

Result<SecretBytes> readKeyFile(const QString &path, std::uint64_t expectedSize)
{
    constexpr std::uint64_t kMaximum = std::uint64_t{16} * 1024 * 1024;
    QFile file;
    if (const auto opened = openForReading(file, path); !opened) {
        return tl::unexpected<Error>(opened.error());
    }
    const auto size = static_cast<std::uint64_t>(file.size());
    if ((expectedSize != 0 && size != expectedSize) || size > kMaximum) {
        return fail(ErrorCode::WrongSize, "the file holds " + std::to_string(size) +
                                              " bytes, expected are " +
                                              std::to_string(expectedSize));
    }
    // The file is unbuffered, so these bytes are the only copy in this process.
    SecretBytes bytes(static_cast<std::size_t>(size));
    if (auto whole = readExactly(file, {bytes.data(), bytes.size()}); !whole) {
        return tl::unexpected<Error>(std::move(whole).error());
    }
    return bytes;
}

}  // namespace files
