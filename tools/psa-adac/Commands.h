#pragma once
#include "files/base/Result.h"

#include <string>
#include <vector>

namespace adac
{

using Paths = std::vector<std::string>;

/// Signs what a description tells, checks the result and writes the certificate.
/// @return the path that was written
files::Result<std::string> sign(const std::string &description);

/// Checks each certificate against the one before, the first against itself when it is a root, and
/// writes all of them as one Base64 text.
files::Result<void> chain(const std::string &out, const Paths &certificates);

/// Shows certificates and chains, binary or text, as a table or as JSON.
/// @return what to print
files::Result<std::string> show(const Paths &paths, bool json);

}  // namespace adac
