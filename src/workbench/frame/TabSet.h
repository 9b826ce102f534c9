#pragma once
#include "workbench/frame/Building.h"
#include "workbench/frame/TabRegistry.h"

#include <QObject>
#include <QTimer>

#include <functional>
#include <vector>

namespace workbench
{

/// The tabs of one form, built and promised. A start shows one form, not all of them: a promised
/// tab is built when somebody asks for it or shows its page, at the latest when nobody waits.
class TabSet : public QObject
{
    Q_OBJECT

public:
    explicit TabSet(Building building) : m_building(building) {}

    /// From now on there is the tab on that page.
    /// @param page     lives as long as the set
    /// @param context  outlives the set
    /// @param finish   what the tab needs besides, when it stands
    void promise(const TabEntry &entry, QWidget *page, FormContext &context,
                 const std::function<void(Tab *)> &finish = {});

    /// @return the first tab with the key, built for this call if it was only promised; null for
    ///         one that wasn't promised, and while it is being built
    Tab *find(const QString &key);

    /// @return the tab on the page, likewise
    Tab *findOn(const QWidget *page);

    /// All tabs, in the order of the registry; those made often come last. Builds what is missing.
    const std::vector<Tab *> &all();

    /// The tabs that exist. Nothing was put into the others yet.
    [[nodiscard]] const std::vector<Tab *> &built() const { return m_built; }

    /// `Tab::lockDevice` of all tabs, those to come included.
    void lockDevices(bool lock);

    /// Builds the missing tabs one by one in the turns of the event loop, after a moment for the
    /// first picture of the window.
    void buildTheRestInTime();

signals:
    void tabBuilt(workbench::Tab *tab);

private:
    struct Promise {
        const TabEntry *entry;
        QWidget *page;
        FormContext *context;
        std::function<void(Tab *)> finish;
    };

    void build(const Promise &promise);
    void buildFirst();
    /// Builds the first promised tab of which the claim is true, if there is one.
    template <typename Claim>
    void keepFirst(Claim isWanted);

    Building m_building;
    std::vector<Tab *> m_built;  ///< owned by their pages
    std::vector<Promise> m_promised;
    bool m_isLocked = false;
    QTimer m_time;
};

}  // namespace workbench
