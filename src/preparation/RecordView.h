#pragma once
#include "files/base/Records.h"
#include "files/base/Result.h"

#include <initializer_list>
#include <span>
#include <string>

namespace preparation
{

/// Refuses a record whose type isn't one of `accepted`.
/// @param what  names the record in the refusal
files::Result<void> checkType(const FileType &record, std::initializer_list<std::uint32_t> accepted,
                              const std::string &what);

/// The segments of a record by its own count, which is read in preference to the list's size.
/// @return BadValue for a null record, a wrong type, a count beyond the list, or a segment whose
///         size says more than nothing while it has no bytes
files::Result<std::span<const SegmentData>>
checkedSegments(const FileData *record, std::initializer_list<std::uint32_t> accepted,
                const std::string &what);

}  // namespace preparation
