#pragma once
#include "crypto/primitives/Bytes.h"

#include <string>

namespace imgtool
{

/// Bytes as C text: two head lines, rows of four blanks and eight entries with a comma behind each,
/// the closing brace on a line of its own, then the length.
/// @param name  of the array: a C identifier
/// @param what  for the comment in the first line
/// @return room for all of it is made first, so no copy is left behind
std::string cArray(const std::string &name, const std::string &what, crypto::ByteView bytes);

/// Prints an array and wipes the text. @return the exit status
int printArray(const std::string &name, const std::string &what, crypto::ByteView bytes);

}  // namespace imgtool
