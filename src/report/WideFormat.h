#pragma once
#include <cstdarg>
#include <cstddef>

namespace report
{

/// Formats like the C library's wide `printf`, but the same in every locale: numbers have a point,
/// `%s` reads UTF-8 (a byte that isn't UTF-8 prints as Latin-1), `%ls` prints every character as it
/// is, `%c` prints its byte as Latin-1, a NUL prints as nothing. Only the first message of a run
/// takes memory from the heap, and does without when there is none.
/// Conversions: d i u o x X c s C S p f F e E g G a A %, with all flags, `*`, and the lengths hh,
/// h, l, ll, j, z, t and L. `%n` stores nothing; an unknown conversion is printed as written.
/// @param out       receives the text and a terminator; longer text is cut at the end
/// @param capacity  characters in `out`, terminator included; at least 1
/// @return characters in `out` without the terminator
std::size_t formatWide(wchar_t *out, std::size_t capacity, const wchar_t *format,
                       va_list arguments);

}  // namespace report
