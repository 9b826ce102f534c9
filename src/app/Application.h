#pragma once

namespace app
{

/// The whole program: application object, style, window and event loop.
/// @return the process's exit status
int run(int argc, char **argv);

}  // namespace app
