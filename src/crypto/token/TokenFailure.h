#pragma once
#include "files/base/Result.h"

#include <string>

namespace crypto
{

/// What a code of PKCS#11 (`CKR_...`) means for the person at the machine and what to do about it,
/// as a sentence or two; the code's name stands in brackets at the end.
std::string explainTokenCode(unsigned long code);

/// The refusal of a call.
/// @param doing  what failed, as the front of a sentence: "The token can't make the signing pair"
tl::unexpected<files::Error> tokenFailure(const std::string &doing, unsigned long code);

}  // namespace crypto
