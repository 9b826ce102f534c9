#include "files/base/SafeWriter.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

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
    return fail(code, QFileInfo(path).fileName().toStdString() + ": " + std::strerror(number));
}

/// Follows a chain of symbolic links, dangling ones too, so that the link itself survives.
QString linkTarget(QString path)
{
    constexpr int kMostLinks = 40;
    for (int hop = 0; hop < kMostLinks; ++hop) {
        const QFileInfo info(path);
        if (!info.isSymLink()) {
            break;
        }
        path = info.symLinkTarget();
    }
    return path;
}

/// The permissions that open() would give a new file.
mode_t usualMode()
{
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
}

}  // namespace

struct SafeWriter::State {
    QString target;
    QByteArray targetName;
    QByteArray temporaryName;
    Handle file;
    std::uint64_t written = 0;
    bool failed = false;

    ~State()
    {
        file.close();
        if (!temporaryName.isEmpty()) {
            ::unlink(temporaryName.constData());
        }
    }
};

SafeWriter::SafeWriter(std::unique_ptr<State> state) : m_state(std::move(state)) {}
SafeWriter::SafeWriter(SafeWriter &&) noexcept = default;
SafeWriter &SafeWriter::operator=(SafeWriter &&) noexcept = default;
SafeWriter::~SafeWriter() = default;

Result<SafeWriter> SafeWriter::open(const QString &path, Secrecy secrecy)
{
    auto state = std::make_unique<State>();
    state->target = linkTarget(path);
    state->targetName = QFile::encodeName(state->target);

    struct stat old = {};
    const bool exists = ::stat(state->targetName.constData(), &old) == 0;
    if (exists && !S_ISREG(old.st_mode)) {
        return fail(ErrorCode::CannotOpen,
                    QFileInfo(path).fileName().toStdString() + " is not a regular file");
    }
    if (exists && secrecy == Secrecy::Public) {
        // A rename would quietly replace a file that its owner has made read-only.
        const Handle probe(
            ::open(state->targetName.constData(), O_WRONLY | O_CLOEXEC | O_NONBLOCK));
        if (probe.number() < 0) {
            return systemFault(ErrorCode::CannotOpen, path, errno);
        }
    }

    QByteArray name = state->targetName + ".XXXXXX";
    state->file.reset(::mkostemp(name.data(), O_CLOEXEC));  // creates it with mode 0600
    if (state->file.number() < 0) {
        return systemFault(ErrorCode::CannotOpen, path, errno);
    }
    state->temporaryName = name;
    if (secrecy == Secrecy::Public) {
        const mode_t mode = exists ? old.st_mode & 07777 : usualMode();
        if (::fchmod(state->file.number(), mode) != 0) {
            return systemFault(ErrorCode::CannotOpen, path, errno);
        }
    }
    return SafeWriter(std::move(state));
}

Result<void> SafeWriter::write(std::span<const std::uint8_t> bytes)
{
    while (!bytes.empty()) {
        const ssize_t count = ::write(m_state->file.number(), bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            m_state->failed = true;
            return systemFault(ErrorCode::WriteFailed, m_state->target, count < 0 ? errno : ENOSPC);
        }
        m_state->written += static_cast<std::uint64_t>(count);
        bytes = bytes.subspan(static_cast<std::size_t>(count));
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
    if (::fsync(m_state->file.number()) != 0 || !m_state->file.close()) {
        return systemFault(ErrorCode::WriteFailed, m_state->target, errno);
    }
    if (::rename(m_state->temporaryName.constData(), m_state->targetName.constData()) != 0) {
        return systemFault(ErrorCode::WriteFailed, m_state->target, errno);
    }
    m_state->temporaryName.clear();
    // The content is in place; a folder that can't be synced (some network file systems) only
    // delays its durability, so that alone is no failure.
    const QByteArray folder = QFile::encodeName(QFileInfo(m_state->target).absolutePath());
    const Handle handle(::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (handle.number() >= 0) {
        ::fsync(handle.number());
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
