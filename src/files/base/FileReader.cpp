#include "files/base/FileReader.h"

#include <QFileInfo>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace files
{

namespace
{

std::string nameOf(const QString &path)
{
    return QFileInfo(path).fileName().toStdString();
}

}  // namespace

Result<void> openForReading(QFile &file, const QString &path)
{
    // O_NONBLOCK: opening a FIFO without a writer would hang the window.
    const int handle =
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (handle < 0) {
        const bool missing = errno == ENOENT || errno == ENOTDIR;
        return fail(missing ? ErrorCode::NotFound : ErrorCode::CannotOpen,
                    nameOf(path) + ": " + std::strerror(errno));
    }
    struct stat status = {};
    if (::fstat(handle, &status) != 0 || !S_ISREG(status.st_mode)) {
        ::close(handle);
        return fail(ErrorCode::NotRegular, nameOf(path) + " is not a regular file");
    }
    file.setFileName(path);
    if (!file.open(handle, QIODevice::ReadOnly | QIODevice::Unbuffered,
                   QFileDevice::AutoCloseHandle)) {
        ::close(handle);
        return fail(ErrorCode::CannotOpen, nameOf(path) + ": " + file.errorString().toStdString());
    }
    return {};
}

Result<ByteBuffer> readAll(QFile &file, std::uint64_t limit)
{
    const auto size = static_cast<std::uint64_t>(file.size());
    if (size > limit) {
        return fail(ErrorCode::TooLarge, nameOf(file.fileName()) + " has " + std::to_string(size) +
                                             " bytes, more than " + std::to_string(limit));
    }
    ByteBuffer buffer = ByteBuffer::allocate(static_cast<std::size_t>(size));
    if (!buffer) {
        return fail(ErrorCode::NoMemory, "no memory for " + std::to_string(size) + " bytes");
    }
    if (!file.seek(0)) {
        return fail(ErrorCode::ReadFailed, nameOf(file.fileName()) + ": can't go to its start");
    }
    std::uint64_t got = 0;
    while (got < size) {
        const qint64 count = file.read(reinterpret_cast<char *>(buffer.data() + got),
                                       static_cast<qint64>(size - got));
        if (count <= 0) {
            return fail(ErrorCode::ReadFailed, nameOf(file.fileName()) + " ends after " +
                                                   std::to_string(got) + " of " +
                                                   std::to_string(size) + " bytes");
        }
        got += static_cast<std::uint64_t>(count);
    }
    return buffer;
}

}  // namespace files
