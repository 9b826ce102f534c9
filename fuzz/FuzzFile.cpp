#include "FuzzFile.h"

#include "report/DisplayMng.h"

#include <sys/mman.h>
#include <unistd.h>

FuzzFile::FuzzFile(const QString &name, std::span<const std::uint8_t> bytes) : m_name(name)
{
    const int handle = ::memfd_create("input", MFD_CLOEXEC);
    require(handle >= 0);
    require(::write(handle, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()));
    require(open(handle, QIODevice::ReadOnly | QIODevice::Unbuffered, AutoCloseHandle));
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
