#include "crypto/token/TokenLock.h"

#include "crypto/primitives/Digests.h"

#include <QDir>
#include <QStandardPaths>

namespace crypto
{

using files::ErrorCode;
using files::fail;
using files::Result;

Result<TokenLock> TokenLock::take(const TokenInfo &token)
{
    constexpr int kPatience = 5000;  // milliseconds
    // The token's own texts are no file name.
    const auto digest = sha256(
        ByteView(reinterpret_cast<const std::uint8_t *>(token.uri.data()), token.uri.size()));
    if (!digest) {
        return tl::unexpected(digest.error());
    }
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    const QByteArray name(reinterpret_cast<const char *>(digest->data()), 8);
    auto file = std::make_unique<QLockFile>(
        (folder.isEmpty() ? QDir::tempPath() : folder) + QStringLiteral("/spb-token-") +
        QString::fromLatin1(name.toHex()) + QStringLiteral(".lock"));
    file->setStaleLockTime(0);  // only the death of its holder frees it
    if (!file->tryLock(kPatience)) {
        return fail(ErrorCode::Refused, "Another program is at work with the token " + token.label +
                                            ": wait until it is done and try again.");
    }
    return TokenLock(std::move(file));
}

}  // namespace crypto
