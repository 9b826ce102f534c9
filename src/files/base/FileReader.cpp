#include "files/base/FileReader.h"

#include "files/base/PageBlock.h"
#include "files/base/Progress.h"

#include <QFileInfo>

#include <algorithm>
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
    // encodeName would end at a zero character and name another file.
    if (path.contains(QChar(u'\0'))) {
        return fail(ErrorCode::NotFound, "a file name can't hold a zero character");
    }
    // O_NONBLOCK: opening a FIFO without a writer would hang the window.
    const int probe =
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (probe < 0) {
        const bool missing = errno == ENOENT || errno == ENOTDIR;
        return fail(missing ? ErrorCode::NotFound : ErrorCode::CannotOpen,
                    nameOf(path) + ": " + std::strerror(errno));
    }
    struct stat status = {};
    const bool isRegular = ::fstat(probe, &status) == 0 && S_ISREG(status.st_mode);
    ::close(probe);
    if (!isRegular) {
        return fail(ErrorCode::NotRegular, nameOf(path) + " is not a regular file");
    }
    // A QFile opened over a handle forgets its name, which messages need; so it opens once more.
    file.setFileName(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        return fail(ErrorCode::CannotOpen, nameOf(path) + ": " + file.errorString().toStdString());
    }
    struct stat opened = {};
    if (::fstat(file.handle(), &opened) != 0 || opened.st_dev != status.st_dev ||
        opened.st_ino != status.st_ino) {
        file.close();
        return fail(ErrorCode::CannotOpen, nameOf(path) + " was replaced while it was opened");
    }
    return {};
}

Result<void> readExactly(QFile &file, std::span<std::uint8_t> out)
{
    std::size_t got = 0;
    while (got < out.size()) {
        const std::size_t step = std::min(out.size() - got, kProgressStep);
        const qint64 count =
            file.read(reinterpret_cast<char *>(out.data() + got), static_cast<qint64>(step));
        if (count <= 0) {
            return fail(ErrorCode::ReadFailed, nameOf(file.fileName()) + " ends after " +
                                                   std::to_string(got) + " of " +
                                                   std::to_string(out.size()) + " bytes");
        }
        got += static_cast<std::size_t>(count);
        if (out.size() > kProgressStep) {
            tellProgress(Activity::Reading, file.fileName(), got, out.size());
        }
    }
    return {};
}

Result<MallocArray<std::uint8_t>> readBlock(QFile &file, qint64 offset, qint64 size)
{
    // What the file hasn't got can't be read, so nothing is allocated for it.
    const bool isThere = size <= std::max<qint64>(0, file.size() - offset);
    MallocArray<std::uint8_t> block;
    if (size >= 0 && size <= UINT32_MAX) {
        block = allocateBlock(isThere ? static_cast<std::size_t>(size) + 1 : 1);
    }
    if (!block) {
        return fail(ErrorCode::NoMemory, "Unable to allocate enough memory to read the file");
    }
    if (!file.seek(offset)) {
        return fail(ErrorCode::CannotOpen, "Unable to find fPosition");
    }
    if (!isThere || !readExactly(file, {block.get(), static_cast<std::size_t>(size)})) {
        return fail(ErrorCode::ReadFailed, "Error while reading the file");
    }
    return block;
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
    if (auto whole = readExactly(file, buffer.span()); !whole) {
        return tl::unexpected<Error>(std::move(whole).error());
    }
    return buffer;
}

}  // namespace files
