#pragma once
#include <QString>

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

class QWidget;

namespace workbench
{

class ToolProgress;

/// Lets a token take its time. Its calls run in a thread of their own, one request after the other,
/// while the window is painted and a box says what is waited for: after half a second, or at once
/// for a request of several steps. The window takes nothing meanwhile but the box's "Cancel", which
/// is heard between two steps; a single call can't be taken back from a token.
///
/// A token that never answers keeps the box for ever: the module's thread can't be ended.
class TokenWait
{
public:
    explicit TokenWait(QWidget *parent);
    ~TokenWait();
    TokenWait(const TokenWait &) = delete;
    TokenWait &operator=(const TokenWait &) = delete;

    /// Runs a request and waits for its end.
    /// @param call  touches no widget and reports nothing; what it throws is thrown here
    void run(const QString &what, const std::function<void()> &call);

    /// For the request, in its thread: the window shows how far it is.
    /// @return false once it was cancelled
    bool step(const QString &what, int done, int of);

    [[nodiscard]] bool isCancelled() const { return m_isCancelled; }

private:
    struct Step {
        QString what;
        int done = 0;
        int of = 0;  ///< 0: a request that tells no steps
    };
    void show();
    void answerStep(std::unique_lock<std::mutex> &lock);

    QWidget *m_parent;
    std::unique_ptr<ToolProgress> m_box;
    Step m_shown;
    bool m_isCancelled = false;
    // Between the two threads, under the mutex.
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::optional<Step> m_step;  ///< waits for the window
    bool m_isDone = false;
};

/// What a token answers to one request.
template <typename Call>
auto askToken(QWidget *parent, const QString &what, Call call)
{
    std::optional<decltype(call())> answer;
    TokenWait(parent).run(what, [&answer, &call] { answer.emplace(call()); });
    return std::move(*answer);
}

}  // namespace workbench
