#pragma once
#include "preparation/ImageSealer.h"

#include <functional>
#include <string>
#include <vector>

namespace preparation
{

/// How a checked plan becomes an image; arguments as those of `sealImage`. Tests hand in one that
/// goes wrong.
using SealFunction = std::function<files::Result<QByteArray>(const Plan &, ByteView, ByteView)>;

/// Plans, checks, cuts, checks again, seals, opens the image again and compares it with the plan.
/// @param outNotices  what the user should know of the finished image
/// @return the image; or why there is none
files::Result<QByteArray> buildSfi(const SfiRequest &request, std::vector<std::string> &outNotices,
                                   const SealFunction &seal = &sealImage);

}  // namespace preparation
