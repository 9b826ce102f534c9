#pragma once
#include "crypto/primitives/Bytes.h"
#include "crypto/token/TokenSession.h"
#include "files/base/Result.h"

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

/// @file
/// What a token holds so that licences for one firmware can be made with it:
///
/// | Object | Class | Value |
/// |---|---|---|
/// | firmware key | secret key | AES, 16 bytes; sensitive, no use allowed but being wrapped |
/// | signing pair | private and public key | P-256, made in the token |
/// | nonce | data | 12 bytes |
/// | counter | data | licences left, u32 little-endian |
/// | identifier | data | 1, index, length and text of the identifier, length and text of the device
/// |
///
/// All have one identifier of 8 random bytes: `CKA_ID` of keys, and in lower-case hexadecimal the
/// front of the label of data objects, whose application is "SPB licence". The identifier object is
/// written last and removed first, so what has none is the rest of a programming that was cut
/// short. Of two counters the lower one counts.

namespace crypto
{

inline constexpr std::size_t kStockKeyBytes = 16;
inline constexpr std::size_t kStockNonceBytes = 12;
inline constexpr std::size_t kMostIdentifierBytes = 15;
inline constexpr std::size_t kMostDeviceBytes = 24;
inline constexpr std::uint32_t kMostLicences = 1'000'000'000;

using StockNonce = std::array<std::uint8_t, kStockNonceBytes>;

/// One firmware that a token can license.
struct LicenceStock {
    std::array<std::uint8_t, 8> setId{};  ///< common to its objects
    std::uint8_t index = 0;               ///< 1 to 255
    std::string identifier;               ///< 1 to 15 bytes without control characters
    std::string device;                   ///< at most 24 bytes without control characters
    StockNonce nonce{};
    std::uint32_t left = 0;                  ///< licences
    std::string keyCheck;                    ///< first bytes of the key's check value, as the token
                                             ///< tells them, hexadecimal; may be empty
    std::vector<std::uint8_t> signingPoint;  ///< X, then Y of the public key; 64 bytes
    std::string fault;  ///< why no licence can be made; empty when all is there
};

/// What is programmed. All views are the caller's.
struct StockRequest {
    std::string identifier;
    std::uint8_t index = 0;
    std::string device;
    ByteView key;    ///< 16 bytes
    ByteView nonce;  ///< 12 bytes
    std::uint32_t licences = 0;
};

/// Called before each step of a long operation.
/// @return false to give up, which undoes what was done
using TokenSteps = std::function<bool(int done, int of)>;

/// Why an identifier can't be used, as a sentence; empty for a good one.
std::string identifierFault(const std::string &identifier);

/// Reads all stocks, those with a fault included, by index.
files::Result<std::vector<LicenceStock>> readStocks(const TokenSession &session);

/// Those that have the identifier or the index already.
std::vector<LicenceStock> stocksLike(const std::vector<LicenceStock> &stocks,
                                     const std::string &identifier, std::uint8_t index);

/// Writes a stock; then removes those that it takes the place of, and what earlier programmings
/// that were cut short have left. Until the new one is whole the old ones stay.
/// @param replaced  see `stocksLike`; one that isn't listed here is never touched
/// @return the stock as the token gives it back; BadValue for a wrong size or number; Refused when
///         given up, or when a stock like it is there that isn't listed; the token's refusals
files::Result<LicenceStock> programStock(const TokenSession &session, const StockRequest &request,
                                         const std::vector<LicenceStock> &replaced,
                                         const TokenSteps &steps);

/// Takes one licence off the counter. A program that ends right behind it has lost one licence, and
/// never gained one. Programs of one user on one machine wait for each other.
/// @return licences that are left; Refused when there was none; the token's refusals
files::Result<std::uint32_t> takeLicence(const TokenSession &session, const LicenceStock &stock);

/// Puts one licence back, whose file wasn't made. @return as above
files::Result<std::uint32_t> giveBackLicence(const TokenSession &session,
                                             const LicenceStock &stock);

}  // namespace crypto
