#include "crypto/service/KeyFileWriter.h"

namespace crypto
{

QString fromBytes(const unsigned char *path)
{
    return QFile::decodeName(reinterpret_cast<const char *>(path));
}

Written writeKeyFile(const QString &path, files::Secrecy secrecy,
                     const std::function<bool(BIO *)> &encode)
{
    auto writer = files::SafeWriter::open(path, secrecy);
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
