#pragma once
#include "crypto/token/TokenModules.h"

#include <memory>

namespace crypto
{

/// A token that is open, with its user logged in. Dropping it logs out, closes it, and with it go
/// all keys that were made for one licence only.
class TokenSession
{
public:
    TokenSession(TokenSession &&) noexcept;
    TokenSession &operator=(TokenSession &&) noexcept;
    ~TokenSession();

    /// What the token told when it was opened.
    [[nodiscard]] const TokenInfo &info() const;

    struct State;  ///< module and handle; for the operations of this folder
    explicit TokenSession(std::unique_ptr<State> state);
    [[nodiscard]] const State &state() const { return *m_state; }

private:
    std::unique_ptr<State> m_state;
};

}  // namespace crypto
