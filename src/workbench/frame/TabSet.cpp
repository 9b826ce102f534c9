#include "workbench/frame/TabSet.h"

#include <algorithm>
#include <chrono>

namespace workbench
{

namespace
{

using namespace std::chrono_literals;

// A screen sends the window's size and asks for its first picture a moment after it was opened.
constexpr auto kFirstPicture = 50ms;

auto placeInRegistry(const Tab *tab)
{
    return std::ranges::find_if(tabRegistry(), [tab](const TabEntry &entry) {
        return tab->key() == QLatin1String(entry.name.key);
    });
}

}  // namespace

void TabSet::promise(const TabEntry &entry, QWidget *page, FormContext &context,
                     const std::function<void(Tab *)> &finish)
{
    const Promise promised{&entry, page, &context, finish};
    if (m_building == Building::AtOnce) {
        build(promised);
    } else {
        m_promised.push_back(promised);
    }
}

template <typename Claim>
void TabSet::keepFirst(Claim isWanted)
{
    const auto hit = std::ranges::find_if(m_promised, isWanted);
    if (hit != m_promised.end()) {
        // Taken out first: two tabs may ask for each other while they are built.
        const Promise promised = *hit;
        m_promised.erase(hit);
        build(promised);
    }
}

void TabSet::build(const Promise &promise)
{
    // In a page that is seen each widget would be laid out and shown for itself.
    const bool isSeen = promise.page->isVisible();
    if (isSeen) {
        promise.page->hide();
    }
    Tab *tab = makeTab(*promise.entry, promise.page, *promise.context);
    if (isSeen) {
        promise.page->show();
    }
    const auto behind =
        std::ranges::upper_bound(m_built, placeInRegistry(tab), {}, placeInRegistry);
    m_built.insert(behind, tab);
    if (m_isLocked) {
        tab->lockDevice(true);
    }
    if (promise.finish) {
        promise.finish(tab);
    }
    emit tabBuilt(tab);
}

Tab *TabSet::find(const QString &key)
{
    const auto builtOne = [this, &key] {
        return std::ranges::find_if(m_built, [&key](const Tab *tab) { return tab->key() == key; });
    };
    if (builtOne() == m_built.end()) {
        keepFirst([&key](const Promise &promise) {
            return key == QLatin1String(promise.entry->name.key);
        });
    }
    const auto hit = builtOne();
    return hit == m_built.end() ? nullptr : *hit;
}

Tab *TabSet::findOn(const QWidget *page)
{
    keepFirst([page](const Promise &promise) { return promise.page == page; });
    const auto hit =
        std::ranges::find_if(m_built, [page](const Tab *tab) { return tab->page() == page; });
    return hit == m_built.end() ? nullptr : *hit;
}

const std::vector<Tab *> &TabSet::all()
{
    while (!m_promised.empty()) {
        keepFirst([](const Promise & /*promise*/) { return true; });
    }
    return m_built;
}

void TabSet::lockDevices(bool lock)
{
    m_isLocked = lock;
    const std::vector<Tab *> now = m_built;  // one may ask for another, which is built meanwhile
    for (Tab *tab : now) {
        tab->lockDevice(lock);
    }
}

void TabSet::buildTheRestInTime()
{
    connect(&m_time, &QTimer::timeout, this, &TabSet::buildFirst);
    m_time.start(kFirstPicture);
}

void TabSet::buildFirst()
{
    keepFirst([](const Promise & /*promise*/) { return true; });
    if (m_promised.empty()) {
        m_time.stop();
    } else {
        m_time.setInterval(0);  // input and pictures come between two turns
    }
}

}  // namespace workbench
