#include "crypto/token/TokenLock.h"

#include "crypto/primitives/Digests.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QThread>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace crypto
{

using files::ErrorCode;
using files::fail;
using files::Result;

Result<TokenLock> TokenLock::take(const TokenInfo &token)
{
    // Milliseconds.
    constexpr int kPatience = 5000;
    constexpr int kPause = 10;
    // The token's own texts are no file name.
    const auto digest = sha256(
        ByteView(reinterpret_cast<const std::uint8_t *>(token.uri.data()), token.uri.size()));
    if (!digest) {
        return tl::unexpected(digest.error());
    }
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    const QByteArray name(reinterpret_cast<const char *>(digest->data()), 8);
    const QString path = (folder.isEmpty() ? QDir::tempPath() : folder) +
                         QStringLiteral("/spb-token-") + QString::fromLatin1(name.toHex()) +
                         QStringLiteral(".lock");
    // The system's own lock: one that stands in a file's content could outlive a killed program.
    TokenLock lock(::open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    if (lock.m_file < 0) {
        return fail(ErrorCode::CannotOpen,
                    "The lock file " + path.toStdString() + " can't be made.");
    }
    for (int waited = 0; ::flock(lock.m_file, LOCK_EX | LOCK_NB) != 0; waited += kPause) {
        if (waited >= kPatience) {
            return fail(ErrorCode::Refused, "Another program is at work with the token " +
                                                token.label +
                                                ": wait until it is done and try again.");
        }
        QThread::msleep(kPause);
    }
    return lock;
}

TokenLock::~TokenLock()
{
    if (m_file >= 0) {
        ::close(m_file);
    }
}

}  // namespace crypto
