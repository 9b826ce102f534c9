#pragma once
#include "crypto/token/TokenModules.h"

#include <utility>

namespace crypto
{

/// Keeps other programs of the same user off a token's counters while it lives: PKCS#11 has no call
/// that compares and writes in one. The system frees it with the program, however that ends.
class TokenLock
{
public:
    /// Waits at most five seconds. @return Refused when another program holds it for longer
    static files::Result<TokenLock> take(const TokenInfo &token);

    TokenLock(TokenLock &&other) noexcept : m_file(std::exchange(other.m_file, -1)) {}
    TokenLock(const TokenLock &) = delete;
    TokenLock &operator=(const TokenLock &) = delete;
    ~TokenLock();

private:
    explicit TokenLock(int file) : m_file(file) {}
    int m_file;  ///< descriptor; -1 for none
};

}  // namespace crypto
