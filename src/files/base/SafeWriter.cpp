#include "files/base/SafeWriter.h"

#include "files/base/Progress.h"

#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace files
{

namespace
{

/// A file descriptor that closes itself.
class Handle
{
public:
    explicit Handle(int number = -1) : m_number(number) {}
    ~Handle() { close(); }
    Handle(const Handle &) = delete;
    Handle &operator=(const Handle &) = delete;

    [[nodiscard]] int number() const { return m_number; }
    void reset(int number)
    {
        close();
        m_number = number;
    }
    /// @return false when the system reported a late write fault
    bool close()
    {
        const int number = std::exchange(m_number, -1);
        return number < 0 || ::close(number) == 0;
    }

private:
    int m_number;
};

tl::unexpected<Error> systemFault(ErrorCode code, const QString &path, int number)
{
    // Said of an output, "No such file" would send the user looking for the wrong thing.
    const char *const reason = number == ENOENT ? "No such folder" : std::strerror(number);
    return fail(code, QFileInfo(path).fileName().toStdString() + ": " + reason);
}

QByteArray folderOf(const QByteArray &name)
{
    const int slash = name.lastIndexOf('/');
    return slash < 0 ? QByteArray("./") : name.left(slash + 1);
}

/// Follows the symbolic links at the end of a path, the last of which may dangle, so that the
/// links themselves survive. Works on bytes: a link may lead to a name that isn't UTF-8.
/// @return the file's own name; or empty, with errno set, when the links never end
QByteArray linkTarget(QByteArray name)
{
    constexpr int kMostLinks = 40;
    for (int hop = 0; hop < kMostLinks; ++hop) {
        QByteArray next(PATH_MAX, '\0');
        const ssize_t length =
            ::readlink(name.constData(), next.data(), static_cast<std::size_t>(next.size()));
        if (length < 0) {
            return name;  // no link, or nothing there yet
        }
        next.truncate(static_cast<int>(length));
        name = next.startsWith('/') ? next : folderOf(name) + next;
    }
    errno = ELOOP;
    return {};
}

/// Creates a file of its own beside `target`. Its short name fits also where the target's name is
/// as long as a name can be.
/// @return an open handle and the name; or -1 with errno set
std::pair<int, QByteArray> createBeside(const QByteArray &target, mode_t mode)
{
    constexpr int kTries = 100;
    for (int i = 0; i < kTries; ++i) {
        const quint64 random = QRandomGenerator::system()->generate64();
        const QByteArray name = folderOf(target) + ".spb-" + QByteArray::number(random, 36);
        // The system applies the umask and the folder's own rules to the mode.
        const int handle = ::open(name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
        if (handle >= 0 || errno != EEXIST) {
            return {handle, name};
        }
    }
    return {-1, {}};
}

/// Gives the new file the old one's mode, and its owner and group where the system allows that.
bool takeOver(int handle, const struct stat &old)
{
    struct stat own = {};
    if (::fstat(handle, &own) == 0 && (own.st_uid != old.st_uid || own.st_gid != old.st_gid) &&
        ::fchown(handle, old.st_uid, old.st_gid) != 0) {
        // Only root may give files away; the group is often still possible. Neither is a reason
        // to refuse the user's output.
        static_cast<void>(::fchown(handle, static_cast<uid_t>(-1), old.st_gid) == 0);
    }
    return ::fchmod(handle, old.st_mode & 07777) == 0;  // last: a change of owner drops mode bits
}

}  // namespace

struct SafeWriter::State {
    QString path;          ///< as given, for error texts
    QByteArray target;     ///< where the file will stand
    QByteArray temporary;  ///< where it grows; empty when there is none to remove
    LastingCalls calls;
    Handle file;
    std::uint64_t written = 0;
    bool failed = false;

    ~State() { discard(); }

    /// Removes what was written; a failed writer may live on while its failure is shown.
    void discard()
    {
        file.close();
        if (!temporary.isEmpty()) {
            ::unlink(temporary.constData());
            temporary.clear();
        }
    }

    tl::unexpected<Error> giveUp(int number)
    {
        failed = true;
        discard();
        return systemFault(ErrorCode::WriteFailed, path, number);
    }
};

SafeWriter::SafeWriter(std::unique_ptr<State> state) : m_state(std::move(state)) {}
SafeWriter::SafeWriter(SafeWriter &&) noexcept = default;
SafeWriter &SafeWriter::operator=(SafeWriter &&) noexcept = default;
SafeWriter::~SafeWriter() = default;

Result<SafeWriter> SafeWriter::open(const QString &path, Secrecy secrecy, LastingCalls calls)
{
    if (path.isEmpty() || path.contains(QChar(u'\0'))) {
        return systemFault(ErrorCode::CannotOpen, path, ENOENT);
    }
    auto state = std::make_unique<State>();
    state->path = path;
    state->calls = std::move(calls);
    const QByteArray given = QFile::encodeName(path);
    struct stat old = {};
    const bool exists = ::stat(given.constData(), &old) == 0;
    if (exists && !S_ISREG(old.st_mode)) {
        return fail(ErrorCode::CannotOpen,
                    QFileInfo(path).fileName().toStdString() + " is not a regular file");
    }
    if (exists && secrecy != Secrecy::Secret) {
        // A rename would quietly replace a file that its owner has made read-only.
        const Handle probe(::open(given.constData(), O_WRONLY | O_CLOEXEC | O_NONBLOCK));
        if (probe.number() < 0) {
            return systemFault(ErrorCode::CannotOpen, path, errno);
        }
    }
    state->target = linkTarget(given);
    if (state->target.isEmpty()) {
        return systemFault(ErrorCode::CannotOpen, path, errno);
    }
    // What will take over an old mode starts private, so that it is never wider than that.
    const bool isPrivate = exists || secrecy != Secrecy::Public;
    const auto [handle, name] = createBeside(state->target, isPrivate ? 0600 : 0666);
    if (handle < 0) {
        return systemFault(ErrorCode::CannotOpen, path, errno);
    }
    state->file.reset(handle);
    state->temporary = name;
    if (exists && secrecy == Secrecy::Public && !takeOver(handle, old)) {
        return systemFault(ErrorCode::CannotOpen, path, errno);
    }
    return SafeWriter(std::move(state));
}

Result<void> SafeWriter::write(std::span<const std::uint8_t> bytes)
{
    // Whoever writes piece by piece doesn't say how many there will be.
    const std::uint64_t all = bytes.size() > kProgressStep ? m_state->written + bytes.size() : 0;
    while (!bytes.empty()) {
        const std::size_t step = std::min(bytes.size(), kProgressStep);
        const ssize_t count = ::write(m_state->file.number(), bytes.data(), step);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            return m_state->giveUp(count < 0 ? errno : ENOSPC);
        }
        m_state->written += static_cast<std::uint64_t>(count);
        bytes = bytes.subspan(static_cast<std::size_t>(count));
        if (m_state->written > kProgressStep) {
            tellProgress(Activity::Writing, m_state->path, m_state->written, all);
        }
    }
    return {};
}

std::uint64_t SafeWriter::written() const
{
    return m_state->written;
}

Result<void> SafeWriter::commit()
{
    if (m_state->failed) {
        return fail(ErrorCode::WriteFailed, "an earlier write failed");
    }
    m_state->failed = true;  // a second commit must not report success
    if (m_state->calls.sync(m_state->file.number()) != 0 || !m_state->file.close()) {
        return m_state->giveUp(errno);
    }
    if (m_state->calls.rename(m_state->temporary.constData(), m_state->target.constData()) != 0) {
        return m_state->giveUp(errno);
    }
    m_state->temporary.clear();
    tellCommitted();
    // The content is in place; a folder that can't be synced (some network file systems) only
    // delays its durability, so that alone is no failure.
    const Handle folder(
        ::open(folderOf(m_state->target).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder.number() >= 0) {
        m_state->calls.sync(folder.number());
    }
    return {};
}

Result<void> writeWhole(const QString &path, std::span<const std::uint8_t> bytes, Secrecy secrecy)
{
    auto writer = SafeWriter::open(path, secrecy);
    if (!writer) {
        return tl::unexpected<Error>(writer.error());
    }
    if (auto written = writer->write(bytes); !written) {
        return written;
    }
    return writer->commit();
}

}  // namespace files
