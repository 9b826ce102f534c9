#pragma once
#include "crypto/token/LicenceStock.h"
#include "crypto/token/TokenObjects.h"

/// @file
/// How the objects of a stock are named and found; for the sources of this folder.

namespace crypto
{

inline constexpr CK_ULONG kDataObject = CKO_DATA;

inline const std::string kStockApplication = "SPB licence";
// What stands behind a data object's front.
inline const std::string kIdentifierPart = " identifier";
inline const std::string kNoncePart = " nonce";
inline const std::string kCounterPart = " counter";

using SetId = std::array<std::uint8_t, 8>;

/// The front of the labels of a set's data objects.
std::string frontOf(const SetId &set);

/// A point out of `CKA_EC_POINT`, which some tokens wrap into DER and some don't.
/// @return 64 bytes; none when it is no uncompressed point of 256 bits
std::vector<std::uint8_t> pointOf(const std::vector<std::uint8_t> &attribute);

/// The object of a class with a set's identifier. @return CK_INVALID_HANDLE when there is none
files::Result<CK_OBJECT_HANDLE> keyOf(const TokenSession::State &session, const SetId &set,
                                      CK_ULONG kind);

/// The data objects of a set with one part, or with all when it is empty.
files::Result<std::vector<CK_OBJECT_HANDLE>> dataOf(const TokenSession::State &session,
                                                    const SetId &set, const std::string &part);

/// The least value of a set's counters; none when there is no counter.
files::Result<std::optional<std::uint32_t>>
counterOf(const TokenSession::State &session, const std::vector<CK_OBJECT_HANDLE> &counters);

/// The sets that have data objects, each once.
files::Result<std::vector<SetId>> setsOf(const TokenSession::State &session);

/// "CKO_DATA, on the token, for the user alone", with a part's label.
/// @param label  must outlive the attributes
Attributes dataTemplate(const std::string &label, ByteView value);

inline constexpr std::array<std::uint8_t, 10> kP256Parameters = {0x06, 0x08, 0x2A, 0x86, 0x48,
                                                                 0xCE, 0x3D, 0x03, 0x01, 0x07};

}  // namespace crypto
