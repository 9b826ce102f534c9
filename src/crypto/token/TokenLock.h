#pragma once
#include "crypto/token/TokenModules.h"

#include <QLockFile>

namespace crypto
{

/// Keeps other programs of the same user off a token's counters while it lives: PKCS#11 has no call
/// that compares and writes in one. A program that was killed holds no lock.
class TokenLock
{
public:
    /// Waits at most five seconds. @return Refused when another program holds it for longer
    static files::Result<TokenLock> take(const TokenInfo &token);

private:
    explicit TokenLock(std::unique_ptr<QLockFile> file) : m_file(std::move(file)) {}
    std::unique_ptr<QLockFile> m_file;
};

}  // namespace crypto
