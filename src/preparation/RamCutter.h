#pragma once
#include "preparation/Plan.h"

namespace preparation
{

/// Makes a plan fit an installer with little RAM: cuts firmware areas that are larger than the room
/// and, with a token, groups the areas into parts that end with a pause and begin with a resume.
/// @param ramSize       bytes; 0 leaves the plan as it is, and so does one that holds all areas
/// @param tokenAddress  0 for no parts
/// @return TooLarge when the RAM can't hold a usable piece, an area that can't be cut is larger
///         than the room, or the pieces are more than a container can count
files::Result<Plan> cutForRam(Plan plan, std::uint32_t ramSize, std::uint32_t tokenAddress);

}  // namespace preparation
