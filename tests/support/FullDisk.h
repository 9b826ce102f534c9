#pragma once
#include <csignal>
#include <sys/resource.h>

/// Refuses whatever a file would hold beyond `bytes`, as a full disk does in the middle of a write.
class FullDisk
{
public:
    explicit FullDisk(rlim_t bytes) : m_oldHandler(std::signal(SIGXFSZ, SIG_IGN))
    {
        ::getrlimit(RLIMIT_FSIZE, &m_old);
        const rlimit limit = {bytes, m_old.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FullDisk()
    {
        ::setrlimit(RLIMIT_FSIZE, &m_old);
        std::signal(SIGXFSZ, m_oldHandler);
    }
    FullDisk(const FullDisk &) = delete;
    FullDisk &operator=(const FullDisk &) = delete;

private:
    rlimit m_old = {};
    void (*m_oldHandler)(int);
};
