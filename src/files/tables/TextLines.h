#pragma once
#include <string_view>

namespace files
{

/// Takes the next line off the front of a text. Only line feeds end lines, the last may lack one.
/// @return the line without its line feed
inline std::string_view takeLine(std::string_view &text)
{
    const std::size_t end = text.find('\n');
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    return line;
}

}  // namespace files
