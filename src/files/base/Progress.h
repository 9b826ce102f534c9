#pragma once
#include <QString>

#include <cstdint>

namespace files
{

/// What a long loop does with a file's bytes.
enum class Activity { Reading, Writing, Encrypting, Decrypting };

/// Thrown out of a long loop when its user gave it up. No std::exception: nothing between the loop
/// and the request may take it for a fault and report it. Everything on the way is given back.
struct Cancelled {
};

/// Hears of long loops on the thread that made it, while it lives; the watch before it rests.
/// Loops tell about once a MiB, and not at all for less.
class ProgressWatch
{
public:
    ProgressWatch();
    ProgressWatch(const ProgressWatch &) = delete;
    ProgressWatch &operator=(const ProgressWatch &) = delete;

    /// May throw `Cancelled`.
    /// @param path  of the file, empty when the bytes have none
    /// @param done  bytes so far
    /// @param of    bytes in all, 0 when nobody knows
    virtual void progressed(Activity activity, const QString &path, std::uint64_t done,
                            std::uint64_t of) = 0;

    /// An output file stands in its place: giving up can't undo that any more.
    virtual void committed() = 0;

    /// Whether somebody watches this thread.
    static bool isWatched();

protected:
    ~ProgressWatch();

private:
    ProgressWatch *m_before;
};

/// Loops look at their clock once for so many bytes.
inline constexpr std::size_t kProgressStep = std::size_t{1} << 20;

/// Tells the thread's watch, if there is one. @throws Cancelled
void tellProgress(Activity activity, const QString &path, std::uint64_t done, std::uint64_t of);
void tellCommitted();

}  // namespace files
