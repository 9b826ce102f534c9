#pragma once
#include <tl/expected.hpp>

#include <string>

namespace files
{

/// Why an operation was refused; callers branch on it, people read `Error::text`.
enum class ErrorCode {
    NotFound,     ///< no such file
    NotRegular,   ///< a folder, FIFO, device or socket where a regular file is wanted
    CannotOpen,   ///< exists, but can't be opened (or created) as asked
    ReadFailed,   ///< the system reported a fault while reading, or the file was cut meanwhile
    WriteFailed,  ///< a write, flush, sync, close or rename failed; the old content stands
    TooLarge,     ///< beyond a limit that the caller set
    NoMemory,     ///< an allocation failed
    Truncated,    ///< the bytes end before a field does
    BadDigit,     ///< a character that isn't a digit of the number's base
    BadChecksum,  ///< a record's sum doesn't match
    BadMagic,     ///< the bytes that tell the format are others: not such a file at all
    BadVersion,   ///< the format, but a version or class of it that isn't read
    BadKind,      ///< a letter or number that names no kind of record
    BadIndex,     ///< a record whose number isn't its place
    BadCount,     ///< a count that doesn't agree with another one, or is beyond its limit
    BadValue,     ///< a field holds a value that its format doesn't allow
    Missing,      ///< a part that every file of the format has
    Overlap,      ///< two blocks of memory that must not share an address
    WrongSize,    ///< the file's size isn't the one expected
    Refused,      ///< a rule of the program, not of the format, says no
    Reported,     ///< refused further down, where the reason has been reported
};

/// A refusal: the code for the caller, the sentence (with the numbers behind it) for the user.
struct Error {
    ErrorCode code = ErrorCode::Refused;
    std::string text;
};

template <typename T>
using Result = tl::expected<T, Error>;

/// Shorthand for `return fail(code, text);` in a function that returns a Result.
inline tl::unexpected<Error> fail(ErrorCode code, std::string text)
{
    return tl::unexpected<Error>(Error{code, std::move(text)});
}

}  // namespace files
