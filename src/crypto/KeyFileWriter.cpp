#include "crypto/KeyFileWriter.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace crypto
{

QString fromBytes(const unsigned char *path)
{
    return QFile::decodeName(reinterpret_cast<const char *>(path));
}

files::Result<files::SafeWriter> openKeyFile(const QString &path, OldFile old)
{
    if (old == OldFile::MustBeUsable) {
        // The writer of secrets would rename over a read-only file.
        const QByteArray name = QFile::encodeName(path);
        const int file = ::open(name.constData(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
        if (file < 0 && errno != ENOENT) {
            return files::fail(files::ErrorCode::CannotOpen, std::strerror(errno));
        }
        if (file >= 0) {
            ::close(file);
        }
    }
    return files::SafeWriter::open(path, files::Secrecy::Secret);
}

Written writeKeyFile(const QString &path, OldFile old, const std::function<bool(BIO *)> &encode)
{
    auto writer = openKeyFile(path, old);
    if (!writer) {
        return Written::NotCreated;
    }
    const Bio memory(BIO_new(BIO_s_mem()));
    if (!memory || !encode(memory.get())) {
        return Written::NotWritten;
    }
    char *text = nullptr;
    const long size = BIO_get_mem_data(memory.get(), &text);
    const std::span bytes(reinterpret_cast<const std::uint8_t *>(text),
                          static_cast<std::size_t>(size));
    return writer->write(bytes) && writer->commit() ? Written::Done : Written::NotWritten;
}

}  // namespace crypto
