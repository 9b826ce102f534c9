#pragma once
#include "crypto/primitives/EcKey.h"
#include "crypto/token/LicenceStock.h"
#include "preparation/licence/LicenceFormat.h"

#include <functional>

namespace preparation
{

struct MadeLicence {
    std::uint32_t left = 0;  ///< licences that the token has now
    /// Whether the token derived the wrapping key itself; see `EphemeralPair::wrap`.
    bool derivedInToken = false;
};

/// Puts a licence where it belongs. @return its refusal gives the licence back to the token
using LicenceWriter = std::function<files::Result<void>(ByteView licence)>;

/// Makes one licence for a chip: takes it off the counter first, then makes, signs, checks and
/// writes it. A failure on the way gives it back.
/// @param chip  on P-256
/// @return the refusals of the token and of `write`; the text says so when the licence couldn't be
///         given back
files::Result<MadeLicence> makeLicence(const crypto::TokenSession &session,
                                       const crypto::LicenceStock &stock, const crypto::EcKey &chip,
                                       const LicenceWriter &write);

}  // namespace preparation
