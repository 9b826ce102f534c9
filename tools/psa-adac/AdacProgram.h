#pragma once
#include "tools/console/Program.h"

namespace adac
{

/// The whole program: options, their check, and the commands behind them.
console::Program program();

}  // namespace adac
