#pragma once
#include "files/base/Result.h"
#include "files/base/Wipe.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace crypto
{

class TokenSession;

/// How close a token is to locking its PIN. PKCS#11 tells no number of tries.
enum class PinTries {
    NotTold,  ///< no wrong PIN since the last right one, as far as the token tells
    Few,      ///< at least one wrong PIN was tried
    Last,     ///< the next wrong PIN locks the token
    Locked,
};

/// "tries left: ..." as people read it.
const char *pinTriesText(PinTries tries);

/// One token that is plugged in. All texts are the token's own, hostile for all one knows.
struct TokenInfo {
    std::string uri;  ///< RFC 7512; names this token by label, serial, model and maker
    std::string label;
    std::string serial;
    std::string model;
    std::string maker;
    std::optional<std::uint64_t>
        freeBytes;  ///< of private memory; none when the token doesn't tell
    PinTries tries = PinTries::NotTold;
    bool hasPinPad = false;  ///< the PIN is typed at the token
    bool isWritable = true;  ///< not write-protected
    bool hasUserPin = true;  ///< a user PIN has been set
    std::string lacks;       ///< operations that licences need and the token hasn't; empty for none
};

/// The PKCS#11 modules that are registered with p11-kit, loaded and started. One object serves the
/// whole program; sessions keep it alive.
class TokenModules
{
public:
    /// Loads what is registered. A module that can't be started is left out.
    /// @return Missing with a sentence on what to install when there is no module that could have a
    ///         token to write to
    static files::Result<TokenModules> load();

    /// The tokens that are plugged in, each once, in the modules' order. Tokens that could never
    /// hold a licence key (trust stores and other read-only lists of certificates) are left out.
    [[nodiscard]] std::vector<TokenInfo> tokens() const;

    /// What a token tells now. @param uri  of `TokenInfo`, or any that names one token
    /// @return BadValue for a text that is no such URI; NotFound when no token, Refused when more
    /// than
    ///         one fits
    [[nodiscard]] files::Result<TokenInfo> find(const std::string &uri) const;

    /// Opens a token for reading and writing and logs its user in.
    /// @param pin  as typed, UTF-8; empty for a token with a PIN pad. Not kept.
    /// @return the refusals of `find`, and of the login as sentences
    [[nodiscard]] files::Result<TokenSession> open(const std::string &uri,
                                                   const files::SecretBytes &pin) const;

    struct Loaded;  ///< of p11-kit, which no header outside knows

private:
    explicit TokenModules(std::shared_ptr<Loaded> loaded) : m_loaded(std::move(loaded)) {}
    std::shared_ptr<Loaded> m_loaded;
};

}  // namespace crypto
