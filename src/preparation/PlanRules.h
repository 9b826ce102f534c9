#pragma once
#include "preparation/Plan.h"

#include <optional>
#include <utility>

namespace preparation
{

/// Finds what comparing every extent with every later one would find first: the smallest first
/// index, and with it the smallest second one. Empty extents overlap nothing. Sorts, so a list of
/// 65,535 costs milliseconds.
std::optional<std::pair<std::size_t, std::size_t>>
firstOverlap(const std::vector<files::Range> &extents);

/// How the uncut areas may lie: below 2^32, nothing over something else, and no firmware in the
/// last Flash word of a module.
files::Result<void> checkPlacement(const Plan &plan);

/// What the finished list must keep so that every reader of the container takes it: number of
/// areas, bytes in all, and no wrapped end in a comparison of 32-bit sums.
files::Result<void> checkContainer(const Plan &plan);

/// The refusal for a plan of more areas than the container can count.
files::Error tooManyAreas(std::size_t atLeast);

}  // namespace preparation
