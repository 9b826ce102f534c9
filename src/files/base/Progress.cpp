#include "files/base/Progress.h"

namespace files
{

namespace
{

thread_local ProgressWatch *watchOfThread = nullptr;

}  // namespace

ProgressWatch::ProgressWatch() : m_before(watchOfThread)
{
    watchOfThread = this;
}

ProgressWatch::~ProgressWatch()
{
    watchOfThread = m_before;
}

bool ProgressWatch::isWatched()
{
    return watchOfThread != nullptr;
}

void tellProgress(Activity activity, const QString &path, std::uint64_t done, std::uint64_t of)
{
    if (watchOfThread != nullptr) {
        watchOfThread->progressed(activity, path, done, of);
    }
}

void tellCommitted()
{
    if (watchOfThread != nullptr) {
        watchOfThread->committed();
    }
}

}  // namespace files
