#pragma once
#include "files/base/Result.h"

#include <QString>

#include <cstdint>
#include <cstdio>
#include <functional>
#include <memory>
#include <span>
#include <unistd.h>

namespace files
{

/// Who may read what is written.
enum class Secrecy {
    Public,  ///< an old file's mode stays; a new one gets the usual mode under the umask
    Secret,  ///< 0600 before the first byte; an old read-only file may be replaced
    SecretUnlessLocked,  ///< likewise, but an old file that can't be written is refused
};

/// What the writer asks of the system to make a file last. Tests hand in their own, to see what a
/// failure does and in which order they are called.
struct LastingCalls {
    std::function<int(int)> sync = ::fsync;
    std::function<int(const char *, const char *)> rename = ::rename;
};

/// Writes one output file so that it appears whole or not at all.
///
/// The bytes go to a temporary file beside the target; `commit()` checks every result, syncs the
/// file, renames it over the target and syncs the folder. Until then, and after any failure, the
/// old file is as it was and nothing else is left, nor by a writer dropped without `commit()`.
/// Symbolic links are followed, dangling ones too (the file they name is replaced or made, the link
/// stays). A replaced public file keeps its mode, and its owner and group where the system allows
/// it.
class SafeWriter
{
public:
    /// Makes the temporary file.
    /// @return the writer; CannotOpen when the target (but for Secrecy::Secret, an existing one
    ///         too) can't be opened for writing, is a folder or no regular file
    static Result<SafeWriter> open(const QString &path, Secrecy secrecy = Secrecy::Public,
                                   LastingCalls calls = {});

    SafeWriter(SafeWriter &&) noexcept;
    SafeWriter &operator=(SafeWriter &&) noexcept;
    ~SafeWriter();

    /// Appends bytes; may be called many times. @return WriteFailed when the system took fewer
    Result<void> write(std::span<const std::uint8_t> bytes);

    /// Bytes appended so far.
    [[nodiscard]] std::uint64_t written() const;

    /// Puts the file in its place. @return WriteFailed, and then the old file stands
    Result<void> commit();

private:
    struct State;
    explicit SafeWriter(std::unique_ptr<State> state);
    std::unique_ptr<State> m_state;
};

/// `open`, one `write`, `commit`.
Result<void> writeWhole(const QString &path, std::span<const std::uint8_t> bytes,
                        Secrecy secrecy = Secrecy::Public);

}  // namespace files
