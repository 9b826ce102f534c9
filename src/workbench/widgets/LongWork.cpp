#include "workbench/widgets/LongWork.h"

#include "files/base/Progress.h"
#include "workbench/widgets/BusyCursor.h"
#include "workbench/widgets/ToolProgress.h"

#include <QCoreApplication>
#include <QDialog>
#include <QElapsedTimer>
#include <QEvent>
#include <QFileInfo>

#include <memory>

namespace workbench
{

namespace
{

constexpr int kWhole = 1000;  ///< steps of the bar

/// @param path  empty for bytes that have no file yet
QString sentence(files::Activity activity, const QString &path, const QString &request)
{
    const QString name = QFileInfo(path.isEmpty() ? request : path).fileName();
    switch (activity) {
    case files::Activity::Reading:
        return QCoreApplication::translate("LongWork", "Reading %1").arg(name);
    case files::Activity::Writing:
        return QCoreApplication::translate("LongWork", "Writing %1").arg(name);
    case files::Activity::Encrypting:
        return QCoreApplication::translate("LongWork", "Encrypting %1").arg(name);
    case files::Activity::Decrypting:
        break;
    }
    return QCoreApplication::translate("LongWork", "Decrypting %1").arg(name);
}

class LongWork : public BusyCursor, public files::ProgressWatch
{
public:
    LongWork(QWidget *parent, const QString &file) : m_parent(parent), m_file(file)
    {
        m_sinceStart.start();
    }

    void progressed(files::Activity activity, const QString &path, std::uint64_t done,
                    std::uint64_t of) override
    {
        const bool isDue = m_box ? m_sinceShown.elapsed() >= longWorkTimes.repaintMs
                                 : m_sinceStart.elapsed() >= longWorkTimes.quietMs;
        if (!isDue || m_isShowing) {
            return;
        }
        if (!m_box) {
            m_box = std::make_unique<ToolProgress>(m_parent);
        }
        m_box->setCancellable(!m_isCommitted);
        const int share = of == 0 ? 0 : static_cast<int>(done * kWhole / of);
        m_isShowing = true;
        const bool goesOn =
            m_box->step(sentence(activity, path, m_file), share, of == 0 ? 0 : kWhole);
        m_isShowing = false;
        m_sinceShown.start();
        if (!goesOn && !m_isCommitted) {
            throw files::Cancelled{};
        }
    }

    void committed() override { m_isCommitted = true; }

protected:
    /// While a dialog asks, it is the user who takes long.
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        const auto *const dialog = qobject_cast<QDialog *>(watched);
        if (dialog != nullptr && dialog->isModal()) {
            if (event->type() == QEvent::Show) {
                m_box.reset();
            } else if (event->type() == QEvent::Hide) {
                m_sinceStart.start();
            }
        }
        return BusyCursor::eventFilter(watched, event);
    }

private:
    QWidget *m_parent;
    QString m_file;
    QElapsedTimer m_sinceStart;
    QElapsedTimer m_sinceShown;
    std::unique_ptr<ToolProgress> m_box;
    bool m_isShowing = false;
    bool m_isCommitted = false;
};

}  // namespace

bool whileBusy(QWidget *parent, const std::function<void()> &work, const QString &file)
{
    if (files::ProgressWatch::isWatched()) {
        work();
        return true;
    }
    try {
        const LongWork watch(parent, file);
        work();
        return true;
    } catch (const files::Cancelled &) {
        return false;
    }
}

}  // namespace workbench
