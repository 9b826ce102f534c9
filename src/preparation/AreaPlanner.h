#pragma once
#include "preparation/Plan.h"

namespace preparation
{

/// Turns a request into the list of areas in their order, uncut. Checks each input on its own
/// (sizes, record types, the heads of modules and SMI files); how areas lie to each other is
/// `PlanRules`.
/// @param notices  receives sentences for the trace: inputs that aren't used, values taken as 0
/// @return the plan, which refers to the request's records; or the refusal
files::Result<Plan> planAreas(const SfiRequest &request, std::vector<std::string> &notices);

}  // namespace preparation
