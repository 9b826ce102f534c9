#include "FuzzFile.h"

#include "report/DisplayMng.h"
#include "support/ScratchFolder.h"

#include <sys/mman.h>
#include <unistd.h>

FuzzFile::FuzzFile(const QString &name, std::span<const std::uint8_t> bytes) : m_name(name)
{
    const int handle = ::memfd_create("input", MFD_CLOEXEC);
    require(handle >= 0);
    require(::write(handle, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()));
    require(open(handle, QIODevice::ReadOnly | QIODevice::Unbuffered, AutoCloseHandle));
}

FuzzPath::FuzzPath(const QString &name)
    : m_handle(::memfd_create("input", MFD_CLOEXEC)), m_path(fuzzPath(name))
{
    require(m_handle >= 0);
    require(QFile::link(QStringLiteral("/proc/self/fd/%1").arg(m_handle), m_path));
}

void FuzzPath::fill(std::span<const std::uint8_t> bytes) const
{
    require(::ftruncate(m_handle, 0) == 0);
    require(::pwrite(m_handle, bytes.data(), bytes.size(), 0) ==
            static_cast<ssize_t>(bytes.size()));
}

QString fuzzPath(const QString &name)
{
    static const ScratchFolder folder;
    return folder.path(name);
}

FuzzReports::FuzzReports()
{
    DisplayMng::getInstance().displayCallback = [this](int level, const wchar_t *) {
        m_levels.push_back(level);
    };
}

FuzzReports::~FuzzReports()
{
    DisplayMng::getInstance().displayCallback = nullptr;
}
