#pragma once
#include "report/DisplayMng.h"

namespace report
{

/// The levels of `DisplayMng::logMessage` by name.
enum class Level {
    Information = 1,  ///< box
    Success = 2,      ///< trace only
    Warning = 4,      ///< box, text behind "Warning: "
    Error = 5,        ///< box, text behind "Error: "
    Notice = 7,       ///< trace only
    Dump = 8,         ///< trace only; bytes
};

/// `DisplayMng::logMessage` with a named level. @param arguments  as the format takes them
template <typename... Arguments>
void message(Level level, const wchar_t *format, Arguments... arguments)
{
    DisplayMng::getInstance().logMessage(static_cast<int>(level), format, arguments...);
}

}  // namespace report
