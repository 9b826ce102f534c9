#pragma once
#include "files/base/Result.h"

namespace crypto
{

/// The refusal of an operation whose library failed, and an empty error queue: what it held must
/// not be taken for a later operation's failure.
/// @param what  the operation, for "The cryptographic library failed at ..."
tl::unexpected<files::Error> libraryFailure(const char *what);

}  // namespace crypto
