#include "crypto/token/TokenSession.h"

#include "crypto/token/TokenObjects.h"

namespace crypto
{

TokenSession::TokenSession(std::unique_ptr<State> state) : m_state(std::move(state)) {}
TokenSession::TokenSession(TokenSession &&) noexcept = default;
TokenSession &TokenSession::operator=(TokenSession &&) noexcept = default;
TokenSession::~TokenSession() = default;

const TokenInfo &TokenSession::info() const
{
    return m_state->info;
}

}  // namespace crypto
