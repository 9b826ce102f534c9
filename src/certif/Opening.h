#pragma once
#include "certif/Chain.h"

namespace certif
{

/// Reads a finished certificate or chain. @return the whole message for the user
files::Result<Chain> openFinished(const QString &path);

/// Reads what others are to be joined to. A leaf is the end of a chain and without a root there is
/// no beginning, so both are refused, by what the file holds. @return as `openFinished`
files::Result<Chain> openUpper(const QString &path);

}  // namespace certif
