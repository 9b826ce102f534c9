#include "workbench/tokens/TokenWait.h"

#include "workbench/widgets/BusyCursor.h"
#include "workbench/widgets/LongWork.h"
#include "workbench/widgets/ToolProgress.h"

#include <QElapsedTimer>

#include <chrono>
#include <thread>

namespace workbench
{

TokenWait::TokenWait(QWidget *parent) : m_parent(parent) {}

TokenWait::~TokenWait() = default;

void TokenWait::run(const QString &what, const std::function<void()> &call)
{
    const BusyCursor busy;
    std::exception_ptr fault;
    m_isDone = false;
    m_shown = {what};
    std::thread worker([this, &call, &fault] {
        try {
            call();
        } catch (...) {
            fault = std::current_exception();
        }
        const std::lock_guard lock(m_mutex);
        m_isDone = true;
        m_changed.notify_all();
    });
    QElapsedTimer since;
    since.start();
    for (std::unique_lock lock(m_mutex); !m_isDone;) {
        const std::chrono::milliseconds pause(longWorkTimes.repaintMs);
        m_changed.wait_for(lock, pause, [this] { return m_isDone || m_step; });
        if (m_step) {
            answerStep(lock);
        } else if (!m_isDone && (m_box || since.elapsed() >= longWorkTimes.quietMs)) {
            lock.unlock();
            show();
            lock.lock();
        }
    }
    worker.join();
    m_box.reset();
    if (fault) {
        std::rethrow_exception(fault);
    }
}

bool TokenWait::step(const QString &what, int done, int of)
{
    std::unique_lock lock(m_mutex);
    m_step = Step{what, done, of};
    m_changed.notify_all();
    m_changed.wait(lock, [this] { return !m_step; });
    return !m_isCancelled;
}

void TokenWait::answerStep(std::unique_lock<std::mutex> &lock)
{
    m_shown = *m_step;
    lock.unlock();
    show();
    lock.lock();
    m_step.reset();
    m_changed.notify_all();
}

void TokenWait::show()
{
    const bool isCancellable = m_shown.of != 0;
    if (!m_box || (m_box->isCancelled() && !isCancellable)) {
        // One that was closed by its frame comes back: the token is still at work.
        m_box = std::make_unique<ToolProgress>(m_parent);
    }
    m_box->setCancellable(isCancellable);
    const bool goesOn = m_box->step(m_shown.what, m_shown.done, m_shown.of);
    m_isCancelled = m_isCancelled || (isCancellable && !goesOn);
}

}  // namespace workbench
