#pragma once
#include "files/base/Result.h"
#include "files/base/Wipe.h"

namespace crypto
{

/// Asks for a pass phrase on the terminal that standard input is, without echo.
/// @param question  such as "Pass phrase of key.pem: "
/// @param isTwice   asks again and refuses when the two differ
/// @return Missing when standard input is no terminal; BadValue when nothing was given, or two that
/// differ
files::Result<files::SecretBytes> askPassPhrase(const std::string &question, bool isTwice);

}  // namespace crypto
