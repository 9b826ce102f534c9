#include "crypto/service/RandomFiles.h"

#include "crypto/service/Crypto.h"
#include "crypto/service/KeyFileWriter.h"
#include "files/base/Wipe.h"
#include "report/Level.h"

#include <QFile>

#include <new>
#include <openssl/rand.h>

using report::Level;

namespace
{

constexpr int kSspKeyBytes = 16;

void tell(Level level, const wchar_t *format, const QString &path, const std::string &reason = {})
{
    report::message(level, format, path.toUtf8().constData(), reason.c_str());
}

files::Result<files::SecretBytes> randomBytes(int size)
{
    try {
        files::SecretBytes bytes(size > 0 ? static_cast<std::size_t>(size) : 0);
        for (std::size_t at = 0; at < bytes.size(); ++at) {
            const int byte = randomByte();
            if (byte < 0) {
                return files::fail(files::ErrorCode::Refused, "the random source failed");
            }
            bytes.data()[at] = static_cast<std::uint8_t>(byte);
        }
        return bytes;
    } catch (const std::bad_alloc &) {
        return files::fail(files::ErrorCode::NoMemory, "there is no memory left");
    }
}

}  // namespace

files::Result<void> crypto::makeRandomFile(const QString &path, int size)
{
    const auto bytes = randomBytes(size);
    if (!bytes) {
        tell(Level::Error, L"The random source failed, no file was written : %s", path);
        return tl::unexpected(bytes.error());
    }
    if (QFile::exists(path)) {
        tell(Level::Warning, L"The file %s already exists, it will be overwritten", path);
    }
    // Random files aren't locked after they are made, so a locked one was meant to stay.
    auto writer = files::SafeWriter::open(path, files::Secrecy::SecretUnlessLocked);
    if (!writer) {
        tell(Level::Error, L"Failed to create output file : %s\n%s", path, writer.error().text);
        return tl::unexpected(writer.error());
    }
    auto written = writer->write(bytes->span());
    if (written) {
        written = writer->commit();
    }
    if (!written) {
        tell(Level::Error, L"Error while writing in file : %s file\n%s", path,
             written.error().text);
    }
    return written;
}

int randomByte()
{
    unsigned char byte = 0;
    return RAND_priv_bytes(&byte, 1) == 1 ? byte : -1;
}

int Crypto::generateSspKey(const QString &path)
{
    return crypto::makeRandomFile(path, kSspKeyBytes) ? 0 : -1;
}

int Crypto::generateSspKey(unsigned char *path)
{
    return generateSspKey(crypto::fromBytes(path));
}

int Crypto::generateEncryptionandNonce(const QString &path, int size)
{
    return crypto::makeRandomFile(path, size) ? 0 : -1;
}

int Crypto::generateEncryptionandNonce(unsigned char *path, int size)
{
    return generateEncryptionandNonce(crypto::fromBytes(path), size);
}
