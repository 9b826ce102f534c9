#pragma once
#include "obk/KeyInput.h"
#include "process/RunTool.h"

namespace obk
{

/// The real tools: the key service, and the image tool beside the executable.
/// @param watch  what happens while the image tool runs; cancelling makes its request fail
KeyTools systemTools(const process::ToolWatch &watch = {});

}  // namespace obk
